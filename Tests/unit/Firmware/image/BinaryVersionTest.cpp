#include "unit/Firmware/image/ImageFixture.hpp"

#include <cstdio>

namespace mox::images {
namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t own = 0x12345678;

class BinaryVersion : public OnImages {
protected:
    struct Version {
        int result;
        std::uint32_t value;
    };

    static Version read(const std::string& path, int allowMinor = 0, std::uint32_t hwSwId = own) {
        std::uint32_t version = 0xDEADBEEF;
        const int result = binary_version(path.c_str(), hwSwId, allowMinor, &version);
        return {result, version};
    }
    Version readFrom(const std::string& trailerText) { return read(write(imageOf("payload", trailerText))); }

    /// The lines of binary_version itself.
    std::vector<std::string> ownLines() {
        std::vector<std::string> lines;
        for (const std::string& line : syslogLines()) {
            if (line.find("binary_version") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    std::string firstLine() const { return "info: binary_version(): Reading file '" + in("image.bin") + "' trailer"; }
};

TEST_F(BinaryVersion, GivesTheVersionOfAnImageForThisBoard) {
    const std::string payload(0x11, 'p');
    const Version version = read(write(imageOf(payload, trailerFor(payload))));
    EXPECT_EQ(version.result, 0);
    EXPECT_EQ(version.value, 258U);
    char crc[32];
    std::snprintf(crc, sizeof(crc), "%d (0x%x)", static_cast<int>(crcOf(payload)), crcOf(payload));
    EXPECT_THAT(ownLines(),
                ElementsAre(firstLine(), "info: binary_version(): Version:    2",
                            "info: binary_version(): TargetUnit: KOR", "info: binary_version(): SwId:       TIRVO2-QE",
                            "info: binary_version(): SwVersion:  0x0102",
                            "info: binary_version(): BuildTime:  2024-05-06 07:08",
                            std::string("info: binary_version(): Crc32:      ") + crc,
                            "info: binary_version(): Length:     17 (0x11)"));
}

TEST_F(BinaryVersion, ReadsAPrefixInSmallLettersOnly) {
    EXPECT_EQ(readFrom(trailerFor("payload", "0X0102")).value, 0U);
    EXPECT_EQ(readFrom(trailerFor("payload", "0102")).value, 102U);
    EXPECT_EQ(readFrom(trailerFor("payload", "99999999999")).value, 0xFFFFFFFFU);
}

TEST_F(BinaryVersion, TellsAnImageOfAnotherBoard) {
    const std::string path = write(imageOf("payload", trailerFor("payload")));
    const Version version = read(path, 1, 0x12335678);
    EXPECT_EQ(version.result, 1);
    EXPECT_EQ(version.value, 0U);
    EXPECT_EQ(ownLines().back(), "info: binary_version(): Binary is not compatible with this board!");
}

TEST_F(BinaryVersion, TakesAMinorDifferenceOnlyWithLeave) {
    const std::string path = write(imageOf("payload", trailerFor("payload", "7", "<HwSwId>0x123456AB</HwSwId>")));
    EXPECT_EQ(read(path, 0).result, 1);
    EXPECT_EQ(read(path, 1).result, 0);
    EXPECT_EQ(read(path, 1).value, 7U);
}

TEST_F(BinaryVersion, DoesNotCheckTheCrc) {
    EXPECT_EQ(readFrom(trailerFor("PAYLOAD")).result, 0);
}

TEST_F(BinaryVersion, TellsAFileWithoutTrailer) {
    const Version version = read(write(offsetWord(0)));
    EXPECT_EQ(version.result, -1);
    EXPECT_EQ(version.value, 0U);
    EXPECT_THAT(ownLines(), ElementsAre(firstLine(), "info: binary_version(): Trailer read failed 70407 (0x11307)"));
}

TEST_F(BinaryVersion, TellsATrailerThatDoesNotParse) {
    const Version version = readFrom("trailer");
    EXPECT_EQ(version.result, -2);
    EXPECT_EQ(version.value, 0U);
    EXPECT_THAT(ownLines(), ElementsAre(firstLine(), "info: binary_version(): XML parsing failed 2"));
}

TEST_F(BinaryVersion, TellsADocumentWithoutTrailer) {
    const Version version = readFrom("<other/>");
    EXPECT_EQ(version.result, -3);
    EXPECT_EQ(version.value, 0U);
    EXPECT_THAT(ownLines(), ElementsAre(firstLine(), "info: binary_version(): Invalid trailer XML"));
}

} // namespace
} // namespace mox::images
