#include "SystemInformation.hpp"

#include "../pal/Tags.hpp"
#include "../run/Run.hpp"

#include <ddal/ddal_sysinfo.h>

#include <algorithm>

namespace mox::host {

std::string systemInformationKey(std::uint16_t node, const SystemInformation& entry) {
    std::string key = hex4(node) + "/sysinfo/" + std::to_string(entry.category) + "/" + std::to_string(entry.key);
    if (entry.index)
        key += "/" + std::to_string(entry.indexKind) + "/" + std::to_string(*entry.index);
    return key;
}

const SystemInformation* resetCounter(const Devices& devices) {
    const auto& all = devices.systemInformation;
    const auto found = std::find_if(all.begin(), all.end(), [](const SystemInformation& entry) {
        return entry.category == DDAL_SYSINFO_CATEGORY_UNIT && entry.key == DDAL_SYSINFO_KEY_RESET_COUNTER &&
               !entry.index && entry.value.type == ValueType::u64;
    });
    return found == all.end() ? nullptr : &*found;
}

TypedValue systemInformationValue(const std::optional<std::string>& record, const SystemInformation& entry) {
    const auto stored = record ? tags::decode(*record) : std::nullopt;
    return stored && stored->type == entry.value.type ? *stored : entry.value;
}

} // namespace mox::host
