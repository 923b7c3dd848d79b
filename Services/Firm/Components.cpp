#include "Components.hpp"

#include <mox/Firmware.h>

#include <algorithm>
#include <iterator>

namespace mox::firm {

namespace {

static_assert(Answer::pathSize == FIND_BINARY_ROW_SIZE, "an answer has room for every path that can be found");

namespace constant {
constexpr int needed = 1;
constexpr int notNeeded = 0;
constexpr std::uint32_t localBmu = 0;
} // namespace constant

/// The boot loader stays the one component that an older image never replaces: a board that does not start any more
/// cannot be updated again.
int checkUboot(const char* directory, char* path, bool force) {
    return is_uboot_update_needed(directory, path, Answer::pathSize, force ? 1 : 0);
}

int whenForced(int result, bool force) {
    return result == constant::notNeeded && force ? constant::needed : result;
}

int checkBmu(const char* directory, char* path, bool force) {
    return whenForced(is_bmu_update_needed(directory, path, Answer::pathSize), force);
}

int checkFpga(const char* directory, char* path, bool force) {
    return whenForced(is_fpga_update_needed(directory, path, Answer::pathSize), force);
}

int updateBmu(const char* path) {
    return update_bmu(path, constant::localBmu);
}

constexpr ComponentFunctions components[] = {
    {Component::uboot, "uboot", checkUboot, update_uboot},
    {Component::bmu, "bmu", checkBmu, updateBmu},
    {Component::fpga, "fpga", checkFpga, update_fpga},
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
