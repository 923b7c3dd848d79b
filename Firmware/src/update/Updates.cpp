#include "update/DdalFailure.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <syslog.h>

#include <cerrno>
#include <cstdio>

namespace ps::hwapi::common::update {
namespace {

/// Hands the payload of an image to a step that flashes it.
/// @param flash  takes the path of the payload; 0 or its failure
template <typename Flash>
int updateFrom(const char* function, const char* imagePath, const TemporaryFile& file, Flash flash) {
    const char* const payload = is_ram_path_used() == 1 ? file.inRam : file.byDefault;
    if (const int failure = binary_crc(imagePath)) {
        syslog(LOG_INFO, "%s(): binary_crc() failed %d", function, failure);
        return -1;
    }
    syslog(LOG_INFO, "%s(): binary '%s' is ok", function, imagePath);
    if (const int failure = binary_copy_without_trailer(imagePath, payload)) {
        syslog(LOG_INFO, "%s(): binary_copy_without_trailer() failed %d", function, failure);
        return -2;
    }
    const int result = flash(payload);
    if (std::remove(payload) != 0)
        syslog(LOG_INFO, "%s(): remove '%s' failed %d", function, payload, errno);
    return result;
}

bool flashUboot(const char* function, const char* payload) {
    const int result = ddal_boot_update_uboot(payload);
    if (result != DDAL_OK)
        logDdalFailure(function, "ddal_boot_update_uboot", result);
    return result == DDAL_OK;
}

bool flashSlot(const char* function, std::uint32_t fpgaId, std::uint32_t slot, const char* payload) {
    const int result = ddal_fpga_update_mod(fpgaId, slot, payload);
    if (result != DDAL_OK)
        logDdalFailure(function, "ddal_fpga_update_mod", result);
    return result == DDAL_OK;
}

/// The second slot is only touched when the first one holds the new image: one of them is whole at any time.
int flashBothSlots(const char* function, const char* shortName, std::uint32_t fpgaId, const char* payload) {
    if (!flashSlot(function, fpgaId, DDAL_FPGA_SLOT_PRIMARY, payload))
        return -3;
    syslog(LOG_INFO, "%s(): %s primary slot update is ok", function, shortName);
    if (!flashSlot(function, fpgaId, DDAL_FPGA_SLOT_SECONDARY, payload))
        return -4;
    syslog(LOG_INFO, "%s(): %s secondary slot update is ok", function, shortName);
    return 0;
}

} // namespace
} // namespace ps::hwapi::common::update

int update_uboot(const char* imagePath) {
    using namespace ps::hwapi::common::update;
    const char* const function = __func__;
    syslog(LOG_INFO, "%s(): start uboot update", function);
    return updateFrom(function, imagePath, ubootTemporary, [function](const char* payload) {
        if (!flashUboot(function, payload))
            return -3;
        syslog(LOG_INFO, "%s(): uboot update is ok", function);
        return 0;
    });
}

int update_bmu(const char* imagePath, uint32_t fpgaId) {
    using namespace ps::hwapi::common::update;
    const char* const function = __func__;
    const std::uint32_t id = fpgaId != 0 ? fpgaId : constant::bmuFpgaId;
    syslog(LOG_INFO, "%s(): start bmu update", function);
    return updateFrom(function, imagePath, bmuTemporary, [function, id](const char* payload) {
        constexpr std::uint32_t slot = DDAL_FPGA_SLOT_PRIMARY;
        syslog(LOG_INFO, "%s(): call ddal_fpga_update_mod(0x%X, 0x%X, %s)", function, id, slot, payload);
        if (!flashSlot(function, id, slot, payload))
            return -3;
        syslog(LOG_INFO, "%s(): bmu update is ok", function);
        return 0;
    });
}

int update_fpga(const char* imagePath) {
    using namespace ps::hwapi::common::update;
    const char* const function = __func__;
    const char* shortName = nullptr;
    std::uint32_t fpgaId = 0;
    syslog(LOG_INFO, "%s(): start fpga update", function);
    if (get_fpga(&shortName, nullptr, &fpgaId) != 0) {
        syslog(LOG_DEBUG, "%s(): no fpga specified for unit '%s'", function, unit_version());
        return -10;
    }
    return updateFrom(function, imagePath, fpgaTemporary,
                      [=](const char* payload) { return flashBothSlots(function, shortName, fpgaId, payload); });
}
