#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>

#include <gtest/gtest.h>

namespace {

using ps::hwapi::common::image::ParsedTrailer;
using ps::hwapi::common::image::parseTrailer;

TEST(FindXmlTag, GivesTheFirstChildOfTheName) {
    const ParsedTrailer parsed = parseTrailer("<trailer><a>1</a><b>2</b><b>3</b></trailer>");
    const AaGpuXmlNode* const found = FindXmlTag(parsed.trailer, "b");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->AaGpuXmlGetName(), "b");
    EXPECT_EQ(found->AaGpuXmlGetValue(), "2");
}

TEST(FindXmlTag, ComparesTheWholeNameLetterForLetter) {
    const ParsedTrailer parsed = parseTrailer("<trailer><Crc>1</Crc><crc32>2</crc32><Crc321>3</Crc321></trailer>");
    EXPECT_EQ(FindXmlTag(parsed.trailer, "Crc32"), nullptr);
}

TEST(FindXmlTag, LooksAtNoGrandchildren) {
    const ParsedTrailer parsed = parseTrailer("<trailer><a><b>1</b></a></trailer>");
    EXPECT_EQ(FindXmlTag(parsed.trailer, "b"), nullptr);
}

TEST(FindXmlTag, FindsNothingInANodeWithoutChildren) {
    const ParsedTrailer parsed = parseTrailer("<trailer>a</trailer>");
    EXPECT_EQ(FindXmlTag(parsed.trailer, "a"), nullptr);
    EXPECT_EQ(FindXmlTag(parsed.trailer, ""), nullptr);
}

TEST(StringValue, IsTheTextOfTheFirstChildOfTheName) {
    const ParsedTrailer parsed = parseTrailer("<trailer><a>one &amp; two</a><a>three</a><b/></trailer>");
    EXPECT_EQ(getStringValueFromNode(parsed.trailer, "a"), "one & two");
    EXPECT_EQ(getStringValueFromNode(parsed.trailer, "b"), "");
    EXPECT_EQ(getStringValueFromNode(parsed.trailer, "c"), "");
}

TEST(NumberValue, IsThatOfTheFirstChildOfTheName) {
    const ParsedTrailer parsed = parseTrailer("<trailer><a>1234</a><a>5</a><b>0x4D2</b><c>abc0x</c><d>x</d></trailer>");
    EXPECT_EQ(getU32ValueFromNode(parsed.trailer, "a"), 1234U);
    EXPECT_EQ(getU32ValueFromNode(parsed.trailer, "b"), 1234U);
    EXPECT_EQ(getU32ValueFromNode(parsed.trailer, "c"), 0xABC0U);
    EXPECT_EQ(getU32ValueFromNode(parsed.trailer, "d"), 0U);
    EXPECT_EQ(getU32ValueFromNode(parsed.trailer, "e"), 0U);
}

} // namespace
