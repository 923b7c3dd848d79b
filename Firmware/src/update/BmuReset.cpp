#include "update/DdalFailure.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <syslog.h>

#include <cstdio>

namespace ps::hwapi::common::update {
namespace {

constexpr const char* function = "ddal_bmu_reset";

void writeControlFile() {
    std::FILE* const file = std::fopen(constant::bmuResetFile, "we");
    if (file == nullptr) {
        syslog(LOG_INFO, "%s(): fopen(/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig, w) failed",
               function);
        return;
    }
    std::setvbuf(file, nullptr, _IONBF, 0); // so that a device that refuses is noticed here and not at closing
    const std::size_t written = std::fwrite("1", 1, 1, file);
    if (written != 1)
        syslog(LOG_INFO, "%s(): fwrite(1, 1, 1, file) failed with %d", function, static_cast<int>(written));
    std::fclose(file);
}

} // namespace
} // namespace ps::hwapi::common::update

int ddal_bmu_reset() {
    using namespace ps::hwapi::common::update;
    char unitId[constant::unitTextSize] = "";
    const int result = ddal_devicetree_get_unit_id(0, sizeof unitId - 1, unitId);
    if (result != DDAL_OK) {
        logDdalFailure(function, "ddal_devicetree_get_unit_id", result);
        return -1;
    }
    if (isBmuResettable(unitId))
        writeControlFile();
    return 0;
}
