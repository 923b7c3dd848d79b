#pragma once
#include <cstdint>
#include <cstring>

namespace ps::hwapi::board {

/// What strncpy does, in words that no compiler takes for a mistake: fills up with zeros, and leaves a text of `length`
/// or more characters without a terminator, as callers are promised.
inline void copyText(char* to, const char* from, std::uint32_t length) {
    const std::size_t characters = ::strnlen(from, length);
    std::memcpy(to, from, characters);
    std::memset(to + characters, 0, length - characters);
}

} // namespace ps::hwapi::board
