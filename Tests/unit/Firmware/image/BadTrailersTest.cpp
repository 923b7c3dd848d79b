// Trailers that no producer writes. Each is refused or read by the stated rules, and in short time.
#include "unit/Firmware/image/ImageFixture.hpp"

#include <algorithm>

namespace mox::images {
namespace {

using ::testing::Contains;

constexpr std::uint32_t own = 0x12345678;

class BadTrailer : public OnImages {
protected:
    struct Results {
        int validate;
        int crc;
        int version;
        std::uint32_t value;
    };

    Results readBytes(const std::string& bytes) {
        const std::string path = write(bytes);
        Results results{};
        results.validate = binary_validate(path.c_str(), own);
        results.crc = binary_crc(path.c_str());
        results.version = binary_version(path.c_str(), own, 1, &results.value);
        return results;
    }
    Results read(const std::string& trailerText) { return readBytes(imageOf(payload, trailerText)); }

    void expectNoXml(const std::string& trailerText) {
        const Results results = read(trailerText);
        EXPECT_EQ(results.validate, 70401);
        EXPECT_EQ(results.crc, 70401);
        EXPECT_EQ(results.version, -2);
        EXPECT_EQ(results.value, 0U);
        EXPECT_THAT(platformLines(), Contains("4 0x20003: Trailer data parsing failed (code: 2)"));
        const auto lines = syslogLines();
        EXPECT_THAT(lines, Contains("info: binary_crc(): XML parsing failed 2"));
        EXPECT_THAT(lines, Contains("info: binary_version(): XML parsing failed 2"));
    }

    const std::string payload = "payload";
    const std::string crc = element("Crc32", std::to_string(crcOf(payload)));
    const std::string list = "<HwSwIdList><HwSwId>12345678</HwSwId></HwSwIdList>";
};

TEST_F(BadTrailer, WithoutZeroByteBeforeAWordThatContinuesTheText) {
    const std::string sixty(0x3C, 'p'); // the word's first byte is then "<"
    const Results results = readBytes(sixty + trailerFor(sixty) + offsetWord(0x3C));
    EXPECT_EQ(results.validate, 70401);
    EXPECT_EQ(results.crc, 70401);
    EXPECT_EQ(results.version, -2);
}

TEST_F(BadTrailer, WithoutZeroByteBeforeAWordThatBeginsWithOne) {
    const std::string large(256, 'p');
    const std::string text = trailerFor(large);
    EXPECT_EQ(readBytes(large + text + offsetWord(256)).validate, 0);
}

TEST_F(BadTrailer, WithAZeroByteInside) {
    expectNoXml("<trailer>" + crc + std::string(1, '\0') + list + "</trailer>");
    EXPECT_EQ(read(element("trailer", crc + list) + std::string(1, '\0') + "<garbage").validate, 0);
}

TEST_F(BadTrailer, OfOneByteAndOfNone) {
    expectNoXml("<");
    expectNoXml("");
    expectNoXml(std::string(1, '\0'));
}

TEST_F(BadTrailer, OfAlmostTheWholeFile) {
    const std::string text = "<trailer>" + element("Crc32", std::to_string(crcOf("<"))) + list + "</trailer>";
    EXPECT_EQ(readBytes(text + std::string(1, '\0') + offsetWord(1)).validate, 70401);
    EXPECT_EQ(readBytes("<" + text + std::string(1, '\0') + offsetWord(1)).validate, 0);
}

TEST_F(BadTrailer, WithAByteSwappedWord) {
    std::string bytes = imageOf(payload, element("trailer", crc + list));
    std::reverse(bytes.end() - 4, bytes.end());
    const Results results = readBytes(bytes);
    EXPECT_EQ(results.validate, 70407);
    EXPECT_EQ(results.version, -1);
    EXPECT_EQ(binary_copy_without_trailer(in("image.bin").c_str(), in("payload").c_str()), -6);
}

TEST_F(BadTrailer, WithElementsTwice) {
    const Results results = read(element("trailer", crc + "<Crc32>1</Crc32><SwVersion>1</SwVersion>" + list +
                                                        "<SwVersion>2</SwVersion><HwSwIdList/>"));
    EXPECT_EQ(results.validate, 0);
    EXPECT_EQ(results.version, 0);
    EXPECT_EQ(results.value, 1U);
}

TEST_F(BadTrailer, WithTwoTrailers) {
    const std::string good = element("trailer", crc + list);
    EXPECT_EQ(read("<trailer/>" + good).validate, 70413);
    EXPECT_EQ(read(good + "<trailer/>").validate, 0);
}

TEST_F(BadTrailer, WithNegativeAndOversizedNumbers) {
    const Results results = read(element("trailer", crc +
                                                        "<Version>-1</Version><Length>99999999999999999999</Length>"
                                                        "<SwVersion>-2</SwVersion>" +
                                                        list));
    EXPECT_EQ(results.validate, 0);
    EXPECT_EQ(results.version, 0);
    EXPECT_EQ(results.value, 0xFFFFFFFEU);
    const auto lines = platformLines();
    EXPECT_THAT(lines, Contains("2 0x20003: TrailerVersion: -1"));
    EXPECT_THAT(lines, Contains("2 0x20003: File Length: -1 (0xffffffff)"));
}

TEST_F(BadTrailer, WithoutAnyElement) {
    const Results results = read("<trailer/>");
    EXPECT_EQ(results.validate, 70413);
    EXPECT_EQ(results.crc, 70413);
    EXPECT_EQ(results.version, 1);
}

TEST_F(BadTrailer, WithTextsLongerThanALine) {
    const std::string text(10000, 'x');
    EXPECT_EQ(read(element("trailer", crc + element("TargetUnit", text) + element("SwId", text) + list)).validate, 0);
    EXPECT_THAT(platformLines(), Contains("2 0x20003: TargetUnit: " + text));
}

TEST_F(BadTrailer, WithMoreIdentifiersThanADocumentMayHold) {
    std::string ids;
    for (unsigned i = 0; i < 100000; ++i) {
        ids += "<HwSwId>1</HwSwId>";
    }
    expectNoXml(element("trailer", crc + element("HwSwIdList", ids)));
}

TEST_F(BadTrailer, WithManyIdentifiers) {
    std::string ids;
    for (unsigned i = 0; i < 50000; ++i) {
        ids += "<HwSwId>1</HwSwId>";
    }
    EXPECT_EQ(read(element("trailer", crc + element("HwSwIdList", ids))).validate, 70411);
    EXPECT_EQ(read(element("trailer", crc + element("HwSwIdList", ids + "<HwSwId>12345678</HwSwId>"))).validate, 0);
}

TEST_F(BadTrailer, WithElementsNestedVeryDeeply) {
    std::string text;
    for (unsigned i = 0; i < 100000; ++i) {
        text += "<a>";
    }
    expectNoXml(text);
    std::string ends;
    for (unsigned i = 0; i < 100000; ++i) {
        ends += "</a>";
    }
    expectNoXml("<trailer>" + text + ends + "</trailer>");
}

TEST_F(BadTrailer, WithEntities) {
    expectNoXml("<!DOCTYPE t [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]><trailer>&b;</trailer>");
    expectNoXml("<!DOCTYPE t [<!ENTITY f SYSTEM \"file:///etc/passwd\">]><trailer><SwId>&f;</SwId></trailer>");
    EXPECT_EQ(read(element("trailer", crc + "<SwId>&f;&#65;&amp;</SwId>" + list)).validate, 0);
    EXPECT_THAT(platformLines(), Contains("2 0x20003: SwId: &f;A&"));
}

} // namespace
} // namespace mox::images
