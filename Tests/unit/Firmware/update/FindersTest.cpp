#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>

namespace mox::firmwaretest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct FinderRow {
    const char* name;
    int (*find)(const char* directory, char* outPath, size_t outPathSize);
    const char* file;
    bool allowsMinorDifference;
};

void PrintTo(const FinderRow& row, std::ostream* out) {
    *out << row.name;
}

class Finder : public UpdateDecision, public ::testing::WithParamInterface<FinderRow> {
protected:
    int find(std::size_t size = sizeof path) { return GetParam().find(images, path, size); }
    std::string wholePath() const { return std::string(images) + "/" + GetParam().file; }
    std::vector<std::string> takeLines() { return UpdateFixture::takeLines(GetParam().name); }
    static std::string outcome(int result, const std::string& path) {
        return std::string("info ") + GetParam().name + " ret: " + std::to_string(result) + ", fileName: " + path;
    }
};

TEST_P(Finder, FindsTheImageOfThisBoard) {
    place(GetParam().file);
    place(std::string("other-") + GetParam().file, foreign());
    EXPECT_EQ(find(), 1);
    EXPECT_EQ(bytesOf(path), padded(wholePath(), sizeof path));
    EXPECT_THAT(takeLines(), ElementsAre(outcome(1, wholePath())));
}

TEST_P(Finder, AllowsADifferentMinorVersionOfSomeComponents) {
    place(GetParam().file, minorOther("6"));
    EXPECT_EQ(find(), GetParam().allowsMinorDifference ? 1 : 0);
}

TEST_P(Finder, TellsThatThereIsNoImage) {
    EXPECT_EQ(find(), 0);
    EXPECT_TRUE(isPathClear());
    EXPECT_THAT(takeLines(), ElementsAre(outcome(0, "")));
}

TEST_P(Finder, TellsHowManyFit) {
    place(GetParam().file);
    place(std::string("other-") + GetParam().file);
    EXPECT_EQ(find(), 2);
    EXPECT_TRUE(isPathClear());
    EXPECT_THAT(takeLines(), ElementsAre(outcome(2, "")));
}

TEST_P(Finder, HandsTheFailuresOfTheSearchOn) {
    EXPECT_EQ(GetParam().find("/ffs/nothing", path, sizeof path), -4);
    EXPECT_TRUE(isPathClear());
    EXPECT_EQ(GetParam().find(nullptr, path, sizeof path), -911);
    EXPECT_THAT(takeLines(), ElementsAre(outcome(-4, ""), outcome(-911, "")));
    place(GetParam().file);
    failHwSwId(DDAL_IO_ERROR);
    EXPECT_EQ(find(), -6);
    for (int i = 0; i < 11; ++i)
        place(std::to_string(i) + GetParam().file);
    EXPECT_EQ(find(), -5);
}

TEST_P(Finder, CutsThePathToTheRoomThatThereIs) {
    place(GetParam().file);
    EXPECT_EQ(find(0), 1);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(find(1), 1);
    EXPECT_EQ(path[0], '\0');
    EXPECT_EQ(find(5), 1);
    EXPECT_EQ(bytesOf(path), padded("/ffs", 5) + std::string(sizeof path - 5, '#'));
    EXPECT_EQ(GetParam().find(images, nullptr, 10), 1);
    EXPECT_THAT(takeLines(), ElementsAre(outcome(1, ""), outcome(1, ""), outcome(1, "/ffs"), outcome(1, "")));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Finder,
    ::testing::Values(FinderRow{"FindKorFpgaBinaryFile", &FindKorFpgaBinaryFile, "KOR-TIRVO2-QE.bin", true},
                      FinderRow{"FindZupFpgaBinaryFile", &FindZupFpgaBinaryFile, "KOR-BMU.bin", false},
                      FinderRow{"FindUBootBinaryFile", &FindUBootBinaryFile, "KOR-RN-QE.bin", true}));

class FpgaFinder : public UpdateDecision {};

TEST_F(FpgaFinder, TellsThatTheUnitHasNoFpga) {
    setUnit("ZUPA");
    EXPECT_EQ(FindKorFpgaBinaryFile(images, path, sizeof path), -10);
    EXPECT_TRUE(isPathClear());
    EXPECT_THAT(takeLines("FindKorFpgaBinaryFile"), ElementsAre("debug no fpga specified for unit 'ZUPA'",
                                                                "info FindKorFpgaBinaryFile ret: -10, fileName: "));
    EXPECT_THAT(takeLines("find_binary_multiple"), IsEmpty());
}

TEST_F(FpgaFinder, FindsTheImageOfTheUnitsOwnFpga) {
    setUnit("KORE");
    place("KOR-TIRVO2-QE.bin");
    place("KOR-TIRVAK-QE.bin");
    EXPECT_EQ(FindKorFpgaBinaryFile(images, path, sizeof path), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-TIRVAK-QE.bin");
}

class BmuFinder : public UpdateDecision {};

TEST_F(BmuFinder, LooksForTheSameChipOnEveryUnit) {
    setUnit("ZUPY");
    place("ZUP-TKVA.bin");
    place("ZUP-BMU.bin");
    EXPECT_EQ(FindZupFpgaBinaryFile(images, path, sizeof path), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/ZUP-BMU.bin");
}

} // namespace
} // namespace mox::firmwaretest
