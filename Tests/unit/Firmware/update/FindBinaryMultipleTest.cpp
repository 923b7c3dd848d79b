#include "mock/FunctionTable.hpp"
#include "unit/Firmware/update/LibraryFails.hpp"
#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>

#include <dirent.h>

#include <algorithm>

namespace mox::firmwaretest {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

constexpr const char* function = "find_binary_multiple";
constexpr int room = 4;

class ImageSearch : public UpdateFixture {
protected:
    char rows[room][FIND_BINARY_ROW_SIZE];

    ImageSearch() { std::fill(&rows[0][0], &rows[0][0] + sizeof rows, '#'); }

    int find(const char* boardType = "KOR", const char* chip = "BMU", int maxRows = room) {
        return find_binary_multiple(images, boardType, chip, rows, maxRows);
    }
    static void touch(const std::string& name) { writeFile(std::string(images) + "/" + name, ""); }
    static std::string path(const std::string& name) { return std::string(images) + "/" + name; }

    /// The directory's entries in the order in which it lists them.
    static std::vector<std::string> entries() {
        std::vector<std::string> names;
        DIR* const directory = opendir(images);
        while (const dirent* entry = readdir(directory))
            names.emplace_back(entry->d_name);
        closedir(directory);
        return names;
    }
};

TEST_F(ImageSearch, RefusesWhatIsMissing) {
    EXPECT_EQ(find_binary_multiple(nullptr, "KOR", "BMU", rows, room), -911);
    EXPECT_EQ(find_binary_multiple(images, "KOR", nullptr, rows, room), -911);
    EXPECT_EQ(find_binary_multiple(images, "KOR", "BMU", nullptr, room), -911);
    EXPECT_THAT(takeLines(function), IsEmpty());
}

TEST_F(ImageSearch, FindsTheImagesOfTheBoardType) {
    touch("KOR-BMU-v1.bin");
    touch("new_KOR-BMU.bin");
    touch("ZUP-BMU.bin");
    touch("BMU.bin");
    touch("KOR-BMU.bin.bak");
    touch("KOR-BMU.bin.bin");
    ASSERT_EQ(find(), 2);
    EXPECT_THAT((std::vector<std::string>{rows[0], rows[1]}),
                UnorderedElementsAre(path("KOR-BMU-v1.bin"), path("new_KOR-BMU.bin")));
    EXPECT_THAT(bytesOf(rows[2]), Each('#'));
}

TEST_F(ImageSearch, LogsEveryEntryInTheOrderOfTheDirectory) {
    for (const char* name : {"z.bin", "KOR-BMU-b.bin", "a", "KOR-BMU-a.bin"})
        touch(name);
    ASSERT_EQ(find(), 2);
    std::vector<std::string> expected{"debug Search for binary chip identifier 'BMU'", "info Search string 'KOR-BMU'",
                                      "info List files in '/ffs/run/boot'"};
    std::vector<std::string> found;
    for (const std::string& entry : entries()) {
        expected.push_back("info   " + entry);
        if (entry.find("KOR-BMU") == 0) {
            expected.push_back("info File '" + entry + "' matches to search criteria");
            found.push_back(path(entry));
        }
    }
    EXPECT_THAT(takeLines(function), ElementsAreArray(expected));
    EXPECT_THAT(found, ElementsAre(rows[0], rows[1]));
}

TEST_F(ImageSearch, UsesTheFirstThreeCharactersOfTheGivenBoardType) {
    touch("ZUP-BMU.bin");
    EXPECT_CALL(devicetree(), ddal_devicetree_get_unit_id).Times(0);
    EXPECT_EQ(find("ZUPYX"), 1);
    EXPECT_EQ(rows[0], path("ZUP-BMU.bin"));
}

TEST_F(ImageSearch, UsesTheUnitOfTheDeviceTreeAsItIsWrittenThere) {
    setUnit("kOrA");
    touch("kOr-BMU.bin");
    touch("KOR-BMU.bin");
    touch("kor-BMU.bin");
    EXPECT_EQ(find(nullptr), 1);
    EXPECT_EQ(rows[0], path("kOr-BMU.bin"));
}

TEST_F(ImageSearch, NeedsTheUnitOnlyWhenNoBoardTypeIsGiven) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(find(nullptr), -1);
    EXPECT_THAT(takeLines(function),
                ElementsAre("debug Search for binary chip identifier 'BMU'",
                            StartsWith("info ddal_devicetree_get_unit_id() failed with error -5 '")));
    EXPECT_EQ(find("KOR"), 0);
}

