#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

namespace mox::firmwaretest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* disabled = "/ffs/run/logs/disable-firmware-update";
constexpr const char* disabledForKor = "/ffs/run/logs/disable-firmware-update-kor";
constexpr const char* forced = "/ffs/run/logs/force-firmware-update-kor-bmu";
constexpr const char* forcedFunction = "is_firmware_update_forced";

class DisableMarker : public UpdateFixture {};

TEST_F(DisableMarker, LeavesUpdatesOnWhileThereIsNone) {
    EXPECT_EQ(is_firmware_update_disabled(), 0);
}

TEST_F(DisableMarker, SwitchesThemOffForEveryBoard) {
    writeFile(disabled, "");
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    EXPECT_CALL(devicetree(), ddal_devicetree_get_unit_id).Times(0); // nobody has to know which board it is
    EXPECT_EQ(is_firmware_update_disabled(), 1);
}

TEST_F(DisableMarker, SwitchesThemOffForOneUnitTypeInLowerCase) {
    writeFile(disabledForKor, "whatever");
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    std::filesystem::remove(disabledForKor);
    writeFile("/ffs/run/logs/disable-firmware-update-KOR", "");
    writeFile("/ffs/run/logs/disable-firmware-update-zup", "");
    writeFile("/ffs/run/logs/disable-firmware-update-kora", "");
    EXPECT_EQ(is_firmware_update_disabled(), 0);
}

TEST_F(DisableMarker, IsNotFoundForAnUnknownUnit) {
    failUnit(DDAL_IO_ERROR);
    writeFile(disabledForKor, "");
    EXPECT_EQ(is_firmware_update_disabled(), 0);
    EXPECT_THAT(takeLines("unit_init"), SizeIs(1));
}

TEST_F(DisableMarker, MayBeAnythingThatCanBeOpened) {
    ASSERT_EQ(mkfifo(disabled, 0600), 0); // with nobody at its other end
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    std::filesystem::remove(disabled);
    std::filesystem::create_directory(disabled);
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    std::filesystem::remove(disabled);
    std::filesystem::create_symlink("/ffs/nothing", disabled);
    EXPECT_EQ(is_firmware_update_disabled(), 0);
}

class ForceMarker : public UpdateFixture {
protected:
    static std::string left() { return readFile(forced); }
};

TEST_F(ForceMarker, ForcesNothingWhileThereIsNone) {
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_THAT(takeLines(forcedFunction), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(forced));
}

TEST_F(ForceMarker, ForcesAsManyUpdatesAsItSays) {
    writeFile(forced, "3");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1);
    EXPECT_EQ(left(), "2");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1);
    EXPECT_EQ(left(), "1");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1);
    EXPECT_EQ(left(), "0");
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info yes bmu 3", "info yes bmu 2", "info yes bmu 1"));
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_EQ(left(), "0");
    EXPECT_THAT(takeLines(forcedFunction), IsEmpty());
}

TEST_F(ForceMarker, IsForOneComponentOfOneUnitType) {
    writeFile(forced, "3");
    EXPECT_EQ(is_firmware_update_forced("fpga"), 0);
    EXPECT_EQ(is_firmware_update_forced("BMU"), 0);
    EXPECT_EQ(left(), "3");
}

TEST_F(ForceMarker, IsLeftAsItIsWhenItHoldsNoPositiveNumber) {
    for (const char* text : {"0", "-1", "0 \n", "-2147483648", "-99999999999999999999"}) {
        writeFile(forced, text);
        EXPECT_EQ(is_firmware_update_forced("bmu"), 0) << text;
        EXPECT_EQ(left(), text);
    }
    EXPECT_THAT(takeLines(forcedFunction), IsEmpty());
}

TEST_F(ForceMarker, IsLeftAsItIsWhenItHoldsNoNumber) {
    for (const char* text : {"three", "x3", "-"}) {
        writeFile(forced, text);
        EXPECT_EQ(is_firmware_update_forced("bmu"), 0) << text;
        EXPECT_EQ(left(), text);
        EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fscanf() failed 0 0")) << text;
    }
    writeFile(forced, "");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fscanf() failed -1 0"));
}

TEST_F(ForceMarker, MayHoldMoreThanTheNumber) {
    writeFile(forced, " \n12 times\n");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1);
    EXPECT_EQ(left(), "11");
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info yes bmu 12"));
}

TEST_F(ForceMarker, HoldsAtMostTheLargestNumberOf32Bits) {
    for (const char* text : {"2147483647", "2147483648", "99999999999", "99999999999999999999"}) {
        writeFile(forced, text);
        EXPECT_EQ(is_firmware_update_forced("bmu"), 1) << text;
        EXPECT_EQ(left(), "2147483646");
        EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info yes bmu 2147483647")) << text;
    }
}

// A FIFO that somebody writes to and nobody else reads can be opened for reading only, whoever the user is.
TEST_F(ForceMarker, ThatCannotBeWrittenForcesNothing) {
    ASSERT_EQ(mkfifo(forced, 0600), 0);
    const int both = open(forced, O_RDWR | O_NONBLOCK);
    const int writer = open(forced, O_WRONLY | O_NONBLOCK);
    ASSERT_EQ(write(writer, "3\n", 2), 2);
    close(both);
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fopen() failed " + std::to_string(ENXIO)));
    close(writer);
}

TEST_F(ForceMarker, OnAFullFileSystemForcesNothing) {
    writeFile(forced, "3");
    ASSERT_NE(signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    const int result = is_firmware_update_forced("bmu");
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(result, 0);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fprintf() failed -1"));
    EXPECT_EQ(left(), "");
}

TEST_F(ForceMarker, ThatIsNoFileNeverMakesTheCallerWait) {
    ASSERT_EQ(mkfifo(forced, 0600), 0); // with nobody at its other end
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fscanf() failed -1 0"));
    std::filesystem::remove(forced);
    std::filesystem::create_directory(forced);
    EXPECT_EQ(is_firmware_update_forced("bmu"), 0);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info fscanf() failed -1 0"));
}

TEST_F(ForceMarker, ThatIsAFifoIsReadAndWrittenLikeAFile) {
    ASSERT_EQ(mkfifo(forced, 0600), 0);
    const int end = open(forced, O_RDWR | O_NONBLOCK);
    ASSERT_EQ(write(end, "3\n", 2), 2);
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1);
    EXPECT_THAT(takeLines(forcedFunction), ElementsAre("info yes bmu 3"));
    char text[4] = "";
    EXPECT_EQ(read(end, text, sizeof text), 1);
    EXPECT_STREQ(text, "2");
    close(end);
}

TEST_F(ForceMarker, LeavesNothingOpen) {
    writeFile(forced, "1");
    EXPECT_EQ(is_firmware_update_forced("bmu"), 1); // what is opened once and kept, a log say, is open then
    const auto before = openDescriptors();
    for (const char* text : {"3", "0", "three"}) {
        writeFile(forced, text);
        is_firmware_update_forced("bmu");
        EXPECT_EQ(openDescriptors(), before) << text;
    }
}

TEST_F(DisableMarker, LeavesNothingOpen) {
    EXPECT_EQ(is_firmware_update_disabled(), 0);
    const auto before = openDescriptors();
    writeFile(disabledForKor, "");
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    writeFile(disabled, "");
    EXPECT_EQ(is_firmware_update_disabled(), 1);
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace mox::firmwaretest
