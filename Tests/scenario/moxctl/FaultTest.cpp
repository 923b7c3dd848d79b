#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <ostream>

namespace mox::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// The echo service under another name on each of two nodes.
constexpr const char* twoNames = R"({"nodes": [
    {"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}, "services": [{"name": "Left", "executable": "MOXEchoExe"}]},
    {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}, "services": [{"name": "Right", "executable": "MOXEchoExe"}]}]})";

constexpr const char* left = "1011:0600";
constexpr const char* right = "1021:0600";
/// The echo service answers with this function.
constexpr const char* answer = "AaSysComMsgSendS";

/// Plans a fault. @return its id
std::string plan(const SimulatedRun& run, const Words& words) {
    Words all{"ddal", "fault", "add"};
    all.insert(all.end(), words.begin(), words.end());
    const CommandResult result = run.moxctl(all);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out.substr(0, result.out.find('\n'));
}

bool isAnswered(const SimulatedRun& run, const std::string& receiver) {
    const CommandResult result = run.moxctl({"msg", "request", receiver, "0601", "--timeout", "0.3"});
    EXPECT_TRUE(result.status == 0 || result.status == 124) << result.err;
    return result.status == 0;
}

Json onlyFault(const SimulatedRun& run) {
    const Json list = run.json({"ddal", "fault", "list"});
    EXPECT_EQ(list.at("schema"), "moxctl.faults.1");
    EXPECT_EQ(list.at("faults").size(), 1U);
    return list.at("faults").at(0);
}

TEST(FaultOfARunningService, TakesEffectAtOnceAndEndsWithClear) {
    const SimulatedRun run;
    run.up();
    EXPECT_TRUE(isAnswered(run, left));
    const std::string id = plan(run, {answer});
    EXPECT_FALSE(isAnswered(run, left));
    EXPECT_FALSE(isAnswered(run, right));
    EXPECT_EQ(run.moxctl({"ddal", "fault", "clear", id}).status, 0);
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_EQ(run.json({"ddal", "fault", "list"}).at("faults"), Json::array());
}

TEST(FaultOfARunningService, IsListedWithWhatBecameOfIt) {
    const SimulatedRun run(twoNames);
    run.up();
    const std::string id = plan(run, {answer, "--return=EAaSysComRetVal_NoReceiver", "--service=Left", "--nth=2"});
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_FALSE(isAnswered(run, left));
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_TRUE(isAnswered(run, right));
    EXPECT_EQ(onlyFault(run), Json({{"id", 1},
                                    {"function", answer},
                                    {"what", "return 4 (EAaSysComRetVal_NoReceiver)"},
                                    {"calls", "2"},
                                    {"service", "Left"},
                                    {"node", nullptr},
                                    {"seen", 3},
                                    {"fired", 1},
                                    {"action", "return"},
                                    {"return", "4"},
                                    {"delayUs", 0},
                                    {"nth", 2},
                                    {"times", 1}}));
    EXPECT_THAT(
        run.moxctl({"ddal", "fault", "list"}).out,
        StartsWith("ID  FUNCTION          WHAT                                   CALLS  SERVICE  NODE  SEEN  FIRED\n"
                   "1   AaSysComMsgSendS  return 4 (EAaSysComRetVal_NoReceiver)  2      Left     -     3     1\n"));
    EXPECT_EQ(id, "1");
}

TEST(FaultOfOneNode, LeavesOthersAlone) {
    const SimulatedRun run;
    run.up();
    plan(run, {answer, "--node", "1021"});
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_FALSE(isAnswered(run, right));
    EXPECT_EQ(onlyFault(run).at("node"), "1021");
    EXPECT_EQ(run.json({"ddal", "fault", "list", "--node", "1011"}).at("faults"), Json::array());
}

TEST(FaultOfOneService, LeavesOthersAlone) {
    const SimulatedRun run(twoNames);
    run.up();
    plan(run, {answer, "--service=Right"});
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_FALSE(isAnswered(run, right));
}

