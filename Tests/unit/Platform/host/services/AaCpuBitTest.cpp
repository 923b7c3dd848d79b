#include <pal/AaCpuBit.h>

#include <gtest/gtest.h>

#include <cstring>

namespace mox::testing {
namespace {

TEST(AaCpuBitSwapByteOrder32, ReadsAStoredWordAsLittleEndian) {
    const unsigned char stored[] = {0x78, 0x56, 0x34, 0x12};
    std::uint32_t word = 0;
    std::memcpy(&word, stored, sizeof word);
    AaCpuBitSwapByteOrder32(&word);
    EXPECT_EQ(word, 0x12345678U);
}

TEST(AaCpuBitSwapByteOrder32, UndoesItself) {
    std::uint32_t word = 0xDEADBEEF;
    AaCpuBitSwapByteOrder32(&word);
    AaCpuBitSwapByteOrder32(&word);
    EXPECT_EQ(word, 0xDEADBEEFU);
}

} // namespace
} // namespace mox::testing
