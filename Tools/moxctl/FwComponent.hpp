#pragma once
/// The kinds of firmware that a board can update, by the library's own functions and rules. All of this is for a
/// process in the sandbox of a node, with the platform started.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mox::tools {

/// Where services look for images unless they are told otherwise.
constexpr const char* defaultImageDirectory = "/ffs/run/boot";

struct FwComponent {
    const char* name;          ///< on the command line, and in the names of marker files
    const char* rule;          ///< which version is written over which, for a person
    bool allowsMinor;          ///< whether images may list the board's identifier with another minor version
    const char* ramTemporary;  ///< where the payload lies while it is written, when that is in RAM
    const char* diskTemporary; ///< otherwise
    std::string (*chip)();     ///< what names of images contain; empty: this board has no such device
    /// The device that is asked for its version, in words.
    std::string (*device)();
    /// What runs now; nothing: not readable.
    std::optional<std::uint32_t> (*active)();
    bool (*isUpdated)(std::uint32_t file, std::uint32_t active);
    /// The library's decision. @param force  only the boot loader knows it
    int (*check)(const char* directory, char* path, std::size_t size, int force);
    int (*update)(const char* image);
    bool needsRam; ///< whether it is updated only when it was started from RAM, unless forced
};

/// In the order in which they are shown.
const std::vector<FwComponent>& fwComponents();

/// Throws Failure (usage) for another name than "uboot", "bmu" or "fpga".
const FwComponent& fwComponent(const std::string& name);

/// What a result of a decision function, or of the search behind it, says.
std::string decisionText(const FwComponent& component, int result);

/// What a result of an update function says.
std::string updateText(const FwComponent& component, int result);

/// What the library's marker file for forced updates of a component is called.
std::string forceMarker(const FwComponent& component);

/// How many forced updates are left; nothing: there is no marker, or no number in it.
std::optional<int> forcedLeft(const FwComponent& component);

/// The board's hardware/software identifier; 0 when it cannot be read.
std::uint32_t ownHwSwId();

/// The marker files that switch updates off, of those that exist.
std::vector<std::string> disablingMarkers();

} // namespace mox::tools