TEST_F(ImageSearch, RefusesATooLongSearchString) {
    EXPECT_EQ(find("KOR", std::string(123, 'c').c_str()), 0);
    takeLines(function);
    const std::string tooLong(124, 'c');
    EXPECT_EQ(find("KOR", tooLong.c_str()), -3);
    EXPECT_THAT(takeLines(function), ElementsAre("debug Search for binary chip identifier '" + tooLong + "'"));
}

TEST_F(ImageSearch, ReportsADirectoryThatIsNotThere) {
    EXPECT_EQ(find_binary_multiple("/ffs/nothing", "KOR", "BMU", rows, room), -4);
    EXPECT_THAT(takeLines(function), ElementsAre("debug Search for binary chip identifier 'BMU'",
                                                 "info Search string 'KOR-BMU'", "info opendir(/ffs/nothing) failed"));
    touch("KOR-BMU.bin");
    EXPECT_EQ(find_binary_multiple(path("KOR-BMU.bin").c_str(), "KOR", "BMU", rows, room), -4);
}

TEST_F(ImageSearch, FallsBackToNamesWithoutBoardType) {
    touch("BMU-v1.bin");
    touch("VEL-BMU.bin");
    touch("BMU.bin.bak");
    touch("other.bin");
    ASSERT_EQ(find(), 2);
    EXPECT_THAT((std::vector<std::string>{rows[0], rows[1]}),
                UnorderedElementsAre(path("BMU-v1.bin"), path("VEL-BMU.bin")));
    std::vector<std::string> expected{"debug Search for binary chip identifier 'BMU'", "info Search string 'KOR-BMU'",
                                      "info List files in '/ffs/run/boot'"};
    for (const std::string& entry : entries())
        expected.push_back("info   " + entry);
    expected.insert(expected.end(), {"info No board type files, search only chip identifier 'BMU'",
                                     "info List files in '/ffs/run/boot'"});
    for (const std::string& entry : entries())
        if (entry == "BMU-v1.bin" || entry == "VEL-BMU.bin")
            expected.push_back("info File '" + entry + "' matches");
    EXPECT_THAT(takeLines(function), ElementsAreArray(expected));
}

TEST_F(ImageSearch, ReportsADirectoryThatIsGoneBeforeTheFallback) {
    touch("BMU.bin");
    const OpeningDirectoriesFails fails(2);
    EXPECT_EQ(find(), -4);
    EXPECT_EQ(takeLines(function).back(), "info opendir(/ffs/run/boot) failed");
    EXPECT_THAT(bytesOf(rows[0]), Each('#'));
}

TEST_F(ImageSearch, LeavesOthersAloneOnceThereIsOneOfTheBoardType) {
    touch("BMU.bin");
    touch("KOR-BMU.bin");
    EXPECT_EQ(find(), 1);
    EXPECT_EQ(rows[0], path("KOR-BMU.bin"));
}

TEST_F(ImageSearch, FindsNothingInAnEmptyDirectory) {
    EXPECT_EQ(find(), 0);
    EXPECT_THAT(bytesOf(rows[0]), Each('#'));
}

