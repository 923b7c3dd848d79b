#pragma once
/// Numbers in the keys of the store: high byte first, so that they sort by their value.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host {

/// Appends the lowest `size` bytes of a number.
inline void appendBigEndian(std::string& key, std::uint32_t number, std::size_t size) {
    while (size-- > 0) {
        key.push_back(static_cast<char>(number >> (8 * size)));
    }
}

/// The number in at most 4 bytes.
inline std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char c : bytes) {
        number = number << 8 | static_cast<unsigned char>(c);
    }
    return number;
}

} // namespace mox::host
