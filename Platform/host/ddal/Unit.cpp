#include "Ddal.hpp"
#include "SimulatedUnit.hpp"

namespace mox::host {

int ddal_unit_get_board() {
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const auto& type = unit.description().unit.boardType;
    return type ? static_cast<int>(*type) : static_cast<int>(DDAL_NO_DEVICE);
}

int ddal_id_get_slot_id(int32_t* slotId) {
    if (slotId == nullptr)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    *slotId = unit.description().unit.slot;
    return DDAL_OK;
}

} // namespace mox::host
