#include "UnitFixture.hpp"

#include <ddal/ddal_fpga.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <host/ddal/Reset.hpp>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testkit::info;
using testkit::warning;

class Fpga : public OnUnit {
protected:
    static int update(std::uint32_t slot, const std::string& path) {
        return ddal_fpga_update_mod(mainFpga, slot, path.c_str());
    }
};
const testkit::BoardOf s_board("Fpga", testkit::Board::text(unitBoard));

TEST_F(Fpga, RunsTheDescribedVersion) {
    EXPECT_EQ(versionOf(bmu), 5u);
    EXPECT_EQ(versionOf(mainFpga), 10u);
    EXPECT_EQ(versionOf(0x10002), 4u);
}

TEST_F(Fpga, RunsOnAfterAnUpdateUntilTheReset) {
    ASSERT_EQ(update(primary, image(258, 500)), DDAL_OK);
    EXPECT_EQ(versionOf(mainFpga), 10u);
    EXPECT_EQ(runPeer({"version", "0x10001"}).out, "0 10");
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(versionOf(mainFpga), 258u);
    EXPECT_EQ(runPeer({"version", "0x10001"}).out, "0 258");
}

TEST_F(Fpga, HoldsExactlyTheImage) {
    const std::string path = image(7, 950);
    ASSERT_EQ(update(primary, image(6, areaSize, "longer")), DDAL_OK);
    ASSERT_EQ(update(primary, path), DDAL_OK);
    EXPECT_EQ(contentOf(flash().path("fpga-10001-1")), contentOf(path));
    const auto whole = flash().image("fpga-10001-1");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->length, 950u);
    EXPECT_EQ(whole->version, 7u);
}

TEST_F(Fpga, KeepsTheImageWhenItsFileIsRemoved) {
    const std::string path = image(7, 100);
    ASSERT_EQ(update(primary, path), DDAL_OK);
    std::filesystem::remove(path);
    host::resetNode(run(), firstNode);
    EXPECT_EQ(versionOf(mainFpga), 7u);
}

TEST_F(Fpga, KnowsTheSumOfItsImage) {
    ASSERT_EQ(update(primary, file("123456789")), DDAL_OK);
    EXPECT_EQ(flash().image("fpga-10001-1")->crc, 0xCBF43926u);
    EXPECT_TRUE(log.has(warning(0, "flash fpga-10001-1: no \"MOX-SW-VERSION:\" in the image, its version is 0")));
}

TEST_F(Fpga, WritesOneSlotAndLeavesTheOther) {
    const std::string before = contentOf(flash().path("fpga-10001-2"));
    ASSERT_EQ(update(primary, image(30, 400)), DDAL_OK);
    EXPECT_EQ(flash().image("fpga-10001-2")->version, 9u);
    EXPECT_EQ(contentOf(flash().path("fpga-10001-2")), before);
    ASSERT_EQ(update(secondary, image(31, 400)), DDAL_OK);
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 30u);
    EXPECT_EQ(flash().image("fpga-10001-2")->version, 31u);
}

TEST_F(Fpga, NeverTouchesTheAreasOfAnotherNode) {
    const std::string before = contentOf(flash(secondNode).path("fpga-10001-1"));
    EXPECT_EQ(before, "MOX-SW-VERSION:20");
    ASSERT_EQ(update(primary, image(30, 400)), DDAL_OK);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(contentOf(flash(secondNode).path("fpga-10001-1")), before);
    EXPECT_EQ(flash(secondNode).image("fpga-10001-1")->version, 20u);
    EXPECT_EQ(runPeer({"version", "0x10001"}, {{"MOX_NODE", "1021"}}).out, "0 10");
}

TEST_F(Fpga, TakesAnImageThatFillsTheArea) {
    EXPECT_EQ(update(primary, image(1, areaSize)), DDAL_OK);
    EXPECT_EQ(flash().image("fpga-10001-1")->length, areaSize);
}

TEST_F(Fpga, RefusesALargerImageAndKeepsItsOwn) {
    EXPECT_EQ(update(primary, image(1, areaSize + 1)), DDAL_NO_SPACE);
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 10u);
}

TEST_F(Fpga, KeepsItsImageWhenTheUpdateCannotBeNoted) {
    ASSERT_EQ(update(primary, image(6, 500, "first")), DDAL_OK);
    const std::string path = image(7, 300);
    int result = DDAL_OK;
    {
        const FullDisk full;
        result = update(primary, path);
    }
    EXPECT_EQ(result, DDAL_IO_ERROR);
    EXPECT_TRUE(log.has(testkit::error(0, FullDisk::line)));
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 6u);
    EXPECT_EQ(contentOf(flash().path("fpga-10001-1")), contentOf("/tmp/first"));
}

