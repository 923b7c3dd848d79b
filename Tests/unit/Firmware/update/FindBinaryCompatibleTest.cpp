#include "unit/Firmware/update/LibraryFails.hpp"
#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>

#include <sys/stat.h>

#include <filesystem>

namespace mox::firmwaretest {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* function = "find_binary_compatible";

class CompatibleSearch : public UpdateFixture {
protected:
    char path[64];
    std::uint32_t version = 99;

    CompatibleSearch() { std::fill(std::begin(path), std::end(path), '#'); }

    int find(std::uint32_t own = hwSwId, int allowMinor = 0, std::size_t size = sizeof path) {
        return find_binary_compatible(images, "KOR", "BMU", own, allowMinor, path, size, &version);
    }
    static FirmwareImage foreign() { return FirmwareImage().version("7").listing({0xFFFF0000}); }
    bool isPathUntouched() { return bytesOf(path) == std::string(sizeof path, '#'); }
    static std::vector<std::string> notOpened(const std::vector<std::string>& names) {
        std::vector<std::string> lines;
        for (const std::string& name : names)
            lines.push_back("info Could not open file: /ffs/run/boot/KOR-BMU-" + name + ".bin");
        return lines;
    }
    bool wasAnyOpened() { return !takeLines("binary_version").empty() || !takeLines("get_trailer").empty(); }
};

TEST_F(CompatibleSearch, FindsTheOnlyImageForThisBoard) {
    place("KOR-BMU-1.bin", foreign());
    place("KOR-BMU-2.bin", image("0x0102"));
    place("KOR-BMU-3.bin", foreign());
    EXPECT_EQ(find(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-BMU-2.bin");
    EXPECT_EQ(version, 0x102U);
    EXPECT_THAT(takeLines(function), IsEmpty());
}

// The directory lists names in an order of its own, so each of two comes last in one of the two cases.
TEST_F(CompatibleSearch, KeepsTheVersionWhateverForeignImageFollows) {
    place("KOR-BMU-a.bin", image("5"));
    place("KOR-BMU-b.bin", foreign());
    EXPECT_EQ(find(), 1);
    EXPECT_EQ(version, 5U);
    place("KOR-BMU-a.bin", foreign());
    place("KOR-BMU-b.bin", image("5"));
    EXPECT_EQ(find(), 1);
    EXPECT_EQ(version, 5U);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-BMU-b.bin");
}

TEST_F(CompatibleSearch, FindsTheImageInTheFallback) {
    place("BMU.bin", image("3"));
    EXPECT_EQ(find(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/BMU.bin");
    EXPECT_EQ(version, 3U);
}

TEST_F(CompatibleSearch, AllowsADifferentMinorVersionOnlyWhenToldTo) {
    place("KOR-BMU.bin", FirmwareImage().version("3").listing({hwSwId ^ 0xFFU}));
    EXPECT_EQ(find(hwSwId, 0), 0);
    EXPECT_EQ(find(hwSwId, 1), 1);
    EXPECT_EQ(version, 3U);
    EXPECT_EQ(find(hwSwId ^ 0x100U, 1), 0);
}

TEST_F(CompatibleSearch, ReadsTheBoardsIdentifierWhenNoneIsGiven) {
    place("KOR-BMU.bin");
    EXPECT_CALL(devicetree(), ddal_devicetree_get_hw_sw_id).Times(0);
    EXPECT_EQ(find(hwSwId), 1);
    ::testing::Mock::VerifyAndClearExpectations(&devicetree());
    ON_CALL(devicetree(), ddal_devicetree_get_hw_sw_id(0, ::testing::_)).WillByDefault([](uint32_t, uint32_t* id) {
        *id = hwSwId;
        return DDAL_OK;
    });
    EXPECT_EQ(find(0), 1);
}

TEST_F(CompatibleSearch, ReportsThatTheIdentifierCannotBeRead) {
    place("KOR-BMU.bin");
    failHwSwId(DDAL_NOT_FOUND);
    EXPECT_EQ(find(0), -6);
    EXPECT_THAT(takeLines(function),
                ElementsAre(StartsWith("info ddal_devicetree_get_hw_sw_id() failed with error -2 '")));
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(version, 99U);
    EXPECT_FALSE(wasAnyOpened());
}

TEST_F(CompatibleSearch, DoesNotAskForTheIdentifierWhenThereIsNoImage) {
    EXPECT_CALL(devicetree(), ddal_devicetree_get_hw_sw_id).Times(0);
    EXPECT_EQ(find(0), 0);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(version, 99U);
    EXPECT_THAT(takeLines(function), IsEmpty());
}

TEST_F(CompatibleSearch, HandsTheFailuresOfTheSearchOn) {
    EXPECT_EQ(find_binary_compatible(nullptr, "KOR", "BMU", hwSwId, 0, path, sizeof path, &version), -911);
    EXPECT_EQ(find_binary_compatible(images, "KOR", nullptr, hwSwId, 0, path, sizeof path, &version), -911);
    const std::string tooLong(124, 'c');
    EXPECT_EQ(find_binary_compatible(images, "KOR", tooLong.c_str(), hwSwId, 0, path, sizeof path, &version), -3);
    EXPECT_EQ(find_binary_compatible("/ffs/nothing", "KOR", "BMU", hwSwId, 0, path, sizeof path, &version), -4);
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(find_binary_compatible(images, nullptr, "BMU", hwSwId, 0, path, sizeof path, &version), -1);
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(version, 99U);
}

TEST_F(CompatibleSearch, LooksIntoTenImages) {
    for (int i = 0; i < 9; ++i)
        place("KOR-BMU-" + std::to_string(i) + ".bin", foreign());
    place("KOR-BMU-9.bin", image("4"));
    EXPECT_EQ(find(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-BMU-9.bin");
    EXPECT_EQ(version, 4U);
}

TEST_F(CompatibleSearch, LooksIntoNoneOfElevenImages) {
    for (int i = 0; i < 11; ++i)
        place("KOR-BMU-" + std::to_string(i) + ".bin", i == 0 ? image() : foreign());
    EXPECT_CALL(devicetree(), ddal_devicetree_get_hw_sw_id).Times(0);
    EXPECT_EQ(find(0), -5);
    EXPECT_THAT(takeLines(function),
                ElementsAre("debug There are too many files (11) with same chip 'BMU' identifier, better naming "
                            "convention for firmware update filenames are needed!"));
    EXPECT_FALSE(wasAnyOpened());
    EXPECT_TRUE(isPathUntouched());
    EXPECT_EQ(version, 99U);
}

TEST_F(CompatibleSearch, ClearsTheOutputsWhenNoImageFits) {
    place("KOR-BMU-1.bin", foreign());
    place("KOR-BMU-2.bin", foreign());
    writeFile("/ffs/run/boot/KOR-BMU-3.bin", "no image");
    EXPECT_EQ(find(), 0);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info There are 3 files with chip 'BMU' identifier, but not compatible with this board"));
    EXPECT_THAT(bytesOf(path), Each('\0'));
    EXPECT_EQ(version, 0U);
}

TEST_F(CompatibleSearch, ClearsTheOutputsWhenSeveralFit) {
    place("KOR-BMU-1.bin", image("1"));
    place("KOR-BMU-2.bin", image("2"));
    place("KOR-BMU-3.bin", foreign());
    EXPECT_EQ(find(), 2);
    EXPECT_THAT(takeLines(function),
                ElementsAre("info 2 compatible files are found, do not know which one to choose!"));
    EXPECT_THAT(bytesOf(path), Each('\0'));
    EXPECT_EQ(version, 0U);
    place("KOR-BMU-3.bin", image("3"));
    EXPECT_EQ(find(), 3);
}

TEST_F(CompatibleSearch, CutsThePathToTheRoomThatThereIs) {
    place("KOR-BMU.bin");
    const std::string whole = "/ffs/run/boot/KOR-BMU.bin";
    const std::string beyond(sizeof path, '#');
    EXPECT_EQ(find(hwSwId, 0, 0), 1);
    EXPECT_TRUE(isPathUntouched());
    for (const std::size_t size : {std::size_t{1}, std::size_t{10}, whole.size(), whole.size() + 1, sizeof path}) {
        std::fill(std::begin(path), std::end(path), '#');
        EXPECT_EQ(find(hwSwId, 0, size), 1);
        EXPECT_EQ(path, whole.substr(0, size - 1)) << size;
        EXPECT_EQ(bytesOf(path).substr(size), beyond.substr(size)) << size;
    }
}

TEST_F(CompatibleSearch, ClearsNoMoreThanTheRoomThatThereIs) {
    place("KOR-BMU.bin", foreign());
    EXPECT_EQ(find(hwSwId, 0, 5), 0);
    EXPECT_EQ(bytesOf(path), std::string(5, '\0') + std::string(sizeof path - 5, '#'));
}

TEST_F(CompatibleSearch, DoesWithoutOutputs) {
    place("KOR-BMU.bin");
    EXPECT_EQ(find_binary_compatible(images, "KOR", "BMU", hwSwId, 0, nullptr, 10, nullptr), 1);
    place("KOR-BMU.bin", foreign());
    EXPECT_EQ(find_binary_compatible(images, "KOR", "BMU", hwSwId, 0, nullptr, 10, nullptr), 0);
}

TEST_F(CompatibleSearch, TakesNoImageWhosePathIsCut) {
    log.expect(testkit::error(0, StartsWith("find_binary_multiple(): ")));
    place("KOR-BMU" + std::string(150, 'n') + ".bin");
    EXPECT_EQ(find(), 0);
}

TEST_F(CompatibleSearch, TakesNoImageWhosePathCannotBeFormed) {
    log.expect(testkit::error(0, StartsWith("find_binary_multiple(): ")));
    place("KOR-BMU.bin");
    const PrintingFails fails("%s/%s", -7);
    EXPECT_EQ(find(), 0);
    EXPECT_EQ(takeLines("binary_version").front(), "info Reading file '' trailer");
}

TEST_F(CompatibleSearch, TakesNoImageThatIsNoFile) {
    std::filesystem::create_directory("/ffs/run/boot/KOR-BMU-directory.bin");
    ASSERT_EQ(mkfifo("/ffs/run/boot/KOR-BMU-fifo.bin", 0600), 0);
    std::filesystem::create_symlink("/dev/zero", "/ffs/run/boot/KOR-BMU-device.bin");
    std::filesystem::create_symlink("nothing", "/ffs/run/boot/KOR-BMU-to-nothing.bin");
    std::filesystem::create_symlink("KOR-BMU-to-itself.bin", "/ffs/run/boot/KOR-BMU-to-itself.bin");
    EXPECT_EQ(find(), 0);
    EXPECT_THAT(takeLines("get_trailer"), testing::UnorderedElementsAreArray(
                                              notOpened({"directory", "fifo", "device", "to-nothing", "to-itself"})));
    place("KOR-BMU.bin");
    EXPECT_EQ(find(), 1);
    EXPECT_STREQ(path, "/ffs/run/boot/KOR-BMU.bin");
}

} // namespace
} // namespace mox::firmwaretest
