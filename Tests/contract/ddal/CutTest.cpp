// Updates that end in the middle: whatever the operation, the area is whole or it is not, and the next update heals it.
#include "UnitFixture.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>

#include <gmock/gmock.h>
#include <host/ddal/FlashPlan.hpp>
#include <host/ddal/Reset.hpp>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace mox::testing {
namespace {

using host::FlashPlan;
using host::planFlash;
using ::testing::HasSubstr;

constexpr std::size_t imageSize = 350; // 4 blocks
constexpr int killed = 128 + 9;

class CutUpdate : public OnUnit {
protected:
    ~CutUpdate() override { planFlash({}); }

    static Environment plan(const char* kind, std::uint64_t operation) {
        return {{"MOX_FLASH_PLAN", kind + std::to_string(operation)}};
    }
};
/// Whether the lock of a process that is killed is given to the next one. The emulator of ARM programs knows no list of
/// a thread's locks; there, who is killed while it writes the run's store stops all others of the run.
bool locksOfTheDeadAreFreed() {
    void* locks = nullptr;
    std::size_t length = 0;
    return ::syscall(SYS_get_robust_list, 0, &locks, &length) == 0;
}

const testkit::BoardOf s_board("CutUpdate", testkit::Board::text(unitBoard));

TEST_F(CutUpdate, LeavesAnAreaThatIsNotWholeWhateverItsOperation) {
    const std::string path = image(30, imageSize);
    for (std::uint64_t n = 1; n <= operationsFor(imageSize); ++n) {
        SCOPED_TRACE(n);
        ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, image(11, 200, "old").c_str()), DDAL_OK);
        EXPECT_EQ(runPeer({"update", "0x10001", "1", path}, plan("cut:", n)).status, killed);
        EXPECT_FALSE(flash().isWhole("fpga-10001-1"));
        EXPECT_EQ(flash().image("fpga-10001-2")->version, 9u);
        ASSERT_TRUE(host::resetNode(run(), firstNode));
        EXPECT_EQ(versionOf(mainFpga), 9u) << "of the secondary slot";
        EXPECT_EQ(runPeer({"update", "0x10001", "1", path}).out, "0") << "not busy";
        EXPECT_EQ(contentOf(flash().path("fpga-10001-1")), contentOf(path));
        ASSERT_TRUE(host::resetNode(run(), firstNode));
        EXPECT_EQ(versionOf(mainFpga), 30u);
    }
}

TEST_F(CutUpdate, IsNoneBehindTheLastOperation) {
    const std::string path = image(30, imageSize);
    EXPECT_EQ(runPeer({"update", "0x10001", "1", path}, plan("cut:", operationsFor(imageSize) + 1)).out, "0");
    EXPECT_EQ(flash().image("fpga-10001-1")->version, 30u);
}

TEST_F(CutUpdate, LeavesHalfOfTheBlockThatItWasAt) {
    ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, file(std::string(imageSize, 'o'), "old").c_str()), DDAL_OK);
    const std::string path = file(std::string(imageSize, 'n'));
    const std::string area = flash().path("fpga-10001-1");
    log.expect(testkit::warning(0, HasSubstr("its version is 0")));
    EXPECT_EQ(runPeer({"update", "0x10001", "1", path}, plan("cut:", 2)).status, killed);
    EXPECT_EQ(contentOf(area), std::string(150, '\xFF') + std::string(200, 'o'));
    EXPECT_EQ(runPeer({"update", "0x10001", "1", path}, plan("cut:", 6)).status, killed);
    EXPECT_EQ(contentOf(area), std::string(150, 'n') + std::string(250, '\xFF'));
}

TEST_F(CutUpdate, OfBothSlotsLeavesADeviceThatRunsNothingAndCanBeUpdated) {
    const std::string path = image(30, imageSize);
    for (const char* slot : {"1", "2"})
        EXPECT_EQ(runPeer({"update", "0x10001", slot, path}, plan("cut:", 5)).status, killed);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(versionOf(mainFpga), 0u);
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, secondary, path.c_str()), DDAL_OK);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(versionOf(mainFpga), 30u);
}

TEST_F(CutUpdate, ByAKillFromOutsideLeavesAnAreaThatIsWholeOrNot) {
    if (!locksOfTheDeadAreFreed())
        GTEST_SKIP() << "the lock of a process that is killed stays taken here";
    constexpr std::uint32_t large = 0x10002;
    const std::string path = image(30, 8'000'000);
    int broken = 0;
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(ddal_fpga_update_mod(large, primary, image(29, 100, "old").c_str()), DDAL_OK);
        RunningCommand peer({MOX_DDAL_PEER, "update", "0x10002", "1", path});
        while (flash().image("fpga-10002-1").value_or(host::FlashImage()).version == 29)
            std::this_thread::yield();
        peer.signal(SIGKILL);
        peer.finish();
        if (const auto whole = flash().image("fpga-10002-1"))
            EXPECT_EQ(contentOf(flash().path("fpga-10002-1")), contentOf(path)) << whole->version;
        else
            ++broken;
    }
    EXPECT_GT(broken, 0);
}

