#include <gtest/gtest.h>
#include <host/pal/TypedValue.hpp>

#include <ostream>

namespace {

using namespace mox::host;

struct Row {
    ValueType type;
    const char* text;
    std::string bytes;
    const char* shown;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << nameOf(row.type) << " " << row.text;
}

class AGoodText : public testing::TestWithParam<Row> {};

TEST_P(AGoodText, BecomesItsBytesAndIsShownAgain) {
    const auto value = parseValue(GetParam().type, GetParam().text);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->bytes, GetParam().bytes);
    EXPECT_EQ(showValue(*value), GetParam().shown);
    EXPECT_EQ(valueTypeOf(nameOf(GetParam().type)), GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(
    TypedValue, AGoodText,
    testing::Values(Row{ValueType::text, "a b", "a b", "a b"}, Row{ValueType::text, "", "", ""},
                    Row{ValueType::u8, "255", "\xFF", "255"}, Row{ValueType::u16, "0x1234", "\x34\x12", "4660"},
                    Row{ValueType::u32, "0xFFFFFFFF", "\xFF\xFF\xFF\xFF", "4294967295"},
                    Row{ValueType::u64, "18446744073709551615", std::string(8, '\xFF'), "18446744073709551615"},
                    Row{ValueType::bytes, "00 ff0A", std::string("\0\xFF\n", 3), "00ff0a"},
                    Row{ValueType::bytes, "", "", ""}));

class ABadText : public testing::TestWithParam<std::pair<ValueType, const char*>> {};

TEST_P(ABadText, IsNoValue) {
    EXPECT_FALSE(parseValue(GetParam().first, GetParam().second));
}

INSTANTIATE_TEST_SUITE_P(TypedValue, ABadText,
                         testing::Values(std::pair{ValueType::u8, "256"}, std::pair{ValueType::u16, "65536"},
                                         std::pair{ValueType::u32, "0x100000000"}, std::pair{ValueType::u32, "-1"},
                                         std::pair{ValueType::u32, " 1"}, std::pair{ValueType::u32, "1 "},
                                         std::pair{ValueType::u32, ""}, std::pair{ValueType::u32, "0x"},
                                         std::pair{ValueType::u64, "18446744073709551616"},
                                         std::pair{ValueType::bytes, "0"}, std::pair{ValueType::bytes, "0g"},
                                         std::pair{ValueType::bytes, "0 0"}, std::pair{ValueType::bytes, "0x00"}));

TEST(TypedValue, LongerThanATagMayBeIsNoValue) {
    EXPECT_TRUE(parseValue(ValueType::text, std::string(maxTagValue, 'x')));
    EXPECT_FALSE(parseValue(ValueType::text, std::string(maxTagValue + 1, 'x')));
}

TEST(TypedValue, OfANumberTypeWithAnotherLengthIsShownAsBytes) {
    EXPECT_EQ(showValue({ValueType::u32, std::string("\1\2", 2)}), "0102");
}

TEST(TypedValue, HasNoTypeOfAnUnknownName) {
    EXPECT_FALSE(valueTypeOf("u128"));
}

} // namespace