TEST_F(Fpga, RefusesWhatIsNoImageFile) {
    EXPECT_EQ(update(primary, "/tmp/nothing-here"), DDAL_NOT_FOUND);
    EXPECT_EQ(update(primary, "/tmp/nothing-here/below"), DDAL_NOT_FOUND);
    EXPECT_EQ(update(primary, ""), DDAL_NOT_FOUND);
    EXPECT_EQ(update(primary, file("")), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(update(primary, "/tmp"), DDAL_IO_ERROR);
    ASSERT_EQ(::mkfifo("/tmp/fifo", 0600), 0);
    EXPECT_EQ(update(primary, "/tmp/fifo"), DDAL_IO_ERROR);
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 10u);
}

TEST_F(Fpga, RefusesUnknownDevicesAndAreas) {
    std::uint32_t version = 17;
    const std::string path = image(1, 100);
    EXPECT_EQ(ddal_fpga_get_active_version(0x10009, &version), DDAL_NO_DEVICE);
    EXPECT_EQ(ddal_fpga_update_mod(0x10009, primary, path.c_str()), DDAL_NO_DEVICE);
    EXPECT_EQ(update(0, path), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(update(3, path), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_fpga_update_mod(bmu, secondary, path.c_str()), DDAL_INVALID_PARAMETER) << "a BMU has one area";
    EXPECT_EQ(version, 17u);
}

TEST_F(Fpga, RefusesNullPointers) {
    EXPECT_EQ(ddal_fpga_get_active_version(mainFpga, nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(Fpga, IsBusyWhileSomebodyUpdatesIt) {
    const std::string lock = run().nodePath() + "/flash/fpga-10001.lock";
    const int other = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(update(primary, image(1, 100)), DDAL_BUSY);
    EXPECT_EQ(update(secondary, image(1, 100)), DDAL_BUSY);
    EXPECT_EQ(runPeer({"update", "0x10001", "1", image(1, 100)}).out, std::to_string(DDAL_BUSY));
    EXPECT_EQ(ddal_fpga_update_mod(bmu, primary, image(1, 100).c_str()), DDAL_OK) << "another device";
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 10u);
    ::close(other);
    EXPECT_EQ(update(primary, image(1, 100)), DDAL_OK);
}

TEST_F(Fpga, IsUpdatedByOneOfTwoProcessesAtATime) {
    const std::string path = image(77, 1000);
    RunningCommand peer({MOX_DDAL_PEER, "update", "0x10001", "1", path});
    int own = update(primary, path);
    while (own == DDAL_BUSY)
        own = update(primary, path);
    const std::string others = peer.finish().out;
    EXPECT_EQ(own, DDAL_OK);
    EXPECT_TRUE(others == "0" || others == std::to_string(DDAL_BUSY)) << others;
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 77u);
    EXPECT_EQ(contentOf(flash().path("fpga-10001-1")), contentOf(path));
}

TEST_F(Fpga, TellsAtTheBeginAndTheEndOfAnUpdate) {
    ASSERT_EQ(update(primary, image(258, 500)), DDAL_OK);
    EXPECT_TRUE(log.hasInOrder({info(0, "flash fpga-10001-1: writing 500 bytes of /tmp/image"),
                                info(0, "flash fpga-10001-1: whole, version 0x102 (258)")}));
}

TEST_F(Fpga, TellsEveryTenthOfAnUpdateToWhoWantsToKnow) {
    const auto tenths = [](const std::string& text) {
        std::vector<std::string> found;
        for (std::size_t at = text.find(" %\n"); at != std::string::npos; at = text.find(" %\n", at + 1))
            found.push_back(text.substr(text.rfind(' ', at - 1) + 1, at - text.rfind(' ', at - 1) - 1));
        return found;
    };
    const std::string path = image(258, areaSize);
    EXPECT_THAT(tenths(runPeer({"update", "0x10001", "1", path}, {{"MOX_LOG", "debug"}}).err),
                ElementsAre("10", "20", "30", "40", "50", "60", "70", "80", "90", "100"));
    EXPECT_THAT(tenths(runPeer({"update", "0x10001", "1", path}, {{"MOX_LOG", std::nullopt}}).err), IsEmpty());
}

TEST_F(Fpga, AnswersWhileSomebodyWritesToTheStore) {
    host::Store::Write held(run().store());
    EXPECT_EQ(runPeer({"version", "0x10001"}).out, "0 10");
    EXPECT_EQ(runPeer({"unit"}).out, "0 KORE");
    EXPECT_EQ(runPeer({"isti"}).out, "0 7");
}

class FpgaWithAVersionText : public OnUnit {};
const testkit::BoardOf s_versions("FpgaWithAVersionText", testkit::Board::text(unitBoard));

TEST_F(FpgaWithAVersionText, ReportsTheNumberBehindTheMarker) {
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"MOX-SW-VERSION:258", 258},
        {"xxMOX-SW-VERSION:0x0102\nyy", 258},
        {"MOX-SW-VERSION:010", 8},
        {"MOX-SW-VERSION:", 0},
        {"MOX-SW-VERSION:5MOX-SW-VERSION:6", 5},
        {"MOX-SW-VERSION:99999999999", 0xFFFFFFFF},
    };
    for (const auto& [text, version] : rows) {
        ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, file(text).c_str()), DDAL_OK) << text;
        ASSERT_TRUE(host::resetNode(run(), firstNode));
        EXPECT_EQ(versionOf(mainFpga), version) << text;
    }
}

