#pragma once
#include <algorithm>
#include <cstdint>

namespace ps::hwapi::board {
namespace constant {
/// Feature id of every line that identification logs.
constexpr unsigned int featureId = 0x20063;
} // namespace constant

/// @return the first row with this key, or null
template <typename Rows>
const typename Rows::value_type* rowOf(const Rows& rows, std::uint32_t key) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [key](const auto& candidate) { return candidate.key == key; });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace ps::hwapi::board
