#include "AaCpuBit.hpp"

#include "../run/PlatformLog.hpp"

#include <endian.h>

#include <cstdint>

namespace mox::host {

void AaCpuBitSwapByteOrder32(std::uint32_t* word) {
    if (word)
        *word = le32toh(*word);
    else
        logPlatform(4, "AaCpuBitSwapByteOrder32: null pointer");
}

} // namespace mox::host
