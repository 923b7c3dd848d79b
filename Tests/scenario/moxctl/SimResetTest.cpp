#include "Moxctl.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// Two nodes with devices that run something else than what lies in their image areas, and a service each.
constexpr const char* flashedBoard = R"({"nodes": [
  {"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}, "services": [{"name": "Echo", "executable": "MOXEchoExe"}],
   "devices": {
     "boot": {"location": "backup", "version": "20160115"},
     "fpgas": [{"id": 1, "activeVersion": 5, "slots": [{"slot": 1, "version": 7}]},
               {"id": "0x10001", "activeVersion": 5, "slots": [{"slot": 1}, {"slot": 2, "version": 6}]},
               {"id": "0x20001", "activeVersion": 5, "slots": [{"slot": 1}]}]}},
  {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}, "services": [{"name": "Echo", "executable": "MOXEchoExe"}],
   "devices": {"fpgas": [{"id": 1, "activeVersion": 5, "slots": [{"slot": 1, "version": 7}]}]}}]})";

TEST(SimReset, LoadsWhatLiesInFlash) {
    const SimulatedRun run(flashedBoard);
    const Json answer = run.json({"sim", "reset"});
    EXPECT_EQ(answer.at("schema"), "moxctl.reset.1");
    const Json& first = answer.at("reset").at(0);
    EXPECT_EQ(first.at("node"), "1011");
    EXPECT_EQ(first.at("boot"), Json({{"location", "backup"}, {"version", "20160115"}}));
    const Json expected = Json::array(
        {{{"id", "0x1"}, {"version", 7}}, {{"id", "0x10001"}, {"version", 6}}, {{"id", "0x20001"}, {"version", 0}}});
    EXPECT_EQ(first.at("fpgas"), expected);
    EXPECT_EQ(answer.at("started"), Json::array());
}

TEST(SimReset, TakesOneNodeWhenItIsNamed) {
    const SimulatedRun run(flashedBoard);
    const Json answer = run.json({"sim", "reset", "--node", "1021"});
    ASSERT_EQ(answer.at("reset").size(), 1U);
    EXPECT_EQ(answer.at("reset").at(0).at("node"), "1021");
}

TEST(SimReset, StartsTheServicesAgainThatRan) {
    const SimulatedRun run;
    ASSERT_EQ(run.moxctl({"sim", "up", "--node", "1021"}).status, 0);
    const pid_t before = run.pidOf("1021", "Echo");
    const CommandResult result = run.moxctl({"sim", "reset"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "reset 1011,1021, started 1021/Echo\n");
    EXPECT_NE(run.pidOf("1021", "Echo"), before);
    EXPECT_EQ(run.moxctl({"msg", "request", "1021:0600", "0601"}).status, 0);
    const Json status = run.json({"sim", "status"});
    EXPECT_EQ(status.at("services").at(0).at("state"), "down") << "was not started before";
}

TEST(SimReset, LeavesServicesOfOtherNodesAlone) {
    const SimulatedRun run;
    run.up();
    const pid_t other = run.pidOf("1011", "Echo");
    EXPECT_EQ(run.json({"sim", "reset", "--node", "1021"}).at("started"), Json({"1021/Echo"}));
    EXPECT_EQ(run.pidOf("1011", "Echo"), other);
}

TEST(SimReset, StopsNothingWhenAnExecutableIsGone) {
    const TemporaryDirectory programs;
    std::filesystem::copy(std::filesystem::path(MOXCTL_PATH).parent_path() / "MOXEchoExe", programs.path());
    std::filesystem::rename(programs.path() + "/MOXEchoExe", programs.path() + "/MyEcho");
    const SimulatedRun run(boardWith({{"Echo", "MyEcho", {}}}));
    ASSERT_EQ(run.moxctl({"sim", "up", "--exe-dir", programs.path()}).status, 0);
    const pid_t before = run.pidOf("1011", "Echo");
    const CommandResult result = run.moxctl({"sim", "reset"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, HasSubstr("executable 'MyEcho' not found"));
    EXPECT_EQ(run.pidOf("1011", "Echo"), before);
    EXPECT_EQ(run.moxctl({"sim", "reset", "--exe-dir", programs.path()}).status, 0);
    EXPECT_THAT(run.pidOf("1011", "Echo"), Not(before));
}

TEST(SimReset, TakesTheRunAsAnArgumentToo) {
    const SimulatedRun run(flashedBoard);
    EXPECT_EQ(moxctlAlone({"sim", "reset", run.path()}).status, 0);
    EXPECT_EQ(moxctlAlone({"sim", "reset", run.path() + "/none"}).status, 5);
}

} // namespace
} // namespace mox::testing
