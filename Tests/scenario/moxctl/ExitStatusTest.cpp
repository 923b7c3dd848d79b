#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A command that fails on a run whose services do not run.
struct FailureRow {
    Words words;
    int status;
    const char* says;
};

void PrintTo(const FailureRow& row, std::ostream* stream) {
    *stream << row.status;
    for (const std::string& word : row.words) {
        *stream << ' ' << word;
    }
}

class Failing : public ::testing::TestWithParam<FailureRow> {};

TEST_P(Failing, EndsWithItsStatusAndOneLineThatSaysWhy) {
    const SimulatedRun run;
    const CommandResult result = run.moxctl(GetParam().words);
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr(GetParam().says));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

TEST_P(Failing, SaysTheSameAsAnObject) {
    const SimulatedRun run;
    Words words = GetParam().words;
    words.emplace_back("--json");
    const CommandResult result = run.moxctl(words);
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_THAT(result.out, IsEmpty());
    const Json error = Json::parse(result.err).at("error");
    EXPECT_EQ(error.at("status"), GetParam().status);
    EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr(GetParam().says));
}

constexpr int usage = 2;
constexpr int notFound = 3;
constexpr int timeLimit = 124;

INSTANTIATE_TEST_SUITE_P(
    Usage, Failing,
    ::testing::Values(
        FailureRow{{},
                   usage,
                   "expected sim, ps, msg, tag, rad, log, image, fw, id, ddal, flash, completion (see 'moxctl -h')"},
        FailureRow{{"sim"}, usage, "expected new, up, down, reset, status (see 'moxctl sim -h')"},
        FailureRow{{"nothing"}, usage, ", got 'nothing'"}, FailureRow{{"sim", "nothing"}, usage, ", got 'nothing'"},
        FailureRow{{"ps", "list", "more"}, usage, "more"}, FailureRow{{"ps", "list", "--wrong"}, usage, "--wrong"},
        FailureRow{{"--node", "x", "ps", "list"}, usage, "expected 1 to 4 hexadecimal digits"},
        FailureRow{{"sim", "new"}, usage, "DIR"},
        FailureRow{{"sim", "up", "--wait", "-1"}, usage, "--wait: expected seconds from 0 to 1000000"},
        FailureRow{{"msg", "send", "Echo"}, usage, "ID"},
        FailureRow{{"msg", "send", "Echo", "0x10000"}, usage, "message id: expected a number up to 0xFFFF"},
        FailureRow{{"msg", "send", "1011:xyz", "1"}, usage, "address: expected nid:cpid"},
        FailureRow{{"msg", "send", "1011:", "1"}, usage, "address: expected nid:cpid"},
        FailureRow{{"msg", "send", "0x1000000000", "1"}, usage, "address: expected"},
        FailureRow{{"msg", "send", "Echo", "1", "--payload", "0"}, usage, "payload: expected pairs"},
        FailureRow{{"msg", "send", "Echo", "1", "--file", "/no/such/file"}, usage, "/no/such/file"},
        FailureRow{{"msg", "send", "Echo", "1", "--text", "a", "--hex", "00"}, usage, "--text"},
        FailureRow{{"msg", "send", "Echo", "1", "--count", "0"}, usage, "--count: expected a number from 1 to"},
        FailureRow{{"msg", "send", "Echo", "1", "--count", "x"}, usage, "to 4294967295, got 'x'"},
        FailureRow{{"msg", "send", "Echo", "1", "--file", "/dev/zero"}, usage, "at most 65535 bytes, got more"},
        FailureRow{{"msg", "request", "Echo", "1", "--answer", "x"}, usage, "answer's id: expected a number"},
        FailureRow{{"msg", "request", "Echo", "1", "--timeout", "nan"}, usage, "--timeout: expected seconds from 0"},
        FailureRow{{"msg", "monitor", "0x8000"}, usage, "CPID: expected 1 to 0x7FFF"},
        FailureRow{{"tag", "set", "app.x", "1000", "--type", "u8"}, usage, "number of 8 bits"},
        FailureRow{{"tag", "set", "app.x", "1", "--type", "u7"}, usage, "--type"},
        FailureRow{{"rad", "get", "0x1"}, usage, "domain 1 to 1023"},
        FailureRow{{"rad", "set", "0x20001"}, usage, "VALUE or --default"},
        FailureRow{{"rad", "set", "0x20001", "0x100000000"}, usage, "value: expected"},
        FailureRow{{"log", "tail", "--level", "loud"}, usage, "--level"},
        FailureRow{{"log", "tail", "-n", "-1"}, usage, "--lines: expected a number from 0 to"},
        FailureRow{{"completion", "values", "all"}, usage, "expected services"}));

