#include "Components.hpp"

#include <mox/Firmware.h>

#include <algorithm>
#include <iterator>

namespace mox::firm {

namespace {

static_assert(Answer::pathSize == FIND_BINARY_ROW_SIZE, "an answer has room for every path that can be found");

int checkUboot(const char* directory, char* path, std::size_t size) {
    return is_uboot_update_needed(directory, path, size, 0);
}

/// Asks again, because force does not overrule that an image is older: a board that does not start any more cannot be
/// updated again.
int checkForcedUboot(const char* directory, char* path, std::size_t size) {
    return is_uboot_update_needed(directory, path, size, 1);
}

int updateLocalBmu(const char* path) {
    return update_bmu(path, 0);
}

constexpr ComponentFunctions components[] = {
    {Component::uboot, "uboot", checkUboot, checkForcedUboot, update_uboot},
    {Component::bmu, "bmu", is_bmu_update_needed, nullptr, updateLocalBmu},
    {Component::fpga, "fpga", is_fpga_update_needed, nullptr, update_fpga},
};

} // namespace

const ComponentFunctions* findComponent(Component component) {
    const auto* const found =
        std::find_if(std::begin(components), std::end(components),
                     [component](const ComponentFunctions& entry) { return entry.component == component; });
    return found == std::end(components) ? nullptr : found;
}

std::string nameOf(Component component) {
    const ComponentFunctions* const entry = findComponent(component);
    return entry != nullptr ? entry->name : "component " + std::to_string(static_cast<std::uint32_t>(component));
}

} // namespace mox::firm
