#include "image/LoadedTrailer.hpp"

#include <mox/Firmware.h>
#include <mox/XmlValues.hpp>

#include <syslog.h>

#include <exception>

using namespace ps::hwapi::common;

namespace {

constexpr char caller[] = "binary_crc";

int checkCrc(const char* path) {
    const image::LoadedTrailer loaded = image::loadTrailer(path);
    if (loaded.result != IMAGE_OK) {
        syslog(LOG_INFO, "%s(): File '%s' trailer read failed %d (0x%x)", caller, path, loaded.result,
               static_cast<unsigned int>(loaded.result));
        return loaded.result;
    }
    if (!loaded.parsed.document) {
        syslog(LOG_INFO, "%s(): XML parsing failed %d", caller, loaded.parsed.parserResult);
        return IMAGE_ERR_XML;
    }
    if (loaded.parsed.trailer == nullptr) {
        syslog(LOG_INFO, "%s(): Invalid trailer XML", caller);
        return IMAGE_ERR_XML;
    }
    const std::uint32_t assumed = getU32ValueFromNode(loaded.parsed.trailer, "Crc32");
    std::uint32_t calculated = 0;
    if (calculate_crc(path, loaded.offset, &calculated) != IMAGE_OK || calculated != assumed) {
        syslog(LOG_INFO, "%s(): CRC check failed: %s. Calculated CRC32: %d, Assumed: %d", caller, path,
               static_cast<int>(calculated), static_cast<int>(assumed));
        return IMAGE_ERR_CRC;
    }
    return IMAGE_OK;
}

} // namespace

int binary_crc(const char* path) {
    try {
        return checkCrc(path);
    } catch (const std::exception&) {
        return IMAGE_ERR_FILE; // no memory
    }
}
