#include "unit/Firmware/image/FirmwareFromC.h"

#include "unit/Firmware/image/ImageFixture.hpp"

namespace mox::images {
namespace {

class ImagesFromC : public OnImages {};

TEST_F(ImagesFromC, AreCheckedAndCopied) {
    const std::string path = write(imageOf("payload", trailerFor("payload")));
    EXPECT_EQ(checkFromC(path.c_str(), 0x12345678, in("copy").c_str()), IMAGE_OK);
    EXPECT_EQ(contentOf(in("copy")), "payload");
    EXPECT_EQ(checkFromC(path.c_str(), 1, in("copy").c_str()), IMAGE_ERR_HWSWID);
}

// Other programs know them as numbers.
TEST(ImageResults, HaveTheirNumbers) {
    EXPECT_EQ(IMAGE_OK, 0);
    EXPECT_EQ(IMAGE_ERR_XML, 0x11301);
    EXPECT_EQ(IMAGE_ERR_FILE, 0x11306);
    EXPECT_EQ(IMAGE_ERR_TRAILER_LENGTH, 0x11307);
    EXPECT_EQ(IMAGE_ERR_HWSWID, 0x1130B);
    EXPECT_EQ(IMAGE_ERR_CRC, 0x1130D);
}

} // namespace
} // namespace mox::images
