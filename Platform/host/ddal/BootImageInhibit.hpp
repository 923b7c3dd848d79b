#pragma once
/// Which extension boards get no boot image from a unit.
#include "../run/Run.hpp"

#include <cstdint>
#include <string>

namespace mox::host {

constexpr std::uint32_t firstExtensionBoard = 2;
constexpr std::uint32_t lastExtensionBoard = 4;

/// Key in Table::devices; there is an entry while the board is inhibited.
inline std::string bootImageInhibitKey(std::uint16_t node, std::uint32_t board) {
    return hex4(node) + "/boot/inhibit/" + std::to_string(board);
}

} // namespace mox::host
