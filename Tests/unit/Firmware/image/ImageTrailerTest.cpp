#include "mock/AaCpuBitMock.hpp"
#include "unit/Firmware/image/ImageFixture.hpp"

#include <mox/ImageTrailer.hpp>

namespace mox::images {
namespace {

using namespace ps::hwapi::common::image;
using ::testing::ElementsAre;
using ::testing::Optional;

const unsigned char* bytesOf(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

TEST(LastWord, GivesBothReadersTheSameNumber) {
    const std::string word = offsetWord(0x12345678);
    EXPECT_EQ(payloadLength(bytesOf(word)), 0x12345678U);
    EXPECT_EQ(trailerOffset(bytesOf(word)), 0x12345678U);
}

TEST(LastWord, IsConvertedByThePlatformForTheReaderOfTheTrailerOnly) {
    mock::Use<mock::AaCpuBitMock> bits;
    EXPECT_CALL(bits, AaCpuBitSwapByteOrder32(::testing::Pointee(0x12345678U)))
        .WillOnce(::testing::SetArgPointee<0>(0x78563412U));
    const std::string word = offsetWord(0x12345678);
    EXPECT_EQ(trailerOffset(bytesOf(word)), 0x78563412U);
    EXPECT_EQ(payloadLength(bytesOf(word)), 0x12345678U);
}

TEST(TrailerOffset, LiesInsideOfTheImage) {
    EXPECT_FALSE(isTrailerOffset(0, 100));
    EXPECT_TRUE(isTrailerOffset(1, 100));
    EXPECT_TRUE(isTrailerOffset(95, 100));
    EXPECT_TRUE(isTrailerOffset(96, 100));
    EXPECT_TRUE(isTrailerOffset(99, 100));
    EXPECT_FALSE(isTrailerOffset(100, 100));
    EXPECT_FALSE(isTrailerOffset(101, 100));
    EXPECT_FALSE(isTrailerOffset(0xFFFFFFFF, 100));
    EXPECT_FALSE(isTrailerOffset(0, 0));
}

TEST(TrailerOffset, IsNoneInAnImageOfUnknownSize) {
    EXPECT_FALSE(isTrailerOffset(100, constant::unknownSize));
    EXPECT_FALSE(isTrailerOffset(0xFFFFFFFF, constant::unknownSize));
}

TEST(PayloadLength, MayBeZero) {
    EXPECT_TRUE(isPayloadLength(0, 4));
    EXPECT_TRUE(isPayloadLength(3, 4));
    EXPECT_FALSE(isPayloadLength(4, 4));
    EXPECT_FALSE(isPayloadLength(0xFFFFFFFF, 4));
}

TEST(TrailerText, EndsAtTheFirstZeroByte) {
    using namespace std::string_view_literals;
    EXPECT_EQ(trailerText("text\0\1\2\3\4"sv), "text");
    EXPECT_EQ(trailerText("te\0xt\0"sv), "te");
    EXPECT_EQ(trailerText("text\1\2\3\4"sv), "text\1\2\3\4");
    EXPECT_EQ(trailerText("\0text"sv), "");
    EXPECT_EQ(trailerText(""sv), "");
}

TEST(ParsedTrailer, HoldsTheElement) {
    const ParsedTrailer parsed = parseTrailer("<?xml version=\"1.0\"?>\n<!-- made today --><trailer/>");
    ASSERT_NE(parsed.document, nullptr);
    ASSERT_NE(parsed.trailer, nullptr);
    EXPECT_EQ(parsed.trailer->AaGpuXmlGetName(), "trailer");
    EXPECT_EQ(parsed.parserResult, EAaGpuXmlResult_NoError);
}

TEST(ParsedTrailer, HasNoElementOfAnotherNameOrDepth) {
    for (const char* const text : {"<Trailer/>", "<image><trailer/></image>", "<trailers/>"}) {
        const ParsedTrailer parsed = parseTrailer(text);
        EXPECT_NE(parsed.document, nullptr) << text;
        EXPECT_EQ(parsed.trailer, nullptr) << text;
    }
}

TEST(ParsedTrailer, HasTheParsersResultWhenTheTextIsNoDocument) {
    for (const char* const text : {"", "text", "<trailer>", "<trailer></Trailer>"}) {
        const ParsedTrailer parsed = parseTrailer(text);
        EXPECT_EQ(parsed.document, nullptr) << text;
        EXPECT_EQ(parsed.trailer, nullptr) << text;
        EXPECT_EQ(parsed.parserResult, EAaGpuXmlResult_SyntaxError) << text;
    }
}

TEST(TrailerFields, AreReadFromTheirElements) {
    const ParsedTrailer parsed = parseTrailer(trailerFor("payload"));
    const TrailerFields fields = readFields(*parsed.trailer);
    EXPECT_EQ(fields.version, 2U);
    EXPECT_EQ(fields.crc32, crcOf("payload"));
    EXPECT_EQ(fields.length, 7U);
    EXPECT_EQ(fields.targetUnit, "KOR");
    EXPECT_EQ(fields.swId, "TIRVO2-QE");
    EXPECT_EQ(fields.swVersion, "0x0102");
    EXPECT_EQ(fields.buildTime, "2024-05-06 07:08");
}

TEST(TrailerFields, AreZeroOrEmptyWhereNothingIsGiven) {
    const ParsedTrailer parsed = parseTrailer("<trailer/>");
    const TrailerFields fields = readFields(*parsed.trailer);
    EXPECT_EQ(fields.version, 0U);
    EXPECT_EQ(fields.crc32, 0U);
    EXPECT_EQ(fields.length, 0U);
    EXPECT_EQ(fields.targetUnit + fields.swId + fields.swVersion + fields.buildTime, "");
}

std::optional<std::vector<std::uint32_t>> idsOf(const std::string& inTrailer) {
    return readHwSwIds(*parseTrailer(element("trailer", inTrailer)).trailer);
}

TEST(ListedIdentifiers, AreReadInTheirOrder) {
    EXPECT_THAT(idsOf("<HwSwIdList><HwSwId>0x2</HwSwId><HwSwId>1</HwSwId><HwSwId>zz</HwSwId></HwSwIdList>"),
                Optional(ElementsAre(2, 1, 0)));
}

TEST(ListedIdentifiers, AreTheElementsOfThatNameOnly) {
    EXPECT_THAT(idsOf("<HwSwIdList><Note>7</Note><HwSwId>1</HwSwId><hwswid>8</hwswid></HwSwIdList>"),
                Optional(ElementsAre(1)));
    EXPECT_THAT(idsOf("<HwSwIdList><Group><HwSwId>1</HwSwId></Group></HwSwIdList>"), Optional(ElementsAre()));
}

TEST(ListedIdentifiers, MayBeNone) {
    EXPECT_THAT(idsOf("<HwSwIdList/>"), Optional(ElementsAre()));
    EXPECT_EQ(idsOf("<HwSwId>1</HwSwId>"), std::nullopt);
}

TEST(OwnIdentifier, IsFoundExactlyBeforeAllOthers) {
    const ListedHwSwId listed = findHwSwId({0x12345600, 0x12345678, 0x12345678}, 0x12345678);
    EXPECT_EQ(listed.match, HwSwIdMatch::exact);
    EXPECT_EQ(listed.index, 1U);
}

TEST(OwnIdentifier, IsFoundWithAMinorDifference) {
    const ListedHwSwId listed = findHwSwId({0x12335678, 0x123456AB, 0x12345600}, 0x12345678);
    EXPECT_EQ(listed.match, HwSwIdMatch::minor);
    EXPECT_EQ(listed.index, 1U);
}

TEST(OwnIdentifier, MayNotBeFound) {
    EXPECT_EQ(findHwSwId({0x12335678}, 0x12345678).match, HwSwIdMatch::none);
    EXPECT_EQ(findHwSwId({}, 0).match, HwSwIdMatch::none);
}

} // namespace
} // namespace mox::images
