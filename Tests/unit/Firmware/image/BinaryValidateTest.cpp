#include "mock/Faults.hpp"
#include "unit/Firmware/image/ImageFixture.hpp"

#include <cstdio>

namespace mox::images {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr std::uint32_t own = 0x12345678;

class BinaryValidate : public OnImages {
protected:
    int validate(const std::string& trailerText, std::uint32_t hwSwId = own) {
        return binary_validate(write(imageOf(payload, trailerText)).c_str(), hwSwId);
    }

    static std::vector<std::string> fieldLines(std::int32_t crc) {
        char number[32];
        std::snprintf(number, sizeof(number), "%d (0x%x)", crc, static_cast<unsigned>(crc));
        return {"2 0x20003: TrailerVersion: 2",
                "2 0x20003: TargetUnit: KOR",
                "2 0x20003: SwId: TIRVO2-QE",
                "2 0x20003: SwVersion: 0x0102",
                "2 0x20003: BuildTime: 2024-05-06 07:08",
                std::string("2 0x20003: CRC32: ") + number,
                "2 0x20003: File Length: 10 (0xa)"};
    }

    const std::string payload = "ten bytes!";
    const std::int32_t crc = static_cast<std::int32_t>(crcOf(payload));
};

TEST_F(BinaryValidate, AcceptsAWholeImage) {
    EXPECT_EQ(validate(trailerFor(payload)), IMAGE_OK);
    EXPECT_THAT(platformLines(), ElementsAreArray(fieldLines(crc)));
}

TEST_F(BinaryValidate, AcceptsAMinorDifference) {
    EXPECT_EQ(validate(trailerFor(payload, "1", "<HwSwId>0x123456AB</HwSwId>")), IMAGE_OK);
}

TEST_F(BinaryValidate, RefusesAnotherBoard) {
    EXPECT_EQ(validate(trailerFor(payload), 0x12335678), 70411);
    auto expected = fieldLines(crc);
    expected.emplace_back("2 0x20003: Own HwSwId not found from trailer, binary is not compatible with this board!");
    EXPECT_THAT(platformLines(), ElementsAreArray(expected));
}

TEST_F(BinaryValidate, RefusesAPayloadOfAnotherCrc) {
    EXPECT_EQ(validate(trailerFor("TEN BYTES!")), 70413);
    const auto assumed = static_cast<std::int32_t>(crcOf("TEN BYTES!"));
    auto expected = fieldLines(assumed);
    expected.push_back("4 0x20003: CRC check failed: " + in("image.bin") +
                       ". Calculated CRC32: " + std::to_string(crc) + ", Assumed: " + std::to_string(assumed));
    EXPECT_THAT(platformLines(), ElementsAreArray(expected));
}

TEST_F(BinaryValidate, TakesAMissingCrcForZero) {
    EXPECT_EQ(validate("<trailer><HwSwIdList><HwSwId>12345678</HwSwId></HwSwIdList></trailer>"), 70413);
    EXPECT_THAT(platformLines(), ElementsAre("2 0x20003: TrailerVersion: 0", "2 0x20003: TargetUnit: ",
                                             "2 0x20003: SwId: ", "2 0x20003: SwVersion: ", "2 0x20003: BuildTime: ",
                                             "2 0x20003: CRC32: 0 (0x0)", "2 0x20003: File Length: 0 (0x0)",
                                             "4 0x20003: CRC check failed: " + in("image.bin") +
                                                 ". Calculated CRC32: " + std::to_string(crc) + ", Assumed: 0"));
}

TEST_F(BinaryValidate, DoesNotCompareTheLength) {
    std::string text = trailerFor(payload);
    text.replace(text.find("<Length>10<"), 11, "<Length>99<");
    EXPECT_EQ(validate(text), IMAGE_OK);
}

TEST_F(BinaryValidate, ReportsATrailerThatIsNotThere) {
    EXPECT_EQ(binary_validate(in("missing").c_str(), own), 70406);
    EXPECT_THAT(platformLines(), ElementsAre("4 0x20003: Reading the file trailer failed, errorCode: 70406 (0x11306)"));
    EXPECT_EQ(binary_validate(write(offsetWord(4)).c_str(), own), 70407);
    EXPECT_THAT(platformLines(), ElementsAre("4 0x20003: Reading the file trailer failed, errorCode: 70407 (0x11307)"));
}

TEST_F(BinaryValidate, ReportsATrailerThatDoesNotParse) {
    EXPECT_EQ(validate("<trailer>"), 70401);
    EXPECT_THAT(platformLines(), ElementsAre("4 0x20003: Trailer data parsing failed (code: 2)"));
}

TEST_F(BinaryValidate, ReportsADocumentWithoutTrailer) {
    EXPECT_EQ(validate("<image><trailer/></image>"), 70401);
    EXPECT_THAT(platformLines(), ElementsAre("1 0x20003: SW_DL_ERROR!!! could not find node"));
}

TEST_F(BinaryValidate, WritesNothingOfItsOwnThroughSyslog) {
    EXPECT_EQ(validate(trailerFor(payload)), IMAGE_OK);
    const auto lines = syslogLines();
    EXPECT_THAT(lines, ::testing::Not(IsEmpty()));
    EXPECT_THAT(lines, ::testing::Each(::testing::AnyOf(::testing::StartsWith("debug: get_trailer(): "),
                                                        ::testing::StartsWith("debug: calculate_crc(): "),
                                                        ::testing::StartsWith("debug: scan_hwswid(): "))));
}

} // namespace
} // namespace mox::images
