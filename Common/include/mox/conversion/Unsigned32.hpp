#pragma once
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace ps::hwapi::common::conversion {

/// Reads a number as strtoul does where long has 32 bits, so that every build gives the answers of the 32-bit board:
/// too large a number is the largest one, behind a minus sign too, and a smaller one behind a minus sign wraps around.
/// @param text  not null; blanks before the number and anything behind it are passed over
/// @param base  2 to 36
/// @return the number; 0 when there is none
inline std::uint32_t unsigned32(const char* text, int base) {
    constexpr auto largest = std::numeric_limits<std::uint32_t>::max();
    const int before = errno;
    errno = 0;
    const unsigned long long wide = std::strtoull(text, nullptr, base);
    const bool tooWide = errno == ERANGE;
    errno = before;
    const bool negative = text[std::strspn(text, " \t\n\v\f\r")] == '-';
    const unsigned long long magnitude = negative ? 0 - wide : wide;
    if (tooWide || magnitude > largest) {
        return largest;
    }
    const auto narrow = static_cast<std::uint32_t>(magnitude);
    return negative ? 0 - narrow : narrow;
}

} // namespace ps::hwapi::common::conversion
