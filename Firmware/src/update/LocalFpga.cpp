#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

namespace ps::hwapi::common::update {
namespace {

/// The texts of the unit. Asking for the second may fill the first, so they are looked at when both are there: a unit
/// whose type alone were known could be taken for another one.
struct UnitNames {
    const char* version = unit_version();
    const char* type = unit_type();
};

} // namespace
} // namespace ps::hwapi::common::update

uint32_t fpga_id_local() {
    using namespace ps::hwapi::common::update;
    const UnitNames unit;
    return localFpgaIdOf(unit.version, unit.type);
}

int get_fpga(const char** shortName, const char** chipIdentifier, uint32_t* fpgaId) {
    using namespace ps::hwapi::common::update;
    const UnitNames unit;
    const FpgaOfUnit fpga = fpgaOf(unit.version, unit.type);
    if (shortName != nullptr)
        *shortName = fpga.shortName;
    if (chipIdentifier != nullptr)
        *chipIdentifier = fpga.chipIdentifier;
    if (fpgaId != nullptr)
        *fpgaId = fpga.id;
    return fpga.id != 0 ? 0 : -1;
}
