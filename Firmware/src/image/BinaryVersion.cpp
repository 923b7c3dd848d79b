#include "image/LoadedTrailer.hpp"

#include <mox/Firmware.h>
#include <mox/ImageNumbers.hpp>
#include <mox/XmlValues.hpp>

#include <syslog.h>

#include <exception>

using namespace ps::hwapi::common;

namespace {

constexpr char caller[] = "binary_version";

/// Results that callers compare; not those of the other checks.
enum Result { compatible = 0, incompatible = 1, noTrailer = -1, noXml = -2, noTrailerElement = -3 };

void logFields(const image::TrailerFields& fields) {
    syslog(LOG_INFO, "%s(): Version:    %d", caller, static_cast<int>(fields.version));
    syslog(LOG_INFO, "%s(): TargetUnit: %s", caller, fields.targetUnit.c_str());
    syslog(LOG_INFO, "%s(): SwId:       %s", caller, fields.swId.c_str());
    syslog(LOG_INFO, "%s(): SwVersion:  %s", caller, fields.swVersion.c_str());
    syslog(LOG_INFO, "%s(): BuildTime:  %s", caller, fields.buildTime.c_str());
    syslog(LOG_INFO, "%s(): Crc32:      %d (0x%x)", caller, static_cast<int>(fields.crc32), fields.crc32);
    syslog(LOG_INFO, "%s(): Length:     %d (0x%x)", caller, static_cast<int>(fields.length), fields.length);
}

int readVersion(const char* path, std::uint32_t own, int allowMinor, std::uint32_t& version) {
    syslog(LOG_INFO, "%s(): Reading file '%s' trailer", caller, path);
    const image::LoadedTrailer loaded = image::loadTrailer(path);
    if (loaded.result != IMAGE_OK) {
        syslog(LOG_INFO, "%s(): Trailer read failed %d (0x%x)", caller, loaded.result,
               static_cast<unsigned int>(loaded.result));
        return noTrailer;
    }
    if (!loaded.parsed.document) {
        syslog(LOG_INFO, "%s(): XML parsing failed %d", caller, loaded.parsed.parserResult);
        return noXml;
    }
    if (loaded.parsed.trailer == nullptr) {
        syslog(LOG_INFO, "%s(): Invalid trailer XML", caller);
        return noTrailerElement;
    }
    const image::TrailerFields fields = image::readFields(*loaded.parsed.trailer);
    logFields(fields);
    if (scan_hwswid(loaded.parsed.trailer, own, allowMinor) != IMAGE_OK) {
        syslog(LOG_INFO, "%s(): Binary is not compatible with this board!", caller);
        return incompatible;
    }
    version = image::swVersionNumber(fields.swVersion);
    return compatible;
}

} // namespace

int binary_version(const char* path, uint32_t ownHwSwId, int allowMinorDifference, uint32_t* version) {
    *version = 0;
    try {
        return readVersion(path, ownHwSwId, allowMinorDifference, *version);
    } catch (const std::exception&) {
        return noTrailer; // no memory
    }
}
