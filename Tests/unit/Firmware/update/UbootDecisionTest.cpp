#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>

namespace mox::firmwaretest {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Return;
using ::testing::StartsWith;

constexpr const char* function = "is_uboot_update_needed";
constexpr const char* file = "/ffs/run/boot/KOR-RN-QE.bin";

class BootedFromRam : public UpdateDecision {};

TEST_F(BootedFromRam, IsWhatTheLocationSays) {
    EXPECT_EQ(is_uboot_booted_from_ram(), 1);
    for (const std::uint32_t other : {0U, 1U, 3U}) {
        setLocation(other);
        EXPECT_EQ(is_uboot_booted_from_ram(), 0) << other;
    }
    EXPECT_THAT(takeLines("is_uboot_booted_from_ram"),
                ElementsAre("info ?", "info yes", "info ?", "info no", "info ?", "info no", "info ?", "info no"));
}

TEST_F(BootedFromRam, IsUnknownWhenTheLocationCannotBeRead) {
    EXPECT_CALL(boot(), ddal_boot_get_uboot_id).WillOnce(Return(DDAL_IO_ERROR));
    EXPECT_EQ(is_uboot_booted_from_ram(), -1);
    EXPECT_THAT(takeLines("is_uboot_booted_from_ram"),
                ElementsAre("info ?", StartsWith("info ddal_boot_get_uboot_id() failed with error -5 '")));
}

class UbootDecision : public UpdateDecision {
protected:
    int ask(int force = 0) { return is_uboot_update_needed(images, path, sizeof path, force); }
};

TEST_F(UbootDecision, IsYesForANewerImage) {
    place("KOR-RN-QE.bin", image("0x10"));
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, file);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "info uboot is started from 'uImage' (2)",
                                                 "info uboot file '/ffs/run/boot/KOR-RN-QE.bin' version 0x10 (16)",
                                                 "info active uboot version '5'", "info yes"));
}

TEST_F(UbootDecision, IsYesForTheSameVersion) {
    place("KOR-RN-QE.bin", image("5"));
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, file);
}

TEST_F(UbootDecision, IsNoForAnOlderImageWhosePathIsToldAllTheSame) {
    place("KOR-RN-QE.bin", image("4"));
    EXPECT_EQ(ask(), 0);
    EXPECT_STREQ(path, file);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info uboot is started from 'uImage' (2)",
                            "info uboot file '/ffs/run/boot/KOR-RN-QE.bin' version 0x4 (4)",
                            "info active uboot version '5'",
                            "info uboot binary version is older than active, do not update wrong one!", "info no"));
}

struct LocationRow {
    std::uint32_t location;
    const char* name;
};

TEST_F(UbootDecision, IsNoWithoutALookAtImagesUnlessStartedFromRam) {
    place("KOR-RN-QE.bin", image("9"));
    for (const LocationRow& row : {LocationRow{0, "'primary' (0)"}, LocationRow{1, "'backup' (1)"},
                                   LocationRow{3, "'unknown' (3)"}, LocationRow{0xFFFFFFFF, "'unknown' (-1)"}}) {
        setLocation(row.location);
        EXPECT_EQ(ask(), 0);
        EXPECT_THAT(takeLines(function),
                    ElementsAre("info ?", std::string("info uboot is started from ") + row.name, "info no"));
    }
    EXPECT_TRUE(isPathUntouched());
    EXPECT_THAT(takeLines("find_binary_multiple"), IsEmpty());
}

TEST_F(UbootDecision, MayBeForcedWhereverItWasStartedFrom) {
    place("KOR-RN-QE.bin", image("5"));
    setLocation(1);
    EXPECT_EQ(ask(1), 1);
    EXPECT_STREQ(path, file);
    for (const int notForced : {0, 2, -1})
        EXPECT_EQ(ask(notForced), 0) << notForced;
}

TEST_F(UbootDecision, IsNotForcedOverANewerVersion) {
    place("KOR-RN-QE.bin", image("4"));
    setLocation(1);
    EXPECT_EQ(ask(1), 0);
    EXPECT_STREQ(path, file);
}

TEST_F(UbootDecision, TakesATextThatIsNoNumberForVersion0) {
    place("KOR-RN-QE.bin", image("0"));
    for (const char* text : {"unknown", "", "v7"}) {
        setActive(std::string(text));
        EXPECT_EQ(ask(), 1) << text;
    }
}

