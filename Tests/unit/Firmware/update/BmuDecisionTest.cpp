#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>

namespace mox::firmwaretest {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::Return;
using ::testing::StartsWith;

constexpr const char* function = "is_bmu_update_needed";

class BmuDecision : public UpdateDecision {
protected:
    int ask() { return is_bmu_update_needed(images, path, sizeof path); }
};

TEST_F(BmuDecision, IsYesForANewerImage) {
    place("KOR-BMU.bin", image("6"));
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version(1, _));
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(bytesOf(path), padded("/ffs/run/boot/KOR-BMU.bin", sizeof path));
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "info bmu file '/ffs/run/boot/KOR-BMU.bin' version 0x6 (6)",
                                                 "info active bmu version 0x5 (5)", "info yes"));
}

TEST_F(BmuDecision, IsNoForTheSameVersion) {
    place("KOR-BMU.bin", image("5"));
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(bytesOf(path), padded("/ffs/run/boot/KOR-BMU.bin", sizeof path));
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "info bmu file '/ffs/run/boot/KOR-BMU.bin' version 0x5 (5)",
                                                 "info active bmu version 0x5 (5)", "info no"));
}

TEST_F(BmuDecision, IsNoForAnOlderImage) {
    place("KOR-BMU.bin", image("4"));
    EXPECT_EQ(ask(), 0);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-BMU.bin");
}

TEST_F(BmuDecision, ComparesVersionsWithoutSign) {
    place("KOR-BMU.bin", image("0xFFFFFFFF"));
    setActive(0x7FFFFFFF);
    EXPECT_EQ(ask(), 1);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info bmu file '/ffs/run/boot/KOR-BMU.bin' version 0xFFFFFFFF (-1)",
                            "info active bmu version 0x7FFFFFFF (2147483647)", "info yes"));
}

TEST_F(BmuDecision, TakesNoDifferentMinorVersionOfTheBoard) {
    place("KOR-BMU.bin", minorOther("6"));
    EXPECT_EQ(ask(), -7);
}

TEST_F(BmuDecision, LooksForAnotherChipOnOneUnit) {
    place("ZUP-BMU.bin", image("6"));
    place("ZUP-TKVA.bin", image("7"));
    setUnit("ZUPY");
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/ZUP-TKVA.bin");
    setUnit("ZUPA");
    unit_init();
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/ZUP-BMU.bin");
}

TEST_F(BmuDecision, TellsThatThereIsNoImage) {
    EXPECT_EQ(ask(), -7);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "debug no bmu binary"));
    EXPECT_TRUE(isPathClear());
}

TEST_F(BmuDecision, TellsThatThereAreTwoImages) {
    place("KOR-BMU-1.bin");
    place("KOR-BMU-2.bin");
    EXPECT_EQ(ask(), -8);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?"));
    EXPECT_TRUE(isPathClear());
}

TEST_F(BmuDecision, HandsTheFailuresOfTheSearchOn) {
    EXPECT_EQ(is_bmu_update_needed(nullptr, path, sizeof path), -911);
    EXPECT_EQ(is_bmu_update_needed("/ffs/nothing", path, sizeof path), -4);
    place("KOR-BMU.bin");
    failHwSwId(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -6);
    for (int i = 0; i < 11; ++i)
        place("KOR-BMU-" + std::to_string(i) + ".bin");
    EXPECT_EQ(ask(), -5);
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -1);
    EXPECT_TRUE(isPathClear());
}

TEST_F(BmuDecision, TellsThatTheActiveVersionCannotBeRead) {
    place("KOR-BMU.bin", image("6"));
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version).WillOnce(Return(DDAL_NO_DEVICE));
    EXPECT_EQ(ask(), -9);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info bmu file '/ffs/run/boot/KOR-BMU.bin' version 0x6 (6)",
                            StartsWith("info ddal_fpga_get_active_version() failed with error -19 '")));
    EXPECT_TRUE(isPathClear());
}

