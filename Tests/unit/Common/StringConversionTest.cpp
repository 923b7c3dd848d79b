#include <mox/conversion/StringConversion.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace ps::hwapi::common::conversion {
namespace {

enum Colour { red = 7 };

struct Slot {
    int number;
};

std::string asText(const Slot& slot) {
    return "slot" + std::to_string(slot.number);
}

TEST(ToString, TakesTextsAsTheyAre) {
    const char array[] = "array";
    const char* pointer = "pointer";
    EXPECT_EQ(toString(array), "array");
    EXPECT_EQ(toString(pointer), "pointer");
    EXPECT_EQ(toString(std::string("string")), "string");
    EXPECT_EQ(toString(std::string_view("view")), "view");
    EXPECT_EQ(toString('c'), "c");
}

TEST(ToString, TakesAnArrayUpToItsTerminator) {
    const char array[16] = "short";
    EXPECT_EQ(toString(array), "short");
}

TEST(ToString, TakesANullPointerForAnEmptyText) {
    const char* missing = nullptr;
    EXPECT_EQ(toString(missing), "");
}

TEST(ToString, WritesNumbersInDecimal) {
    EXPECT_EQ(toString(0), "0");
    EXPECT_EQ(toString(-5), "-5");
    EXPECT_EQ(toString(4000000000U), "4000000000");
    EXPECT_EQ(toString(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(toString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(toString(static_cast<std::uint8_t>(65)), "65");
    EXPECT_EQ(toString(static_cast<std::uint16_t>(0xFFFF)), "65535");
    EXPECT_EQ(toString(true), "1");
    EXPECT_EQ(toString(red), "7");
}

TEST(ToString, UsesTheConversionThatStandsBesideAType) {
    EXPECT_EQ(toString(Slot{3}), "slot3");
}

TEST(ToString, PutsPiecesOneAfterTheOther) {
    EXPECT_EQ(toString("Led", 3, std::string("x"), '-', Slot{1}), "Led3x-slot1");
    EXPECT_EQ(toString(), "");
}

TEST(ToString, ReservesTheWholeLengthFirst) {
    const std::string long1(100, 'a');
    const std::string long2(101, 'b');
    const std::string sut = toString(long1, long2);
    EXPECT_EQ(sut, long1 + long2);
    EXPECT_EQ(sut.capacity(), sut.size());
}

} // namespace
} // namespace ps::hwapi::common::conversion
