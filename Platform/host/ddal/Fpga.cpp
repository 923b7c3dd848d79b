#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "ActiveState.hpp"
#include "BmuReset.hpp"
#include "Ddal.hpp"
#include "Flash.hpp"
#include "Reset.hpp"
#include "SimulatedUnit.hpp"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace mox::host {

namespace {

/// Resets the BMU if a service asked for it and nobody has looked at it since.
/// @return false: it could not be reset; who looks next tries again
bool resetBmuIfAsked(const SimulatedUnit& unit) {
    if (!bmuResetIsAsked(unit.run(), unit.node()))
        return true;
    // Twice: the first is for a process that is killed before the file is empty, the second for what was flashed, and
    // asked for again, between the first and that moment.
    if (!reloadFpga(unit.run(), unit.node(), DDAL_FPGA_BMU))
        return false;
    forgetBmuReset(unit.run(), unit.node());
    return reloadFpga(unit.run(), unit.node(), DDAL_FPGA_BMU);
}

bool hasArea(const FpgaDevice& fpga, std::uint32_t slot) {
    return std::any_of(fpga.slots.begin(), fpga.slots.end(),
                       [slot](const FpgaSlot& area) { return area.slot == slot; });
}

FlashArea areaOf(const FpgaDevice& fpga, std::uint32_t slot) {
    char device[32];
    std::snprintf(device, sizeof device, "fpga-%" PRIx32, fpga.id);
    return {device, fpgaArea(fpga.id, slot), fpga.geometry.areaSize, fpga.geometry.blockSize};
}

} // namespace

int ddal_fpga_get_active_version(uint32_t fpgaId, uint32_t* version) {
    if (version == nullptr)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const FpgaDevice* fpga = unit.fpga(fpgaId);
    if (fpga == nullptr)
        return DDAL_NO_DEVICE;
    if (fpga->resetControl && !resetBmuIfAsked(unit))
        return DDAL_IO_ERROR;
    *version = activeVersion(unit.run().store(), unit.node(), *fpga);
    return DDAL_OK;
}

int ddal_fpga_update_mod(uint32_t fpgaId, uint32_t slot, const char* path) {
    if (path == nullptr)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const FpgaDevice* fpga = unit.fpga(fpgaId);
    if (fpga == nullptr)
        return DDAL_NO_DEVICE;
    if (!hasArea(*fpga, slot))
        return DDAL_INVALID_PARAMETER;
    return Flash(unit.run(), unit.node()).write(areaOf(*fpga, slot), path);
}

} // namespace mox::host