TEST_F(BmuDecision, CutsThePathToTheRoomThatThereIs) {
    place("KOR-BMU.bin", image("6"));
    EXPECT_EQ(is_bmu_update_needed(images, path, 0), 1);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(is_bmu_update_needed(images, path, 1), 1);
    EXPECT_EQ(bytesOf(path), std::string(1, '\0') + std::string(sizeof path - 1, '#'));
    EXPECT_EQ(is_bmu_update_needed(images, nullptr, 10), 1);
}

class ExtensionBmuDecision : public UpdateDecision {
protected:
    static constexpr const char* extension = "is_bmu_update_needed_no_mcu";
    int ask(std::uint32_t board = 2, std::uint32_t own = hwSwId) {
        return is_bmu_update_needed_no_mcu(path, sizeof path, board, own);
    }
};

TEST_F(ExtensionBmuDecision, AsksTheDeviceOfTheBoardNumber) {
    place("ZUP-BMU.bin", image("6"));
    for (const std::uint32_t board : {2U, 3U, 4U}) {
        EXPECT_CALL(fpga(), ddal_fpga_get_active_version(board * 0x10000U + 1, _));
        EXPECT_EQ(ask(board), 1);
        EXPECT_EQ(bytesOf(path), padded("/ffs/run/boot/ZUP-BMU.bin", sizeof path));
        EXPECT_THAT(takeLines(extension),
                    ElementsAre("info ?", "info bmu file '/ffs/run/boot/ZUP-BMU.bin' version 0x6 (6)",
                                "info active bmu version 0x5 (5)", "info yes"));
    }
}

TEST_F(ExtensionBmuDecision, SupportsNoOtherBoard) {
    place("ZUP-BMU.bin", image("6"));
    for (const std::uint32_t board : {0U, 1U, 5U, 0xABCDU}) {
        EXPECT_EQ(ask(board), -10) << board;
        EXPECT_TRUE(isPathClear());
    }
    EXPECT_THAT(takeLines(extension),
                ElementsAre("info ?", "debug no support ddal board 0x0", "info ?", "debug no support ddal board 0x1",
                            "info ?", "debug no support ddal board 0x5", "info ?",
                            "debug no support ddal board 0xABCD"));
}

TEST_F(ExtensionBmuDecision, IsMadeByTheExtensionBoardsNameAndIdentifier) {
    setUnit("KORE"); // of the board that asks
    place("KOR-BMU.bin", image("8"));
    place("ZUP-BMU.bin", FirmwareImage().version("6").listing({0x777}));
    EXPECT_EQ(ask(2, 0x777), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/ZUP-BMU.bin");
    EXPECT_EQ(ask(2, 0x778), -7);
}

TEST_F(ExtensionBmuDecision, LooksForTheSameChipOnEveryUnit) {
    setUnit("ZUPY");
    place("ZUP-TKVA.bin", image("8"));
    place("ZUP-BMU.bin", image("6"));
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/ZUP-BMU.bin");
}

TEST_F(ExtensionBmuDecision, ReadsTheOwnIdentifierWhenNoneIsGiven) {
    place("ZUP-BMU.bin", image("6"));
    EXPECT_EQ(ask(2, 0), 1);
    failHwSwId(DDAL_IO_ERROR);
    EXPECT_EQ(ask(2, 0), -6);
    EXPECT_TRUE(isPathClear());
}

TEST_F(ExtensionBmuDecision, IsNoForTheSameVersionAndForAnOlderOne) {
    for (const char* version : {"5", "4"}) {
        place("ZUP-BMU.bin", image(version));
        EXPECT_EQ(ask(), 0) << version;
        EXPECT_STREQ(path, "/ffs/run/boot/ZUP-BMU.bin");
    }
}

TEST_F(ExtensionBmuDecision, TellsWhatIsWrong) {
    EXPECT_EQ(ask(), -7);
    EXPECT_THAT(takeLines(extension), ElementsAre("info ?", "debug no bmu binary"));
    place("ZUP-BMU-1.bin");
    place("ZUP-BMU-2.bin");
    EXPECT_EQ(ask(), -8);
    place("ZUP-BMU-2.bin", foreign());
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version).WillOnce(Return(DDAL_IO_ERROR));
    EXPECT_EQ(ask(), -9);
    EXPECT_TRUE(isPathClear());
}

} // namespace
} // namespace mox::firmwaretest
