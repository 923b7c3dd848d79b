#pragma once
#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <tuple>

namespace mox::images {

/// The CRC-32 of the first bytes of a file as the library has always defined it: word after word, whether or not there
/// was one to read. What the library computes in blocks is compared with it.
inline std::uint32_t wordwiseCrc(std::FILE* file, std::uint32_t length) {
    unsigned char word[4] = {};
    auto crc = crc32(0, Z_NULL, 0);
    for (std::uint32_t i = 0; i < length / 4; ++i) {
        std::ignore = std::fread(word, sizeof(word), 1, file);
        crc = crc32(crc, word, sizeof(word));
    }
    if (const std::uint32_t rest = length % 4; rest != 0) {
        for (unsigned char& byte : word) {
            byte = 0;
        }
        std::ignore = std::fread(word, 1, rest, file);
        crc = crc32(crc, word, rest);
    }
    return static_cast<std::uint32_t>(crc);
}

} // namespace mox::images