TEST(FaultThatDelays, MakesTheAnswerLate) {
    const SimulatedRun run;
    run.up();
    plan(run, {answer, "--delay=250ms", "--nth=1"});
    EXPECT_GE(run.json({"msg", "request", left, "0601"}).at("microseconds"), 250'000);
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_EQ(onlyFault(run).at("fired"), 1);
}

TEST(FaultThatIsStuck, RepeatsTheFirstAnswer) {
    const SimulatedRun run;
    run.up();
    plan(run, {"AaSysComMsgGetPayloadSize", "--mode=stuck"});
    EXPECT_EQ(run.json({"msg", "request", left, "0601", "--text", "abc"}).at("size"), 3);
    EXPECT_EQ(run.json({"msg", "request", left, "0601", "--text", "abcdef"}).at("size"), 3);
    EXPECT_EQ(onlyFault(run).at("calls"), "from 2");
}

TEST(FaultOfThePrintFunction, SilencesTheService) {
    const SimulatedRun run;
    run.up();
    run.moxctl({"rad", "set", "ECHO", "1"});
    const std::string id = plan(run, {"AaSysLogPrintE", "--service=Echo"});
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_THAT(run.moxctl({"log", "tail", "Echo"}).out,
                AllOf(Not(HasSubstr("echo of 0 bytes")), HasSubstr("WRN 1011 Echo"),
                      HasSubstr("fault: AaSysLogPrintE answers 4 (fault " + id + ")")));
    run.moxctl({"ddal", "fault", "clear", "--all"});
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_THAT(run.moxctl({"log", "tail", "Echo"}).out, HasSubstr("echo of 0 bytes"));
}

TEST(FaultWhoseProcessIsKilled, KeepsItsCounts) {
    const SimulatedRun run;
    run.up();
    plan(run, {answer, "--delay=1ms", "--node", "1011"});
    EXPECT_TRUE(isAnswered(run, left));
    const Json before = onlyFault(run);
    EXPECT_GE(before.at("fired"), 1);
    killProcess(run.pidOf("1011", "Echo"));
    EXPECT_EQ(onlyFault(run), before);
    run.up();
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_GT(onlyFault(run).at("fired"), before.at("fired"));
}

TEST(FaultOfTheStartUp, KeepsAServiceDown) {
    const SimulatedRun run;
    plan(run, {"AaConfigEarlyStartup", "--return=EAaConfigRetVal_FileError", "--node", "1021"});
    const CommandResult up = run.moxctl({"sim", "up"});
    EXPECT_EQ(up.status, 1);
    EXPECT_THAT(up.err, HasSubstr("'1021/Echo' ended with status 1"));
    EXPECT_EQ(onlyFault(run).at("fired"), 1);
    run.moxctl({"ddal", "fault", "clear", "--all"});
    run.up();
}

TEST(Faults, DoNotApplyToMoxctl) {
    const SimulatedRun run;
    run.up();
    for (const char* function : {"AaConfigEarlyStartup", "AaStartupEeStartup", "AaConfigTagSetString",
                                 "AaConfigTagPublicSetU32", "AaSysComMsgSend", "AaSysComUserRegister"}) {
        plan(run, {function});
    }
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_EQ(run.moxctl({"tag", "set", "app.x", "1", "--type", "u32"}).status, 0);
    const Json list = run.json({"ddal", "fault", "list"});
    for (const Json& fault : list.at("faults")) {
        EXPECT_EQ(fault.at("seen"), 0) << fault;
    }
}

TEST(FaultsOfAnotherLayout, AreLeftAloneByServices) {
    const SimulatedRun run;
    run.directory().write("run/faults", "MOXFLT2 and so on");
    run.up();
    EXPECT_TRUE(isAnswered(run, left));
    EXPECT_THAT(run.moxctl({"log", "tail", "-n", "1000"}).out,
                HasSubstr("no fault can be planned for this process: the run's file 'faults' has another layout"));
    const CommandResult refused = run.moxctl({"ddal", "fault", "add", answer});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("another layout"));
}

struct RefusedRow {
    Words words;
    int status;
    const char* text;
};

void PrintTo(const RefusedRow& row, std::ostream* stream) {
    for (const std::string& word : row.words) {
        *stream << ' ' << word;
    }
}

