#include "UnitFixture.hpp"

#include <ddal/ddal_fpga.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_watchdog.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <host/ddal/Reset.hpp>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;

class DeviceReset : public OnUnit {
protected:
    static std::uint64_t resets() {
        std::uint64_t value = 0;
        EXPECT_EQ(ddal_sysinfo_get_uint(0, DDAL_SYSINFO_KEY_RESET_COUNTER, 0, nullptr, &value), DDAL_OK);
        return value;
    }
    /// Notes a process as a service that the run has started, as 'moxctl sim up' does.
    static void noteService(const std::string& name, pid_t pid) {
        std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
        std::string field;
        for (int i = 0; i < 22; ++i)
            file >> field;
        run().store().put(host::Table::processes, "1011/" + name, std::to_string(pid) + " " + field);
    }
};
const testkit::BoardOf s_board("DeviceReset", testkit::Board::text(unitBoard));

TEST_F(DeviceReset, IsCountedByTheUnit) {
    EXPECT_EQ(resets(), 3u);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(resets(), 5u);
}

TEST_F(DeviceReset, KeepsSystemInformation) {
    ASSERT_EQ(ddal_sysinfo_set_uint(0, DDAL_SYSINFO_KEY_ISTI, 0, nullptr, 99), DDAL_OK);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(runPeer({"isti"}).out, "0 99");
}

TEST_F(DeviceReset, LoadsNothingFromBlankAreas) {
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(versionOf(0x10002), 0u);
    EXPECT_EQ(versionOf(0x10003), 3u) << "has no areas, so nothing is loaded";
    EXPECT_EQ(versionOf(bmu), 5u);
}

TEST_F(DeviceReset, LoadsTheSecondaryAreaWhenThePrimaryIsBlank) {
    ASSERT_EQ(ddal_fpga_update_mod(0x10002, secondary, image(44, 100).c_str()), DDAL_OK);
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(versionOf(0x10002), 44u);
}

TEST_F(DeviceReset, IsLogged) {
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_TRUE(log.has(testkit::info(0, "node 1011: FPGA 0x10001 runs version 0xA (10)")));
    EXPECT_TRUE(log.has(testkit::info(0, "node 1011: boot loader runs version 20160115 from location 0")));
}

TEST_F(DeviceReset, OfOneNodeIsNoneOfAnother) {
    ASSERT_TRUE(host::resetNode(run(), firstNode));
    EXPECT_EQ(runPeer({"version", "0x10001"}, {{"MOX_NODE", "1021"}}).out, "0 10");
    ASSERT_TRUE(host::resetNode(run(), secondNode));
    EXPECT_EQ(runPeer({"version", "0x10001"}, {{"MOX_NODE", "1021"}}).out, "0 20");
}

TEST_F(DeviceReset, NeedsANode) {
    EXPECT_FALSE(host::resetNode(run(), 0x1031));
    EXPECT_FALSE(host::reloadFpga(run(), firstNode, 0x99));
    EXPECT_FALSE(host::reloadFpga(run(), 0x1031, bmu));
}

TEST_F(DeviceReset, OfOneFpgaLeavesTheOthers) {
    for (const std::uint32_t device : {bmu, mainFpga})
        ASSERT_EQ(ddal_fpga_update_mod(device, primary, image(50, 100).c_str()), DDAL_OK);
    ASSERT_TRUE(host::reloadFpga(run(), firstNode, mainFpga));
    EXPECT_EQ(versionOf(mainFpga), 50u);
    EXPECT_EQ(versionOf(bmu), 5u);
    EXPECT_EQ(resets(), 3u);
}

class WatchdogReboot : public DeviceReset {};
const testkit::BoardOf s_watchdog("WatchdogReboot", testkit::Board::text(unitBoard));

TEST_F(WatchdogReboot, LoadsTheDevicesAndLetsAProcessGoOnThatIsNoService) {
    ASSERT_EQ(ddal_fpga_update_mod(mainFpga, primary, image(50, 100).c_str()), DDAL_OK);
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_OK);
    EXPECT_EQ(versionOf(mainFpga), 50u);
    EXPECT_EQ(resets(), 4u);
    EXPECT_TRUE(log.has(testkit::warning(0, "node 1011: rebooted by the watchdog; 0 other services were killed")));
}

TEST_F(WatchdogReboot, KillsTheServicesOfTheNode) {
    RunningCommand service({"/bin/sleep", "600"});
    RunningCommand other({"/bin/cat", "/dev/zero"});
    noteService("Sleep", service.pid());
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_OK);
    EXPECT_EQ(service.finish().status, 128 + SIGKILL);
    EXPECT_EQ(::kill(other.pid(), 0), 0) << "nobody has started it as a service";
    EXPECT_TRUE(log.has(testkit::warning(0, HasSubstr("1 other services were killed"))));
}

TEST_F(WatchdogReboot, LeavesAProcessAloneThatGotTheNumberOfADeadService) {
    RunningCommand other({"/bin/sleep", "600"});
    run().store().put(host::Table::processes, "1011/Dead", std::to_string(other.pid()) + " 1");
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_OK);
    EXPECT_EQ(::kill(other.pid(), 0), 0);
    EXPECT_TRUE(log.has(testkit::warning(0, HasSubstr("0 other services were killed"))));
}

TEST_F(WatchdogReboot, EndsTheServiceThatAsksForIt) {
    ASSERT_EQ(::mkfifo("/tmp/go", 0600), 0);
    RunningCommand service({"/bin/sh", "-c", "read -r _ < /tmp/go; exec \"$0\" reboot", MOX_DDAL_PEER});
    noteService("Asking", service.pid());
    std::ofstream("/tmp/go") << "go\n";
    const CommandResult result = service.finish();
    EXPECT_EQ(result.status, 128 + SIGKILL);
    EXPECT_EQ(result.out, "") << "the call does not return";
    EXPECT_EQ(resets(), 4u);
}

TEST_F(WatchdogReboot, IsBusyWhileOneIsUnderWay) {
    const int other = ::open((run().nodePath() + "/reboot.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_BUSY);
    ::close(other);
    EXPECT_EQ(resets(), 3u);
}

} // namespace
} // namespace mox::testing