TEST_F(FpgaWithAVersionText, FindsItAcrossBlocks) {
    for (std::size_t before = blockSize - 20; before <= blockSize + 2; ++before) {
        const std::string path = file(std::string(before, '\0') + "MOX-SW-VERSION:4711" + std::string(300, '\0'));
        ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_OK);
        EXPECT_EQ(flash().image("fpga-10001-1")->version, 4711u) << before;
    }
}

class BmuWithAResetFile : public OnUnit {
protected:
    static void askForReset(const char* text = "1") {
        std::FILE* control = std::fopen("/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig", "w");
        ASSERT_NE(control, nullptr);
        std::fputs(text, control);
        std::fclose(control);
    }
};
const testkit::BoardOf s_bmu("BmuWithAResetFile", testkit::Board::text(unitBoard));

TEST_F(BmuWithAResetFile, RunsTheNewImageOnceTheFileWasWritten) {
    for (const std::uint32_t version : {6U, 7U, 8U}) {
        ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(version, 300).c_str()), DDAL_OK);
        EXPECT_EQ(versionOf(bmu), version - 1);
        askForReset();
        EXPECT_EQ(versionOf(bmu), version);
        EXPECT_EQ(runPeer({"version", "1"}).out, "0 " + std::to_string(version));
    }
}

TEST_F(BmuWithAResetFile, IsResetOnceForEachWriting) {
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(6, 300).c_str()), DDAL_OK);
    askForReset();
    EXPECT_EQ(versionOf(bmu), 6u);
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(7, 300).c_str()), DDAL_OK);
    EXPECT_EQ(versionOf(bmu), 6u);
}

TEST_F(BmuWithAResetFile, IsNotResetOnceMoreBehindAResetOfTheUnit) {
    askForReset();
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(6, 300).c_str()), DDAL_OK);
    EXPECT_EQ(versionOf(bmu), 5u);
}

TEST_F(BmuWithAResetFile, ResetsOnlyTheBmu) {
    ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, image(6, 300).c_str()), DDAL_OK);
    askForReset();
    versionOf(bmu);
    EXPECT_EQ(versionOf(mainFpga), 10u);
}

TEST_F(BmuWithAResetFile, HearsNothingButAOne) {
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(6, 300).c_str()), DDAL_OK);
    askForReset("0");
    EXPECT_EQ(versionOf(bmu), 5u);
    askForReset("");
    EXPECT_EQ(versionOf(bmu), 5u);
}

TEST_F(BmuWithAResetFile, IsResetByAProcessThatOnlyReads) {
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(6, 300).c_str()), DDAL_OK);
    askForReset();
    EXPECT_EQ(runPeer({"version", "1"}).out, "0 6");
    EXPECT_EQ(versionOf(bmu), 6u);
}

TEST_F(BmuWithAResetFile, IsResetLaterWhenThatCannotBeKept) {
    ASSERT_EQ(ddal_fpga_update_mod(bmu, primary, image(6, 300).c_str()), DDAL_OK);
    askForReset();
    std::uint32_t version = 17;
    int result = DDAL_OK;
    {
        const FullDisk full;
        result = ddal_fpga_get_active_version(bmu, &version);
    }
    EXPECT_EQ(result, DDAL_IO_ERROR);
    EXPECT_EQ(version, 17u);
    EXPECT_TRUE(log.has(testkit::error(0, FullDisk::line)));
    EXPECT_EQ(versionOf(bmu), 6u);
}

} // namespace
} // namespace mox::testing
