#include "unit/Firmware/image/ImageFixture.hpp"

namespace mox::images {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BinaryCrc : public OnImages {
protected:
    int check(const std::string& payload, const std::string& trailerText) {
        return binary_crc(write(imageOf(payload, trailerText)).c_str());
    }

    /// The lines of binary_crc itself.
    std::vector<std::string> ownLines() {
        std::vector<std::string> own;
        for (const std::string& line : syslogLines()) {
            if (line.find("binary_crc") != std::string::npos) {
                own.push_back(line);
            }
        }
        return own;
    }
};

TEST_F(BinaryCrc, AcceptsAnImageOfAnyBoard) {
    for (const std::size_t size : {1U, 2U, 3U, 4U, 5U, 65536U, 100001U}) {
        const std::string payload = someBytes(size);
        EXPECT_EQ(check(payload, element("trailer", element("Crc32", std::to_string(crcOf(payload))))), IMAGE_OK);
    }
    EXPECT_THAT(ownLines(), IsEmpty());
    EXPECT_THAT(platformLines(), IsEmpty());
}

TEST_F(BinaryCrc, ReadsTheCrcInBothForms) {
    EXPECT_EQ(check("123456789", "<trailer><Crc32>0xCBF43926</Crc32></trailer>"), IMAGE_OK);
    EXPECT_EQ(check("123456789", "<trailer><Crc32>0XCBF43926</Crc32></trailer>"), IMAGE_OK);
    EXPECT_EQ(check("123456789", "<trailer><Crc32>3421780262</Crc32></trailer>"), IMAGE_OK);
    EXPECT_EQ(check("123456789", "<trailer><Crc32>CBF43926</Crc32></trailer>"), 70413);
}

TEST_F(BinaryCrc, RefusesAnotherCrc) {
    EXPECT_EQ(check("123456789", "<trailer><Crc32>7</Crc32></trailer>"), 70413);
    EXPECT_THAT(ownLines(), ElementsAre("info: binary_crc(): CRC check failed: " + in("image.bin") +
                                        ". Calculated CRC32: -873187034, Assumed: 7"));
}

TEST_F(BinaryCrc, RefusesAFileWithoutTrailer) {
    EXPECT_EQ(binary_crc(in("missing").c_str()), 70406);
    EXPECT_THAT(ownLines(),
                ElementsAre("info: binary_crc(): File '" + in("missing") + "' trailer read failed 70406 (0x11306)"));
    const std::string path = write(offsetWord(9));
    EXPECT_EQ(binary_crc(path.c_str()), 70407);
    EXPECT_THAT(ownLines(), ElementsAre("info: binary_crc(): File '" + path + "' trailer read failed 70407 (0x11307)"));
}

TEST_F(BinaryCrc, RefusesATrailerThatDoesNotParse) {
    EXPECT_EQ(check("payload", "<trailer"), 70401);
    EXPECT_THAT(ownLines(), ElementsAre("info: binary_crc(): XML parsing failed 2"));
}

TEST_F(BinaryCrc, RefusesADocumentWithoutTrailer) {
    EXPECT_EQ(check("payload", "<Trailer/>"), 70401);
    EXPECT_THAT(ownLines(), ElementsAre("info: binary_crc(): Invalid trailer XML"));
}

} // namespace
} // namespace mox::images
