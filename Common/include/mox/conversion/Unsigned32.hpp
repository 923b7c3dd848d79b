#pragma once
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

namespace ps::hwapi::common::conversion {

/// Reads a number as strtoul does where long has 32 bits, so that every build gives the answers of the 32-bit board:
/// too large a number is the largest one, behind a minus sign too, and a smaller one behind a minus sign wraps around.
/// @param text  blanks before the number and anything behind it are passed over
/// @param base  2 to 36
/// @return the number; 0 when there is none
inline std::uint32_t unsigned32(std::string_view text, int base) {
    const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    const bool negative = text.substr(0, 1) == "-";
    if (negative || text.substr(0, 1) == "+") {
        text.remove_prefix(1);
    }
    if (base == 16 && (text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X")) {
        text.remove_prefix(2);
    }
    std::uint32_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (read.ec == std::errc::result_out_of_range) {
        return std::numeric_limits<std::uint32_t>::max();
    }
    return negative ? 0 - number : number;
}

} // namespace ps::hwapi::common::conversion