class RefusedFault : public ::testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedFault, TellsWhatWasExpected) {
    const SimulatedRun run;
    Words words{"ddal", "fault"};
    words.insert(words.end(), GetParam().words.begin(), GetParam().words.end());
    const CommandResult result = run.moxctl(words);
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_THAT(result.err, HasSubstr(GetParam().text));
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(run.json({"ddal", "fault", "list"}).at("faults"), Json::array());
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, RefusedFault,
    ::testing::Values(
        RefusedRow{
            {"add", "ddal_fpga_updat_mod"}, 3, "no function 'ddal_fpga_updat_mod'; similar: ddal_fpga_update_mod"},
        RefusedRow{{"add"}, 2, "FUNCTION is required"},
        RefusedRow{
            {"add", "AaSemWait", "--return=77"}, 2, "AaSemWait: expected one of EAaSemRetVal, by name or number"},
        RefusedRow{{"add", "AaMemMalloc", "--return=0"}, 2, "AaMemMalloc: expected null"},
        RefusedRow{{"add", "AaMemRef", "--return=0"}, 2, "expected no value"},
        RefusedRow{{"add", "AaTicks64Get"}, 2, "has no result that means failure: give --return, --delay or --mode"},
        RefusedRow{{"add", answer, "--nth=0"}, 2, "nth: expected a number from 1, got '0'"},
        RefusedRow{{"add", answer, "--nth=x"}, 2, "nth: expected a decimal"},
        RefusedRow{{"add", answer, "--times=0"}, 2, "times: expected a number from 1"},
        RefusedRow{{"add", answer, "--delay=250"}, 2, "unit us, ms, s or min, such as 250ms, got '250'"},
        RefusedRow{{"add", answer, "--delay=61min"}, 2, "at most an hour"},
        RefusedRow{{"add", answer, "--delay=-1s"}, 2, "delay: expected"},
        RefusedRow{{"add", answer, "--delay=0x10ms"}, 2, "delay: expected"},
        RefusedRow{{"add", answer, "--mode=odd"}, 2, "mode: expected stuck or garbage, got 'odd'"},
        RefusedRow{{"add", answer, "--mode=garbage"}, 2, "AaSysComMsgSendS has no outputs that can be garbled"},
        RefusedRow{{"add", "AaMemMalloc", "--mode=stuck"}, 2, "it cannot be stuck"},
        RefusedRow{{"add", answer, "--mode=stuck", "--return=1"}, 2, "either --return or --mode"},
        RefusedRow{{"add", answer, "--service=Ecko"}, 3, "no service 'Ecko'; expected Echo"},
        RefusedRow{{"add", answer, "--node=9999"}, 3, "9999"}, RefusedRow{{"clear"}, 2, "either IDs or --all"},
        RefusedRow{{"clear", "1", "--all"}, 2, "either IDs or --all"}, RefusedRow{{"clear", "7"}, 3, "no fault 7"},
        RefusedRow{{"clear", "x"}, 2, "fault: expected a decimal"}, RefusedRow{{}, 2, "expected add, list, clear"}));

struct EffectRow {
    Words words;
    const char* what;
    const char* calls;
};

void PrintTo(const EffectRow& row, std::ostream* stream) {
    *stream << row.what;
}

class PlannedFault : public ::testing::TestWithParam<EffectRow> {};

TEST_P(PlannedFault, IsShownAsItWasMeant) {
    const SimulatedRun run;
    plan(run, GetParam().words);
    const Json fault = onlyFault(run);
    EXPECT_EQ(fault.at("what"), GetParam().what);
    EXPECT_EQ(fault.at("calls"), GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, PlannedFault,
    ::testing::Values(EffectRow{{"ddal_fpga_update_mod"}, "return -5 (DDAL_IO_ERROR)", "all"},
                      EffectRow{{"ddal_fpga_update_mod", "--return=-71"}, "return -71", "all"},
                      EffectRow{{"AaMemMalloc"}, "return null", "all"}, EffectRow{{"AaMemRef"}, "skip", "all"},
                      EffectRow{{"AaFileReadLine"}, "return -1", "all"},
                      EffectRow{{"AaMemRef", "--delay=2s"}, "delay 2s", "all"},
                      EffectRow{{"AaMemMalloc", "--delay=1.5ms", "--return=null"}, "delay 1500us, return null", "all"},
                      EffectRow{{"AaTicks64Get", "--mode=stuck"}, "stuck", "from 2"},
                      EffectRow{{"AaTicks64Get", "--mode=stuck", "--nth=1"}, "stuck", "1"},
                      EffectRow{{"ddal_fpga_update_mod", "--mode=stuck"}, "stuck", "all"},
                      EffectRow{{"ddal_rio_get_own_id", "--mode=garbage", "--nth=3", "--times=4"}, "garbage", "3 to 6"},
                      EffectRow{{"ddal_rio_get_own_id", "--times=2"}, "return -5 (DDAL_IO_ERROR)", "1 to 2"},
                      EffectRow{{"AaSemWait", "--nth=5"}, "return 1 (EAaSemRetVal_Error)", "5"}));

} // namespace
} // namespace mox::testing