TEST_F(CutUpdate, OfTheBootLoaderStartsTheBackupArea) {
    for (std::uint64_t n = 1; n <= operationsFor(imageSize); ++n) {
        SCOPED_TRACE(n);
        EXPECT_EQ(runPeer({"uboot", image(20170101, imageSize)}, plan("cut:", n)).status, killed);
        ASSERT_TRUE(host::resetNode(run(), firstNode));
        std::uint32_t location = 0;
        EXPECT_EQ(ddal_boot_get_uboot_id(&location), DDAL_OK);
        EXPECT_EQ(location, DDAL_BOOT_UBOOT_BACKUP);
        EXPECT_EQ(runPeer({"uboot-version"}).out, "0 20160115");
    }
    EXPECT_EQ(ddal_boot_update_uboot(image(20170101, imageSize).c_str()), DDAL_OK);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(runPeer({"uboot-version"}).out, "0 20170101");
}

class FailingUpdate : public CutUpdate {};
const testkit::BoardOf s_failing("FailingUpdate", testkit::Board::text(unitBoard));

TEST_F(FailingUpdate, IsAnErrorWhateverItsOperation) {
    const std::string path = image(30, imageSize);
    for (std::uint64_t n = 1; n <= operationsFor(imageSize); ++n) {
        SCOPED_TRACE(n);
        planFlash({FlashPlan::Kind::fail, n});
        EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_IO_ERROR);
        EXPECT_EQ(host::flashOperations(), n);
        EXPECT_FALSE(flash().isWhole("fpga-10001-1"));
        EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_OK) << "only that operation fails";
        EXPECT_TRUE(flash().isWhole("fpga-10001-1"));
    }
    planFlash({FlashPlan::Kind::fail, operationsFor(imageSize) + 1});
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_OK);
    EXPECT_EQ(host::flashOperations(), operationsFor(imageSize));
}

TEST_F(FailingUpdate, SaysAtWhichOperation) {
    planFlash({FlashPlan::Kind::fail, 3});
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, image(30, imageSize).c_str()), DDAL_IO_ERROR);
    EXPECT_TRUE(
        log.has(testkit::info(0, "flash fpga-10001-1: operation 3 of this process failed, the area is not whole")));
}

TEST_F(FailingUpdate, CanBePlannedForAProcessThatRuns) {
    const std::string path = image(30, imageSize);
    ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_OK) << "operations before do not count";
    ASSERT_TRUE(host::planFlashOf(run(), firstNode, {FlashPlan::Kind::fail, 2}));
    EXPECT_EQ(runPeer({"update", "0x10001", "1", path}).out, std::to_string(DDAL_IO_ERROR));
    EXPECT_EQ(runPeer({"update", "0x10001", "1", path}).out, "0") << "a plan serves once";
    ASSERT_TRUE(host::planFlashOf(run(), firstNode, {FlashPlan::Kind::fail, 4}));
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_IO_ERROR);
    ASSERT_TRUE(host::planFlashOf(run(), firstNode, {FlashPlan::Kind::cut, 1}));
    ASSERT_TRUE(host::planFlashOf(run(), firstNode, {}));
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_OK) << "taken back";
}

TEST_F(FailingUpdate, StaysPlannedWhenThePlanCannotBeTakenBack) {
    const std::string path = image(30, imageSize);
    ASSERT_TRUE(host::planFlashOf(run(), firstNode, {FlashPlan::Kind::fail, 1}));
    bool takenBack = true;
    {
        const FullDisk full;
        takenBack = host::planFlashOf(run(), firstNode, {});
    }
    EXPECT_FALSE(takenBack);
    EXPECT_TRUE(log.has(testkit::error(0, FullDisk::line)));
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, path.c_str()), DDAL_IO_ERROR);
}

TEST_F(FailingUpdate, IsPlannedForOneNodeAlone) {
    ASSERT_TRUE(host::planFlashOf(run(), secondNode, {FlashPlan::Kind::fail, 1}));
    EXPECT_EQ(ddal_fpga_update_mod(mainFpga, primary, image(30, imageSize).c_str()), DDAL_OK);
}

TEST_F(FailingUpdate, IsOneOfAFileThatEndsEarly) {
    constexpr const char* shorterThanItsSize = "/sys/devices/system/cpu/online";
    ASSERT_EQ(ddal_fpga_update_mod(0x10002, primary, image(30, 100).c_str()), DDAL_OK);
    EXPECT_EQ(ddal_fpga_update_mod(0x10002, primary, shorterThanItsSize), DDAL_IO_ERROR);
    EXPECT_FALSE(flash().isWhole("fpga-10002-1"));
}

TEST_F(CutUpdate, IsNotPlannedByAWrongText) {
    const CommandResult result =
        runPeer({"update", "0x10001", "1", image(30, imageSize)}, {{"MOX_FLASH_PLAN", "cut:x"}});
    EXPECT_EQ(result.out, "0");
    EXPECT_THAT(result.err,
                HasSubstr("MOX_FLASH_PLAN: expected 'cut:N' or 'fail:N' with an operation from 1, got 'cut:x'"));
}

} // namespace
} // namespace mox::testing
