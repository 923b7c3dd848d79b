#include "Ddal.hpp"
#include "SimulatedUnit.hpp"

#include <algorithm>
#include <set>

namespace mox::host {

namespace {

/// Hands the node's RapidIO on, if it has one.
template <class Use>
int withRapidIo(const char* function, Use use) {
    const SimulatedUnit unit(function);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    return unit.devices().rapidIo ? static_cast<int>(use(*unit.devices().rapidIo)) : static_cast<int>(DDAL_NO_DEVICE);
}

} // namespace

int ddal_rio_get_own_id(uint16_t* deviceId) {
    if (deviceId == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withRapidIo(__func__, [deviceId](const RapidIo& rapidIo) {
        *deviceId = rapidIo.ownId;
        return DDAL_OK;
    });
}

int ddal_rio_get_node_ids(uint16_t* deviceIds, uint32_t capacity, uint32_t* count) {
    if (deviceIds == nullptr || count == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withRapidIo(__func__, [=](const RapidIo& rapidIo) {
        std::set<std::uint16_t> all(rapidIo.endpoints.begin(), rapidIo.endpoints.end());
        all.insert(rapidIo.ownId);
        *count = static_cast<std::uint32_t>(all.size());
        if (all.size() > capacity)
            return DDAL_NO_SPACE;
        std::copy(all.begin(), all.end(), deviceIds);
        return DDAL_OK;
    });
}

} // namespace mox::host
