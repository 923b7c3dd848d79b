#include "image/LoadedTrailer.hpp"

#include <mox/ERadHwapi.hpp>
#include <mox/Firmware.h>
#include <mox/XmlValues.hpp>
#include <pal/AaSysLog.h>

#include <exception>

using namespace ps::hwapi::common;

namespace {

constexpr unsigned int feature = ERadHwapi_SWDL;

void logFields(const image::TrailerFields& fields) {
    constexpr auto level = EAaSysLogSeverityLevel_Info;
    AaSysLogPrintE(level, feature, "TrailerVersion: %d", static_cast<int>(fields.version));
    AaSysLogPrintE(level, feature, "TargetUnit: %s", fields.targetUnit.c_str());
    AaSysLogPrintE(level, feature, "SwId: %s", fields.swId.c_str());
    AaSysLogPrintE(level, feature, "SwVersion: %s", fields.swVersion.c_str());
    AaSysLogPrintE(level, feature, "BuildTime: %s", fields.buildTime.c_str());
    AaSysLogPrintE(level, feature, "CRC32: %d (0x%x)", static_cast<int>(fields.crc32), fields.crc32);
    AaSysLogPrintE(level, feature, "File Length: %d (0x%x)", static_cast<int>(fields.length), fields.length);
}

bool hasCrc(const char* path, std::uint32_t length, std::uint32_t assumed) {
    std::uint32_t calculated = 0;
    if (calculate_crc(path, length, &calculated) == IMAGE_OK && calculated == assumed) {
        return true;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Error, feature, "CRC check failed: %s. Calculated CRC32: %d, Assumed: %d",
                   path, static_cast<int>(calculated), static_cast<int>(assumed));
    return false;
}

int validateTrailer(const char* path, std::uint32_t length, const AaGpuXmlNode& trailer, std::uint32_t own) {
    const image::TrailerFields fields = image::readFields(trailer);
    logFields(fields);
    if (!hasCrc(path, length, fields.crc32)) {
        return IMAGE_ERR_CRC;
    }
    if (scan_hwswid(&trailer, own, 1) != IMAGE_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, feature,
                       "Own HwSwId not found from trailer, binary is not compatible with this board!");
        return IMAGE_ERR_HWSWID;
    }
    return IMAGE_OK;
}

int validate(const char* path, std::uint32_t own) {
    const image::LoadedTrailer loaded = image::loadTrailer(path);
    if (loaded.result != IMAGE_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, feature, "Reading the file trailer failed, errorCode: %d (0x%x)",
                       loaded.result, static_cast<unsigned int>(loaded.result));
        return loaded.result;
    }
    if (!loaded.parsed.document) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, feature, "Trailer data parsing failed (code: %d)",
                       loaded.parsed.parserResult);
        return IMAGE_ERR_XML;
    }
    if (loaded.parsed.trailer == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, feature, "SW_DL_ERROR!!! could not find node");
        return IMAGE_ERR_XML;
    }
    return validateTrailer(path, loaded.offset, *loaded.parsed.trailer, own);
}

} // namespace

int binary_validate(const char* path, uint32_t ownHwSwId) {
    try {
        return validate(path, ownHwSwId);
    } catch (const std::exception&) {
        return IMAGE_ERR_FILE; // no memory
    }
}
