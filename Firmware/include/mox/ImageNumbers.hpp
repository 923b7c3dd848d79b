#pragma once
/// How the numbers of an image trailer are read and compared. Only values, no files; any thread.
#include <mox/conversion/Unsigned32.hpp>

#include <cstdint>
#include <string_view>

namespace ps::hwapi::common::image {

/// Number of an element such as "Crc32": hexadecimal when "0x" or "0X" stands anywhere in the text, else decimal.
inline std::uint32_t elementNumber(std::string_view text) {
    const bool hexadecimal = text.find("0x") != std::string_view::npos || text.find("0X") != std::string_view::npos;
    return conversion::unsigned32(text, hexadecimal ? 16 : 10);
}

/// Number of an element "HwSwId": hexadecimal, with or without "0x".
inline std::uint32_t hwSwIdNumber(std::string_view text) {
    return conversion::unsigned32(text, 16);
}

/// Software version: hexadecimal when the text begins with "0x", else decimal, which makes 0 of "0X".
inline std::uint32_t swVersionNumber(std::string_view text) {
    return conversion::unsigned32(text, text.substr(0, 2) == "0x" ? 16 : 10);
}

/// Whether two hardware/software identifiers are the same but for their lowest 8 bits, the minor version.
inline bool isSameButForMinor(std::uint32_t one, std::uint32_t other) {
    return (one ^ other) < 256;
}

} // namespace ps::hwapi::common::image