INSTANTIATE_TEST_SUITE_P(
    NotFound, Failing,
    ::testing::Values(FailureRow{{"--node", "2222", "ps", "list"}, notFound, "no node 2222; the run has 1011, 1021"},
                      FailureRow{{"msg", "send", "Echo", "1"}, notFound, "nobody has registered 1011:0600"},
                      FailureRow{{"msg", "send", "Fan", "1"}, notFound, "no service 'Fan' on node 1011 (it has Echo)"},
                      FailureRow{{"msg", "request", "1021:0600", "1"}, notFound, "nobody has registered 1021:0600"},
                      FailureRow{{"msg", "request", "2222:0600", "1"}, notFound, "nobody has registered 2222:0600"},
                      FailureRow{{"tag", "get", "app.none"}, notFound, "no public tag 'app.none'"},
                      FailureRow{{"rad", "get", "NONE"}, notFound, "'NONE' ('moxctl rad list' shows them;"},
                      FailureRow{{"log", "tail", "Fan"}, notFound, "no log of 'Fan' on node 1011"},
                      FailureRow{{"log", "tail", "--feature", "NONE"}, notFound, "NONE"}));

INSTANTIATE_TEST_SUITE_P(
    TimeLimit, Failing,
    ::testing::Values(
        FailureRow{{"tag", "watch", "--count", "1", "--timeout", "0.05", "--quiet"}, timeLimit, "after 0 of 1"},
        FailureRow{
            {"msg", "monitor", "0", "--count", "1", "--timeout", "0.05", "--quiet"}, timeLimit, "after 0 of 1"}));

/// Every verb that needs a run.
class WithoutRun : public ::testing::TestWithParam<Words> {};

TEST_P(WithoutRun, EndsWithStatusFiveAndOneLine) {
    const CommandResult result = moxctlAlone(GetParam());
    EXPECT_EQ(result.status, 5);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "moxctl: no run: give --run DIR or set MOX_RUN ('moxctl sim new DIR' makes one)\n");
}

TEST_P(WithoutRun, EndsWithStatusFiveForADirectoryThatIsNone) {
    Words words = GetParam();
    words.insert(words.end(), {"--run", "/no/such/run"});
    const CommandResult result = moxctlAlone(words);
    EXPECT_EQ(result.status, 5);
    EXPECT_THAT(result.err, HasSubstr("/no/such/run"));
}

INSTANTIATE_TEST_SUITE_P(Moxctl, WithoutRun,
                         ::testing::Values(Words{"sim", "up"}, Words{"sim", "down"}, Words{"sim", "reset"},
                                           Words{"sim", "status"}, Words{"flash", "list"},
                                           Words{"flash", "plan", "none"}, Words{"ps", "list"},
                                           Words{"msg", "send", "Echo", "1"}, Words{"msg", "request", "Echo", "1"},
                                           Words{"msg", "monitor", "0x601"}, Words{"tag", "list"},
                                           Words{"tag", "get", "a"}, Words{"tag", "set", "a", "b"},
                                           Words{"tag", "watch"}, Words{"rad", "list"}, Words{"rad", "get", "a"},
                                           Words{"rad", "set", "a", "1"}, Words{"log", "tail"},
                                           Words{"completion", "values", "tags"}));

} // namespace
} // namespace mox::testing
