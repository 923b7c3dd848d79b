#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>

namespace mox::firmwaretest {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::Return;
using ::testing::StartsWith;

constexpr const char* function = "is_fpga_update_needed";
constexpr const char* file = "/ffs/run/boot/KOR-TIRVO2-QE.bin";

class FpgaDecision : public UpdateDecision {
protected:
    int ask() { return is_fpga_update_needed(images, path, sizeof path); }
};

TEST_F(FpgaDecision, IsYesForANewerImage) {
    place("KOR-TIRVO2-QE.bin", image("6"));
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version(0x10001, _));
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(bytesOf(path), padded(file, sizeof path));
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info tirvo2 file '/ffs/run/boot/KOR-TIRVO2-QE.bin' version 0x6 (6)",
                            "info active tirvo2 version 0x5 (5)", "info yes"));
}

TEST_F(FpgaDecision, IsYesForAnOlderImage) {
    place("KOR-TIRVO2-QE.bin", image("4"));
    EXPECT_EQ(ask(), 1);
    EXPECT_STREQ(path, file);
}

TEST_F(FpgaDecision, IsNoForTheSameVersion) {
    place("KOR-TIRVO2-QE.bin", image("5"));
    EXPECT_EQ(ask(), 0);
    EXPECT_STREQ(path, file);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info tirvo2 file '/ffs/run/boot/KOR-TIRVO2-QE.bin' version 0x5 (5)",
                            "info active tirvo2 version 0x5 (5)", "info no"));
}

TEST_F(FpgaDecision, AllowsADifferentMinorVersionOfTheBoard) {
    place("KOR-TIRVO2-QE.bin", minorOther("6"));
    EXPECT_EQ(ask(), 1);
}

struct UnitRow {
    const char* unit;
    const char* file;
    std::uint32_t fpgaId;
    const char* shortName;
};

void PrintTo(const UnitRow& row, std::ostream* out) {
    *out << row.unit;
}

class FpgaDecisionOf : public UpdateDecision, public ::testing::WithParamInterface<UnitRow> {};

TEST_P(FpgaDecisionOf, IsAboutTheUnitsOwnFpga) {
    const UnitRow& row = GetParam();
    setUnit(row.unit);
    place(row.file, image("6"));
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version(row.fpgaId, _));
    EXPECT_EQ(is_fpga_update_needed(images, path, sizeof path), 1);
    EXPECT_EQ(path, std::string(images) + "/" + row.file);
    EXPECT_TRUE(log.has(
        testkit::info(0, std::string("is_fpga_update_needed(): active ") + row.shortName + " version 0x5 (5)")));
}

INSTANTIATE_TEST_SUITE_P(Units, FpgaDecisionOf,
                         ::testing::Values(UnitRow{"KORA", "KOR-TIRVO2-QE.bin", 0x10001, "tirvo2"},
                                           UnitRow{"KORE", "KOR-TIRVAK-QE.bin", 0x10001, "tirvak"},
                                           UnitRow{"VELA", "VEL-YM4-QE.bin", 0x70001, "ym4"},
                                           UnitRow{"VEMA", "VEM-YM4-QE.bin", 0x70001, "ym4"}));

TEST_F(FpgaDecision, TellsThatTheUnitHasNoFpga) {
    setUnit("ZUPA");
    EXPECT_EQ(ask(), -10);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "debug no fpga specified for unit 'ZUPA'"));
    EXPECT_TRUE(isPathClear());
}

TEST_F(FpgaDecision, TellsThatAnUnknownUnitHasNoFpga) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -10);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "debug no fpga specified for unit ''"));
}

TEST_F(FpgaDecision, TellsThatThereIsNoImage) {
    EXPECT_EQ(ask(), -7);
    EXPECT_THAT(takeLines(function), ElementsAre("info ?", "debug no tirvo2 binary"));
    EXPECT_TRUE(isPathClear());
}

TEST_F(FpgaDecision, TellsThatThereAreTwoImages) {
    place("KOR-TIRVO2-QE-1.bin");
    place("KOR-TIRVO2-QE-2.bin");
    EXPECT_EQ(ask(), -8);
    EXPECT_TRUE(isPathClear());
}

TEST_F(FpgaDecision, HandsTheFailuresOfTheSearchOn) {
    EXPECT_EQ(is_fpga_update_needed(nullptr, path, sizeof path), -911);
    EXPECT_EQ(is_fpga_update_needed("/ffs/nothing", path, sizeof path), -4);
    place("KOR-TIRVO2-QE.bin");
    failHwSwId(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -6);
    for (int i = 0; i < 11; ++i)
        place("KOR-TIRVO2-QE-" + std::to_string(i) + ".bin");
    EXPECT_EQ(ask(), -5);
    EXPECT_TRUE(isPathClear());
}

TEST_F(FpgaDecision, HandsOnThatTheUnitCannotBeReadAnyMore) {
    EXPECT_STREQ(unit_type(), "KOR");
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(ask(), -1);
}

TEST_F(FpgaDecision, TellsThatTheActiveVersionCannotBeRead) {
    place("KOR-TIRVO2-QE.bin", image("6"));
    EXPECT_CALL(fpga(), ddal_fpga_get_active_version).WillOnce(Return(DDAL_TIMEOUT));
    EXPECT_EQ(ask(), -9);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info ?", "info tirvo2 file '/ffs/run/boot/KOR-TIRVO2-QE.bin' version 0x6 (6)",
                            StartsWith("info ddal_fpga_get_active_version() failed with error -110 '")));
    EXPECT_TRUE(isPathClear());
}

TEST_F(FpgaDecision, CutsThePathToTheRoomThatThereIs) {
    place("KOR-TIRVO2-QE.bin", image("6"));
    EXPECT_EQ(is_fpga_update_needed(images, path, 0), 1);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(is_fpga_update_needed(images, path, 5), 1);
    EXPECT_EQ(bytesOf(path), padded("/ffs", 5) + std::string(sizeof path - 5, '#'));
    EXPECT_EQ(is_fpga_update_needed(images, nullptr, 10), 1);
}

} // namespace
} // namespace mox::firmwaretest