TEST_F(ImageSearch, CountsWhatItHasNoRoomFor) {
    for (int i = 0; i < 6; ++i)
        touch("KOR-BMU-" + std::to_string(i) + ".bin");
    EXPECT_EQ(find("KOR", "BMU", 2), 6);
    EXPECT_THAT(rows[0], StartsWith(path("KOR-BMU-")));
    EXPECT_THAT(rows[1], StartsWith(path("KOR-BMU-")));
    EXPECT_THAT(bytesOf(rows[2]), Each('#'));
    EXPECT_EQ(find("KOR", "BMU", 0), 6);
    EXPECT_EQ(find("KOR", "BMU", -1), 6);
}

TEST_F(ImageSearch, CountsWhatItHasNoRoomForInTheFallbackToo) {
    for (int i = 0; i < 6; ++i)
        touch("BMU-" + std::to_string(i) + ".bin");
    EXPECT_EQ(find("KOR", "BMU", 2), 6);
    EXPECT_THAT(bytesOf(rows[2]), Each('#'));
}

TEST_F(ImageSearch, KeepsAPathOf127Characters) {
    const std::string name = "KOR-BMU" + std::string(127 - path("KOR-BMU.bin").size(), 'n') + ".bin";
    touch(name);
    EXPECT_EQ(find(), 1);
    EXPECT_EQ(rows[0], path(name));
    EXPECT_EQ(std::string(rows[0]).size(), 127U);
}

TEST_F(ImageSearch, CutsALongerPathAndSaysSo) {
    const std::string name = "KOR-BMU" + std::string(128 - path("KOR-BMU.bin").size(), 'n') + ".bin";
    touch(name);
    EXPECT_EQ(find(), 1);
    const std::string cut = path(name).substr(0, 127);
    EXPECT_EQ(rows[0], cut);
    EXPECT_TRUE(log.hasInOrder({
        testkit::info(0, "find_binary_multiple(): File '" + name + "' matches to search criteria"),
        testkit::error(0, "find_binary_multiple(): find_binary_multiple output truncated: " + cut),
        testkit::error(0, "find_binary_multiple(): find_binary_multiple filename: " + name),
    }));
}

TEST_F(ImageSearch, CutsALongerPathInTheFallbackToo) {
    const std::string name = "BMU" + std::string(200, 'n') + ".bin";
    touch(name);
    EXPECT_EQ(find(), 1);
    const std::string cut = path(name).substr(0, 127);
    EXPECT_EQ(rows[0], cut);
    EXPECT_TRUE(log.hasInOrder({
        testkit::info(0, "find_binary_multiple(): File '" + name + "' matches"),
        testkit::error(0, "find_binary_multiple(): find_binary_multiple output truncated: " + cut),
        testkit::error(0, "find_binary_multiple(): find_binary_multiple filename: " + name),
    }));
}

TEST_F(ImageSearch, CutsNothingThatItHasNoRoomFor) {
    touch("KOR-BMU" + std::string(200, 'n') + ".bin");
    EXPECT_EQ(find("KOR", "BMU", 0), 1); // an error in the log would fail the test
}

TEST_F(ImageSearch, ReportsThatTheSearchStringCannotBePrinted) {
    const PrintingFails fails("%.*s-%s", -7);
    EXPECT_EQ(find(), -2);
    EXPECT_THAT(takeLines(function), ElementsAre("debug Search for binary chip identifier 'BMU'"));
}

TEST_F(ImageSearch, CountsAnImageWhosePathCannotBePrinted) {
    touch("KOR-BMU.bin");
    const PrintingFails fails("%s/%s", -7);
    EXPECT_EQ(find(), 1);
    EXPECT_STREQ(rows[0], "");
    EXPECT_TRUE(log.hasInOrder({
        testkit::info(0, "find_binary_multiple(): File 'KOR-BMU.bin' matches to search criteria"),
        testkit::error(0, "find_binary_multiple(): find_binary_multiple snprintf failed: -7"),
    }));
}

TEST_F(ImageSearch, LeavesNoDirectoryOpen) {
    touch("BMU.bin");
    find();
    const auto before = openDescriptors();
    find();
    find_binary_multiple("/ffs/nothing", "KOR", "BMU", rows, room);
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace mox::firmwaretest
