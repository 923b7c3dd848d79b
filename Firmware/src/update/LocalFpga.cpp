#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

uint32_t fpga_id_local() {
    return ps::hwapi::common::update::localFpgaIdOf(unit_version(), unit_type());
}

int get_fpga(const char** shortName, const char** chipIdentifier, uint32_t* fpgaId) {
    const auto fpga = ps::hwapi::common::update::fpgaOf(unit_version(), unit_type());
    if (shortName != nullptr)
        *shortName = fpga.shortName;
    if (chipIdentifier != nullptr)
        *chipIdentifier = fpga.chipIdentifier;
    if (fpgaId != nullptr)
        *fpgaId = fpga.id;
    return fpga.id != 0 ? 0 : -1;
}
