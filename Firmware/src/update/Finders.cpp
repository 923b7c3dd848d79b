#include "update/OutText.hpp"

#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <syslog.h>

namespace ps::hwapi::common::update {
namespace {

int findOwn(const char* directory, const char* chip, int allowMinorDifference, char* outPath, std::size_t outPathSize) {
    std::uint32_t version = 0;
    return find_binary_compatible(directory, nullptr, chip, 0, allowMinorDifference, outPath, outPathSize, &version);
}

const char* shown(const char* outPath, std::size_t outPathSize) {
    return outPath != nullptr && outPathSize != 0 ? outPath : "";
}

} // namespace
} // namespace ps::hwapi::common::update

int FindKorFpgaBinaryFile(const char* directory, char* outPath, size_t outPathSize) {
    using namespace ps::hwapi::common::update;
    clearText(outPath, outPathSize);
    const char* chip = nullptr;
    int result = -10;
    if (get_fpga(nullptr, &chip, nullptr) == 0)
        result = findOwn(directory, chip, constant::fpgaMinorDifference, outPath, outPathSize);
    else
        syslog(LOG_DEBUG, "%s(): no fpga specified for unit '%s'", __func__, unit_version());
    syslog(LOG_INFO, "%s(): FindKorFpgaBinaryFile ret: %d, fileName: %s", __func__, result,
           shown(outPath, outPathSize));
    return result;
}

int FindZupFpgaBinaryFile(const char* directory, char* outPath, size_t outPathSize) {
    using namespace ps::hwapi::common::update;
    clearText(outPath, outPathSize);
    const int result = findOwn(directory, constant::bmuChip, constant::bmuMinorDifference, outPath, outPathSize);
    syslog(LOG_INFO, "%s(): FindZupFpgaBinaryFile ret: %d, fileName: %s", __func__, result,
           shown(outPath, outPathSize));
    return result;
}

int FindUBootBinaryFile(const char* directory, char* outPath, size_t outPathSize) {
    using namespace ps::hwapi::common::update;
    clearText(outPath, outPathSize);
    const int result = findOwn(directory, constant::ubootChip, constant::ubootMinorDifference, outPath, outPathSize);
    syslog(LOG_INFO, "%s(): FindUBootBinaryFile ret: %d, fileName: %s", __func__, result, shown(outPath, outPathSize));
    return result;
}
