#include <mox/UpdateRules.hpp>

#include <gmock/gmock.h>

#include <climits>
#include <string>

namespace {

using namespace ps::hwapi::common::update;

struct NameRow {
    const char* name;
    bool isImage;
};

void PrintTo(const NameRow& row, std::ostream* out) {
    *out << row.name;
}

class ImageName : public testing::TestWithParam<NameRow> {};

TEST_P(ImageName, HoldsTheSearchStringAndEndsWithItsFirstSuffix) {
    EXPECT_EQ(isImageName(GetParam().name, "KOR-BMU"), GetParam().isImage);
}

INSTANTIATE_TEST_SUITE_P(Rows, ImageName,
                         testing::Values(NameRow{"KOR-BMU.bin", true}, NameRow{"x-KOR-BMU-v2.bin", true},
                                         NameRow{"KOR-BMUKOR-BMU.bin", true}, NameRow{"KOR-BMU-v2.bin.bak", false},
                                         NameRow{"KOR-BMU.bin.bin", false}, NameRow{"KOR-BMU.binx.bin", false},
                                         NameRow{"KOR-BMU", false}, NameRow{"KOR-BMU.BIN", false},
                                         NameRow{"KOR_BMU.bin", false}, NameRow{"kor-bmu.bin", false},
                                         NameRow{"KOR-BM.bin", false}, NameRow{"bin", false}, NameRow{".bin", false},
                                         NameRow{"", false}));

TEST(ImageName, MayBeTheSuffixAloneWhenTheSearchStringIsPartOfIt) {
    EXPECT_TRUE(isImageName(".bin", "bin"));
    EXPECT_TRUE(isImageName(".bin", ""));
}

std::string formed(const char* boardType, const char* chip, int expectedResult = 0) {
    SearchString search{};
    EXPECT_EQ(formSearchString(boardType, chip, search), expectedResult);
    return search.data();
}

TEST(SearchString, HoldsTheFirstThreeCharactersOfTheBoardTypeAndTheChip) {
    EXPECT_EQ(formed("KORA", "RN-QE"), "KOR-RN-QE");
    EXPECT_EQ(formed("KOR", "RN-QE"), "KOR-RN-QE");
    EXPECT_EQ(formed("ko", "RN-QE"), "ko-RN-QE");
    EXPECT_EQ(formed("", "RN-QE"), "-RN-QE");
    EXPECT_EQ(formed("KORA", ""), "KOR-");
}

TEST(SearchString, MayHave127Characters) {
    const std::string chip(123, 'c');
    EXPECT_EQ(formed("KOR", chip.c_str()), "KOR-" + chip);
    const std::string tooLong(124, 'c');
    EXPECT_EQ(formed("KOR", tooLong.c_str(), -3), "KOR-" + std::string(123, 'c'));
}

TEST(MarkerPath, HasTheUnitTypeInLowerCase) {
    EXPECT_STREQ(disableMarkerOf("KOR").data(), "/ffs/run/logs/disable-firmware-update-kor");
    EXPECT_STREQ(disableMarkerOf("k0R").data(), "/ffs/run/logs/disable-firmware-update-k0r");
    EXPECT_STREQ(disableMarkerOf("").data(), "/ffs/run/logs/disable-firmware-update-");
    EXPECT_STREQ(forceMarkerOf("ZUP", "BMU").data(), "/ffs/run/logs/force-firmware-update-zup-BMU");
}

TEST(MarkerPath, IsCutTo126Characters) {
    const std::string component(200, 'c');
    const std::string path = forceMarkerOf("KOR", component.c_str()).data();
    EXPECT_EQ(path, ("/ffs/run/logs/force-firmware-update-kor-" + component).substr(0, 126));
}

TEST(MarkerPath, TakesAtMost31CharactersOfAUnitType) {
    EXPECT_EQ(std::string(disableMarkerOf(std::string(40, 'U').c_str()).data()),
              "/ffs/run/logs/disable-firmware-update-" + std::string(31, 'u'));
}

TEST(VersionRules, DifferByComponent) {
    constexpr std::uint32_t high = 0xFFFFFFFF; // versions have no sign
    EXPECT_TRUE(isUbootUpdated(2, 1));
    EXPECT_TRUE(isUbootUpdated(1, 1));
    EXPECT_FALSE(isUbootUpdated(1, 2));
    EXPECT_TRUE(isUbootUpdated(high, 1));
    EXPECT_TRUE(isBmuUpdated(2, 1));
    EXPECT_FALSE(isBmuUpdated(1, 1));
    EXPECT_FALSE(isBmuUpdated(1, 2));
    EXPECT_TRUE(isBmuUpdated(high, 1));
    EXPECT_TRUE(isFpgaUpdated(2, 1));
    EXPECT_FALSE(isFpgaUpdated(1, 1));
    EXPECT_TRUE(isFpgaUpdated(1, 2));
}

struct FpgaRow {
    const char* version;
    const char* type;
    const char* shortName;
    const char* chip;
    std::uint32_t id;
    std::uint32_t localId;
};

void PrintTo(const FpgaRow& row, std::ostream* out) {
    *out << row.version << " of type " << row.type;
}

class UnitsFpga : public testing::TestWithParam<FpgaRow> {};

TEST_P(UnitsFpga, IsThatOfTheTables) {
    const FpgaRow& row = GetParam();
    const FpgaOfUnit fpga = fpgaOf(row.version, row.type);
    EXPECT_STREQ(fpga.shortName, row.shortName);
    EXPECT_STREQ(fpga.chipIdentifier, row.chip);
    EXPECT_EQ(fpga.id, row.id);
    EXPECT_EQ(localFpgaIdOf(row.version, row.type), row.localId);
}

INSTANTIATE_TEST_SUITE_P(Rows, UnitsFpga,
                         testing::Values(FpgaRow{"KORE", "KOR", "tirvak", "TIRVAK-QE", 0x10001, 0x10002},
                                         FpgaRow{"KORA", "KOR", "tirvo2", "TIRVO2-QE", 0x10001, 0x10001},
                                         FpgaRow{"KOREX", "KOR", "tirvo2", "TIRVO2-QE", 0x10001, 0x10001},
                                         FpgaRow{"VELA", "VEL", "ym4", "YM4-QE", 0x70001, 0x70001},
                                         FpgaRow{"VEMA", "VEM", "ym4", "YM4-QE", 0x70001, 0},
                                         FpgaRow{"ZUPA", "ZUP", "unknown", "unknown", 0, 0},
                                         FpgaRow{"kora", "kor", "unknown", "unknown", 0, 0},
                                         FpgaRow{"", "", "unknown", "unknown", 0, 0}));

TEST(UnitsBmu, HasOneNameMoreThanOneUnit) {
    EXPECT_STREQ(bmuChipOf("ZUPY"), "TKVA");
    for (const char* other : {"ZUPA", "ZUPYA", "ZUP", "KORA", ""})
        EXPECT_STREQ(bmuChipOf(other), "BMU") << other;
}

TEST(ExtensionBoardsBmu, IsKnownForThreeBoards) {
    EXPECT_EQ(extensionBmuIdOf(2), 0x20001U);
    EXPECT_EQ(extensionBmuIdOf(3), 0x30001U);
    EXPECT_EQ(extensionBmuIdOf(4), 0x40001U);
    for (const std::uint32_t other : {0U, 1U, 5U, 0x20001U, UINT_MAX})
        EXPECT_EQ(extensionBmuIdOf(other), 0U) << other;
}

TEST(BmuReset, IsForFourUnits) {
    for (const char* unit : {"ZUPA", "ZUPB", "ZUPM", "ZUPN"})
        EXPECT_TRUE(isBmuResettable(unit)) << unit;
    for (const char* unit : {"ZUPC", "ZUPY", "ZUPAA", "ZUP", "zupa", "KORA", ""})
        EXPECT_FALSE(isBmuResettable(unit)) << unit;
}

TEST(UbootLocation, HasAName) {
    EXPECT_STREQ(ubootLocationName(0), "primary");
    EXPECT_STREQ(ubootLocationName(1), "backup");
    EXPECT_STREQ(ubootLocationName(2), "uImage");
    EXPECT_STREQ(ubootLocationName(3), "unknown");
    EXPECT_STREQ(ubootLocationName(UINT_MAX), "unknown");
}

TEST(RamPath, IsAskedForByEitherOfTwoUnlessTheThirdForbidsIt) {
    for (const std::uint32_t on : {1U, 7U, UINT_MAX}) {
        EXPECT_FALSE(isRamPathChosen(0, 0, 0));
        EXPECT_TRUE(isRamPathChosen(on, 0, 0));
        EXPECT_TRUE(isRamPathChosen(0, on, 0));
        EXPECT_TRUE(isRamPathChosen(on, on, 0));
        EXPECT_FALSE(isRamPathChosen(0, 0, on));
        EXPECT_FALSE(isRamPathChosen(on, 0, on));
        EXPECT_FALSE(isRamPathChosen(0, on, on));
        EXPECT_FALSE(isRamPathChosen(on, on, on));
    }
}

TEST(TemporaryFiles, AreOneForEachComponentAndPlace) {
    EXPECT_STREQ(ubootTemporary.inRam, "/ram/u-boot.uim");
    EXPECT_STREQ(ubootTemporary.byDefault, "/tmp/u-boot.uim");
    EXPECT_STREQ(bmuTemporary.inRam, "/ram/bmufile");
    EXPECT_STREQ(bmuTemporary.byDefault, "/tmp/bmufile");
    EXPECT_STREQ(fpgaTemporary.inRam, "/ram/fpgafile");
    EXPECT_STREQ(fpgaTemporary.byDefault, "/tmp/fpgafile");
}

} // namespace
