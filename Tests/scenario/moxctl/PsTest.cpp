#include "Moxctl.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(PsList, ShowsTheServicesOfAllNodes) {
    const SimulatedRun run;
    run.up();
    const Json list = run.json({"ps", "list"});
    EXPECT_EQ(list.at("schema"), "moxctl.processes.1");
    ASSERT_EQ(list.at("processes").size(), 2U);
    const Json& second = list.at("processes").at(1);
    EXPECT_EQ(second.at("node"), "1021");
    EXPECT_EQ(second.at("name"), "Echo");
    EXPECT_EQ(second.at("kind"), "service");
    EXPECT_EQ(second.at("pid"), run.pidOf("1021", "Echo"));
    EXPECT_EQ(second.at("state"), "waiting");
    EXPECT_EQ(second.at("cpids"), Json({"0x0600"}));
    EXPECT_GT(second.at("residentKib"), 100);
}

TEST(PsList, ShowsOtherProcessesThatHaveJoined) {
    const SimulatedRun run;
    RunningCommand monitor(moxctlWords({"msg", "monitor", "0x0701", "--node", "1021"}), run.setting());
    monitor.waitForErr("monitoring");
    const Json list = run.json({"ps", "list"});
    ASSERT_EQ(list.at("processes").size(), 1U);
    const Json& process = list.at("processes").at(0);
    EXPECT_EQ(process.at("node"), "1021");
    EXPECT_EQ(process.at("pid"), monitor.pid());
    EXPECT_EQ(process.at("name"), "moxctl");
    EXPECT_EQ(process.at("kind"), "other");
    EXPECT_EQ(process.at("cpids"), Json({"0x0701"}));
    EXPECT_EQ(run.json({"ps", "list", "--node", "1011"}).at("processes").size(), 0U);
}

TEST(PsList, IsATableForAPerson) {
    const SimulatedRun run;
    EXPECT_EQ(run.moxctl({"ps", "list"}).out, "NODE  PID  NAME  KIND  STATE  CPIDS  RSS/KiB\n");
    run.up();
    const std::string text = run.moxctl({"ps", "list"}).out;
    EXPECT_THAT(text, StartsWith("NODE  PID"));
    EXPECT_THAT(text, HasSubstr("Echo  service  waiting  0x0600  "));
}

TEST(PsListAfterAServiceWasKilled, ShowsTheOtherOnly) {
    const SimulatedRun run;
    run.up();
    killProcess(run.pidOf("1011", "Echo"));
    const Json processes = run.json({"ps", "list"}).at("processes");
    ASSERT_EQ(processes.size(), 1U);
    EXPECT_EQ(processes.at(0).at("node"), "1021");
}

} // namespace
} // namespace mox::testing
