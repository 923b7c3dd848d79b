#include <mox/ImageNumbers.hpp>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using namespace ps::hwapi::common;

struct NumberRow {
    const char* text;
    std::uint32_t number;
};

TEST(Unsigned32, GivesTheAnswersOfThe32BitBoard) {
    const NumberRow rows[] = {{"", 0},
                              {"x", 0},
                              {"0", 0},
                              {"1234", 1234},
                              {"12 34", 12},
                              {" \t\n\v\f\r12", 12},
                              {"+12", 12},
                              {"0x12", 0},
                              {"12abc", 12},
                              {"4294967295", 0xFFFFFFFF},
                              {"4294967296", 0xFFFFFFFF},
                              {"99999999999999999999999999", 0xFFFFFFFF},
                              {"-1", 0xFFFFFFFF},
                              {"-5", 0xFFFFFFFB},
                              {" -4294967295", 1},
                              {"-4294967296", 0xFFFFFFFF},
                              {"-18446744073709551615", 0xFFFFFFFF},
                              {"-99999999999999999999999999", 0xFFFFFFFF},
                              {"-", 0},
                              {"--1", 0},
                              {"-0", 0}};
    for (const NumberRow& row : rows) {
        EXPECT_EQ(conversion::unsigned32(row.text, 10), row.number) << '"' << row.text << '"';
    }
}

TEST(Unsigned32, ReadsOtherBases) {
    EXPECT_EQ(conversion::unsigned32("ff", 16), 255U);
    EXPECT_EQ(conversion::unsigned32("0xFFFFFFFF", 16), 0xFFFFFFFFU);
    EXPECT_EQ(conversion::unsigned32("0x100000000", 16), 0xFFFFFFFFU);
    EXPECT_EQ(conversion::unsigned32("-0x10", 16), 0xFFFFFFF0U);
    EXPECT_EQ(conversion::unsigned32("0x", 16), 0U);
    EXPECT_EQ(conversion::unsigned32("0xx1", 16), 0U);
    EXPECT_EQ(conversion::unsigned32("0x 1", 16), 0U);
    EXPECT_EQ(conversion::unsigned32("777", 8), 511U);
}

TEST(Unsigned32, EndsWithItsText) {
    EXPECT_EQ(conversion::unsigned32(std::string_view("1234").substr(0, 2), 10), 12U);
    EXPECT_EQ(conversion::unsigned32(std::string_view("0x12").substr(0, 2), 16), 0U);
    EXPECT_EQ(conversion::unsigned32({}, 10), 0U);
}

TEST(Unsigned32, LeavesErrnoAlone) {
    errno = EINTR;
    conversion::unsigned32("99999999999999999999999999", 10);
    EXPECT_EQ(errno, EINTR);
}

TEST(ElementNumber, IsHexadecimalWhereTheTextHoldsAPrefixAnywhere) {
    const NumberRow rows[] = {{"1234", 1234},
                              {"0x4D2", 1234},
                              {"0X4d2", 1234},
                              {"abc0x", 0xABC0},
                              {"12 0X", 0x12},
                              {"abc", 0},
                              {"12ab", 12},
                              {"0x", 0},
                              {"", 0},
                              {"  77  ", 77},
                              {"-1", ~0U},
                              {"-0x1", ~0U},
                              {"4294967296", ~0U},
                              {"0x1234567890", ~0U},
                              {"010", 10},
                              {"0x0x12", 0}};
    for (const NumberRow& row : rows) {
        EXPECT_EQ(image::elementNumber(row.text), row.number) << '"' << row.text << '"';
    }
}

TEST(HwSwIdNumber, IsAlwaysHexadecimal) {
    EXPECT_EQ(image::hwSwIdNumber("12345678"), 0x12345678U);
    EXPECT_EQ(image::hwSwIdNumber("0x12345678"), 0x12345678U);
    EXPECT_EQ(image::hwSwIdNumber("0X12345678"), 0x12345678U);
    EXPECT_EQ(image::hwSwIdNumber("10"), 0x10U);
    EXPECT_EQ(image::hwSwIdNumber("xyz"), 0U);
    EXPECT_EQ(image::hwSwIdNumber("0x123456789"), 0xFFFFFFFFU);
}

TEST(SwVersionNumber, IsHexadecimalBehindASmallPrefixOnly) {
    EXPECT_EQ(image::swVersionNumber("0x0102"), 258U);
    EXPECT_EQ(image::swVersionNumber("0X0102"), 0U);
    EXPECT_EQ(image::swVersionNumber("0102"), 102U);
    EXPECT_EQ(image::swVersionNumber(" 0x0102"), 0U);
    EXPECT_EQ(image::swVersionNumber("12ab"), 12U);
    EXPECT_EQ(image::swVersionNumber("0x"), 0U);
    EXPECT_EQ(image::swVersionNumber("0"), 0U);
    EXPECT_EQ(image::swVersionNumber(""), 0U);
}

TEST(MinorDifference, IsInTheLowestEightBits) {
    EXPECT_TRUE(image::isSameButForMinor(0x12345678, 0x12345678));
    EXPECT_TRUE(image::isSameButForMinor(0x12345678, 0x123456AB));
    EXPECT_TRUE(image::isSameButForMinor(0x12345600, 0x123456FF));
    EXPECT_FALSE(image::isSameButForMinor(0x12345678, 0x12335678));
    EXPECT_FALSE(image::isSameButForMinor(0x12345678, 0x12345778));
    EXPECT_FALSE(image::isSameButForMinor(0x000000FF, 0x00000100));
    EXPECT_FALSE(image::isSameButForMinor(0x80000000, 0x00000000));
}

} // namespace
