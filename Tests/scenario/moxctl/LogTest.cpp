#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* first = "2026-01-01T00:00:00.000001Z INF 1011 Fan[10] 00020001 -: one: two  three\n";
constexpr const char* second = "2026-01-01T00:00:00.000002Z DBG 1011 Led[11] 0002002a HWAPI: turned on\n";
constexpr const char* third = "2026-01-01T00:00:00.000003Z ERR 1011 Fan[10] 00000000 -: stuck\n";

/// A run whose node 1011 has logs of two services that do not run.
class LogTail : public ::testing::Test {
protected:
    LogTail() {
        append("Fan.log", std::string(first) + third);
        append("Led.log", second);
    }
    void append(const std::string& file, const std::string& text) const {
        std::ofstream(run.path() + "/nodes/1011/log/" + file, std::ios::app | std::ios::binary) << text;
    }

    const SimulatedRun run{boardWith({{"Fan", "MOXFanExe", {}}, {"Led", "MOXLedExe", {}}, {"Srv", "MOXSrvExe", {}}})};
};

TEST_F(LogTail, PrintsTheLinesOfAllProcessesByTime) {
    const CommandResult result = run.moxctl({"log", "tail"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, std::string(first) + second + third);
}

TEST_F(LogTail, PrintsTheLinesOfOneService) {
    EXPECT_EQ(run.moxctl({"log", "tail", "Fan"}).out, std::string(first) + third);
    const CommandResult silent = run.moxctl({"log", "tail", "Srv"});
    EXPECT_EQ(silent.status, 0);
    EXPECT_THAT(silent.out, IsEmpty());
}

TEST_F(LogTail, PrintsTheLastLinesOnly) {
    EXPECT_EQ(run.moxctl({"log", "tail", "-n", "1"}).out, third);
    EXPECT_THAT(run.moxctl({"log", "tail", "-n", "0"}).out, IsEmpty());
}

TEST_F(LogTail, LeavesOutWhatIsLessSevere) {
    EXPECT_EQ(run.moxctl({"log", "tail", "--level", "error"}).out, third);
    EXPECT_EQ(run.moxctl({"log", "tail", "--level", "info"}).out, std::string(first) + third);
}

TEST_F(LogTail, PrintsTheLinesOfOneFeature) {
    EXPECT_EQ(run.moxctl({"log", "tail", "--feature", "0x2002a"}).out, second);
    EXPECT_EQ(run.moxctl({"log", "tail", "--feature", "0"}).out, third);
}

TEST_F(LogTail, IsAListWithSchema) {
    const Json list = run.json({"log", "tail"});
    EXPECT_EQ(list.at("schema"), "moxctl.log.1");
    ASSERT_EQ(list.at("lines").size(), 3U);
    EXPECT_EQ(list.at("lines").at(0), Json({{"time", "2026-01-01T00:00:00.000001Z"},
                                            {"level", "info"},
                                            {"node", "1011"},
                                            {"process", "Fan"},
                                            {"pid", 10},
                                            {"feature", "0x20001"},
                                            {"domain", ""},
                                            {"text", "one: two  three"}}));
    EXPECT_EQ(list.at("lines").at(1).at("domain"), "HWAPI");
}

TEST_F(LogTail, GivesProgramsTheTextAsItWasLogged) {
    const std::string text = R"(a\nb\tc\rd\\e\x1Bf\q\x1\)";
    append("Srv.log", "2026-01-01T00:00:00.000009Z INF 1011 Srv[12] 00000000 -: " + text + "\n");
    EXPECT_THAT(run.moxctl({"log", "tail", "Srv"}).out, HasSubstr(text));
    EXPECT_EQ(run.json({"log", "tail", "Srv"}).at("lines").at(0).at("text"), "a\nb\tc\rd\\e\x1B"
                                                                             "f\\q\\x1\\");
}

TEST_F(LogTail, LeavesOutALineThatIsNotComplete) {
    append("Led.log", "2026-01-01T00:00:00.000004Z INF 1011 Led[11] 0002002a HWAPI: tur");
    EXPECT_EQ(run.moxctl({"log", "tail", "Led"}).out, second);
}

TEST_F(LogTail, BeginsWithTheFileThatWasRenamed) {
    std::filesystem::rename(run.path() + "/nodes/1011/log/Fan.log", run.path() + "/nodes/1011/log/Fan.1.log");
    const std::string later = "2026-01-01T00:00:00.000005Z INF 1011 Fan[10] 00000000 -: later\n";
    append("Fan.log", later);
    EXPECT_EQ(run.moxctl({"log", "tail", "Fan"}).out, first + (third + later));
}

TEST_F(LogTail, FollowsWhatIsAddedAlsoBehindARename) {
    RunningCommand sut(moxctlWords({"log", "tail", "-f", "--json", "--level", "info"}), run.setting());
    sut.waitForOut("stuck");
    append("Led.log", "2026-01-01T00:00:01.000000Z DBG 1011 Led[11] 0002002a HWAPI: too low\n");
    append("Led.log", "2026-01-01T00:00:02.000000Z INF 1011 Led[11] 0002002a HWAPI: half a ");
    append("Led.log", "line\n");
    sut.waitForOut("half a line");
    std::filesystem::rename(run.path() + "/nodes/1011/log/Fan.log", run.path() + "/nodes/1011/log/Fan.1.log");
    append("Fan.log", "2026-01-01T00:00:03.000000Z INF 1011 Fan[10] 00000000 -: in the new file\n");
    sut.waitForOut("in the new file");
    append("Srv.log", "2026-01-01T00:00:04.000000Z INF 1011 Srv[12] 00000000 -: first of all\n");
    sut.waitForOut("first of all");
    sut.signal(SIGINT);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 130);
    std::vector<std::string> texts;
    for (const Json& line : jsonLines(result.out)) {
        texts.push_back(line.at("text"));
    }
    EXPECT_THAT(texts, ElementsAre("one: two  three", "stuck", "half a line", "in the new file", "first of all"));
}

TEST(LogTailOfAService, HoldsWhatItLogs) {
    const SimulatedRun run;
    run.up();
    run.moxctl({"msg", "send", "Echo", "0x7777"});
    run.moxctl({"msg", "request", "Echo", "0601"}); // answered after the message before was handled
    const std::string text = run.moxctl({"log", "tail", "Echo", "--level", "warning"}).out;
    EXPECT_THAT(text, HasSubstr("Unknown message received: id=0x7777"));
    const Json lines = run.json({"log", "tail", "Echo", "--feature", "ECHO"}).at("lines");
    EXPECT_EQ(lines.back().at("process"), "Echo");
    EXPECT_EQ(lines.back().at("feature"), "0x20105");
}

} // namespace
} // namespace mox::testing