TEST_F(UbootDecision, ReadsTheActiveVersionAsA32BitDecimalNumber) {
    place("KOR-RN-QE.bin", image("0xFFFFFFFF"));
    for (const char* text : {"4294967295", "4294967296", "99999999999999999999"}) {
        setActive(std::string(text));
        EXPECT_EQ(ask(), 1) << text;
    }
    place("KOR-RN-QE.bin", image("0xFFFFFFFE"));
    for (const char* text : {"4294967295", "4294967296", "99999999999999999999"}) {
        setActive(std::string(text));
        EXPECT_EQ(ask(), 0) << text;
    }
    place("KOR-RN-QE.bin", image("9"));
    setActive(std::string("0x10"));
    EXPECT_EQ(ask(), 1);
    setActive(std::string("010 build 7"));
    EXPECT_EQ(ask(), 0);
}

TEST_F(UbootDecision, ShowsALargeVersionAsANumberWithSign) {
    place("KOR-RN-QE.bin", image("0xFFFFFFFF"));
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(log.has(testkit::info(
        0, "is_uboot_update_needed(): uboot file '/ffs/run/boot/KOR-RN-QE.bin' version 0xFFFFFFFF (-1)")));
}

TEST_F(UbootDecision, AllowsADifferentMinorVersionOfTheBoard) {
    place("KOR-RN-QE.bin", minorOther("6"));
    EXPECT_EQ(ask(), 1);
}

TEST_F(UbootDecision, AsksForRoomOf128BytesForTheVersion) {
    place("KOR-RN-QE.bin", image("6"));
    EXPECT_CALL(boot(), ddal_boot_get_uboot_version(128, _)).WillOnce([](uint32_t length, char* text) {
        std::fill(text, text + length, '1');
        text[length - 1] = '\0';
        return DDAL_OK;
    });
    EXPECT_EQ(ask(), 0);
}

TEST_F(UbootDecision, TellsThatTheLocationCannotBeRead) {
    EXPECT_CALL(boot(), ddal_boot_get_uboot_id).WillOnce(Return(DDAL_NOT_SUPPORTED));
    EXPECT_EQ(ask(1), -10);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", StartsWith("info ddal_boot_get_uboot_id() failed with error -95 '")));
    EXPECT_TRUE(isPathUntouched());
}

TEST_F(UbootDecision, TellsThatThereIsNoImage) {
    EXPECT_EQ(ask(), -7);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info uboot is started from 'uImage' (2)", "info no uboot binary"));
    place("KOR-RN-QE.bin", foreign());
    EXPECT_EQ(ask(), -7);
    EXPECT_TRUE(isPathUntouched());
}

TEST_F(UbootDecision, TellsThatThereAreTwoImages) {
    place("KOR-RN-QE-1.bin");
    place("KOR-RN-QE-2.bin");
    EXPECT_EQ(ask(), -8);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "info uboot is started from 'uImage' (2)"));
    EXPECT_TRUE(isPathUntouched());
}

TEST_F(UbootDecision, HandsTheFailuresOfTheSearchOn) {
    EXPECT_EQ(is_uboot_update_needed("/ffs/nothing", path, sizeof path, 0), -4);
    EXPECT_EQ(is_uboot_update_needed(nullptr, path, sizeof path, 0), -911);
    for (int i = 0; i < 11; ++i)
        place("KOR-RN-QE-" + std::to_string(i) + ".bin");
    EXPECT_EQ(ask(), -5);
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -1);
    EXPECT_TRUE(isPathUntouched());
}

TEST_F(UbootDecision, HandsOnThatTheOwnIdentifierCannotBeRead) {
    place("KOR-RN-QE.bin");
    failHwSwId(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -6);
}

TEST_F(UbootDecision, TellsThatTheActiveVersionCannotBeRead) {
    place("KOR-RN-QE.bin", image("6"));
    EXPECT_CALL(boot(), ddal_boot_get_uboot_version).WillOnce(Return(DDAL_IO_ERROR));
    EXPECT_EQ(ask(), -9);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info uboot is started from 'uImage' (2)",
                            "info uboot file '/ffs/run/boot/KOR-RN-QE.bin' version 0x6 (6)",
                            StartsWith("info ddal_boot_get_uboot_version() failed with error -5 '")));
    EXPECT_TRUE(isPathUntouched());
}

TEST_F(UbootDecision, CutsThePathToTheRoomThatThereIs) {
    place("KOR-RN-QE.bin", image("6"));
    EXPECT_EQ(is_uboot_update_needed(images, path, 0, 0), 1);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(is_uboot_update_needed(images, path, 5, 0), 1);
    EXPECT_STREQ(path, "/ffs");
    EXPECT_EQ(is_uboot_update_needed(images, path, std::string(file).size() + 1, 0), 1);
    EXPECT_STREQ(path, file);
    EXPECT_EQ(is_uboot_update_needed(images, nullptr, 10, 0), 1);
}

} // namespace
} // namespace mox::firmwaretest
