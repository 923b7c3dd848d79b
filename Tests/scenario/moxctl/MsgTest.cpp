#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(MsgRequest, PrintsTheAnswerForAPerson) {
    const SimulatedRun run;
    run.up();
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0601", "--text", "hello, world 12345"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, ::testing::MatchesRegex("0x0602 from 1011:0600 to 1011:8[0-9a-f]{3}, 18 bytes\n"
                                                    "  0000  68 65 6c 6c 6f 2c 20 77 6f 72 6c 64 20 31 32 33  "
                                                    "hello, world 123\n"
                                                    "  0010  34 35 {44}45\n"));
}

struct AddressRow {
    const char* to;
    const char* id;
};

void PrintTo(const AddressRow& row, std::ostream* stream) {
    *stream << row.to << ' ' << row.id;
}

class MsgRequestTo : public ::testing::TestWithParam<AddressRow> {};

TEST_P(MsgRequestTo, ReachesTheSameServiceHoweverItIsWritten) {
    const SimulatedRun run;
    run.up();
    const Json answer = run.json({"msg", "request", GetParam().to, GetParam().id, "--hex", "00 ff"});
    EXPECT_EQ(answer.at("id"), "0x0602");
    EXPECT_EQ(answer.at("sender"), "0x10110600");
    EXPECT_EQ(answer.at("size"), 2);
    EXPECT_EQ(answer.at("payload"), "00ff");
    EXPECT_GT(answer.at("microseconds"), 0);
}

INSTANTIATE_TEST_SUITE_P(Moxctl, MsgRequestTo,
                         ::testing::Values(AddressRow{"Echo", "0x601"}, AddressRow{"Echo", "1537"},
                                           AddressRow{"1011:0600", "0601"}, AddressRow{"0x1011:0x600", "0x0601"},
                                           AddressRow{"0x10110600", "0x601"}, AddressRow{"269551104", "0x601"},
                                           AddressRow{"0x0600", "0x601"}));

TEST(MsgRequest, ReachesTheServiceOfTheNamedNode) {
    const SimulatedRun run;
    run.up();
    EXPECT_EQ(run.json({"msg", "request", "Echo", "0601", "--node", "1021"}).at("sender"), "0x10210600");
}

TEST(MsgRequest, ReachesAServiceWithoutAFixedCpidByItsName) {
    const SimulatedRun run(boardWith({{"Echo", "MOXEchoExe", {}}}));
    const CommandResult before = run.moxctl({"msg", "request", "Echo", "0601"});
    EXPECT_EQ(before.status, 3);
    EXPECT_THAT(before.err, HasSubstr("service 'Echo' of node 1011 has registered no CPID"));
    run.up();
    EXPECT_EQ(run.json({"msg", "request", "Echo", "0601"}).at("sender"), "0x10110600");
}

TEST(MsgRequest, TakesThePayloadFromAFileOrStandardInput) {
    const SimulatedRun run;
    run.up();
    const std::string bytes("a\0b", 3);
    const std::string file = run.directory().write("payload", bytes);
    EXPECT_EQ(run.json({"msg", "request", "Echo", "0601", "--file", file}).at("payload"), "610062");
    auto setting = run.setting();
    setting.input = bytes;
    const CommandResult result =
        runCommand(moxctlWords({"msg", "request", "Echo", "0601", "--file", "-", "--json"}), setting);
    EXPECT_EQ(Json::parse(result.out).at("payload"), "610062");
}

TEST(MsgRequest, CarriesTheLargestPayloadAndRefusesALargerOne) {
    const SimulatedRun run;
    run.up();
    const std::string largest = run.directory().write("largest", std::string(65535, 'x'));
    EXPECT_EQ(run.json({"msg", "request", "Echo", "0601", "--file", largest}).at("size"), 65535);
    const std::string larger = run.directory().write("larger", std::string(65536, 'x'));
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0601", "--file", larger});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("payload: expected at most 65535 bytes, got more"));
}

TEST(MsgRequest, SaysWhyAPayloadCannotBeRead) {
    const SimulatedRun run;
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0601", "--file", run.directory().path()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "moxctl: payload: " + run.directory().path() + ": Is a directory\n");
}

TEST(MsgRequest, AsksAsOftenAsWantedAndPrintsAnObjectALine) {
    const SimulatedRun run;
    run.up();
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0601", "--count", "3", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(jsonLines(result.out).size(), 3U);
}

TEST(MsgRequestForAnAnswer, GoesOnUntilItComesAndPrintsWhatComesBefore) {
    const SimulatedRun run;
    run.up();
    RunningCommand request(
        moxctlWords({"msg", "request", "Echo", "0601", "--answer", "0777", "--timeout", "20", "--json"}),
        run.setting());
    request.waitForOut("}\n");
    const Json first = Json::parse(run.moxctl({"ps", "list", "--json"}).out);
    std::string endpoint;
    for (const Json& process : first.at("processes")) {
        if (process.at("kind") == "other") {
            endpoint = process.at("cpids").at(0).get<std::string>();
        }
    }
    EXPECT_EQ(run.moxctl({"msg", "send", "1011:" + endpoint, "0777"}).status, 0);
    const CommandResult result = request.finish();
    EXPECT_EQ(result.status, 0) << result.err;
    const std::vector<Json> messages = jsonLines(result.out);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages.at(0).at("id"), "0x0602");
    EXPECT_EQ(messages.at(1).at("id"), "0x0777");
}

TEST(MsgRequestForAnAnswer, EndsWithTheTimeLimitWhenOnlyOthersCome) {
    const SimulatedRun run;
    run.up();
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0601", "--answer", "0777", "--timeout", "0.2"});
    EXPECT_EQ(result.status, 124);
    EXPECT_THAT(result.out, HasSubstr("0x0602 from 1011:0600"));
    EXPECT_EQ(result.err, "moxctl: time limit reached: no answer from 1011:0600\n");
}

TEST(MsgRequestWithoutAnswer, EndsWithTheTimeLimit) {
    const SimulatedRun run;
    run.up();
    const CommandResult result = run.moxctl({"msg", "request", "Echo", "0x7777", "--timeout", "0.1"});
    EXPECT_EQ(result.status, 124);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("no answer from 1011:0600"));
}

TEST(MsgRequestWithoutAnswer, CanBeInterrupted) {
    const SimulatedRun run;
    run.up();
    RunningCommand monitor(moxctlWords({"msg", "monitor", "0x0701", "--count", "1"}), run.setting());
    monitor.waitForErr("monitoring");
    RunningCommand sut(moxctlWords({"msg", "request", "1011:0701", "1", "--timeout", "60"}), run.setting());
    monitor.finish(); // the request is on its way, and nobody answers
    sut.signal(SIGINT);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.err, HasSubstr("interrupted"));
}

TEST(MsgMonitor, PrintsWhatArrives) {
    const SimulatedRun run;
    RunningCommand sut(moxctlWords({"msg", "monitor", "0701", "--count", "2"}), run.setting());
    sut.waitForErr("monitoring 1011:0701\n");
    const CommandResult sent = run.moxctl({"msg", "send", "1011:0701", "0x42", "--text", "A", "--from", "1021:0033"});
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, IsEmpty());
    EXPECT_EQ(run.moxctl({"msg", "send", "1011:0701", "0x43", "--node", "1021"}).status, 0);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0x0042 from 1021:0033 to 1011:0701, 1 byte\n"
                          "  0000  41                                               A\n"
                          "0x0043 from 0000:0000 to 1011:0701, 0 bytes\n");
}

TEST(MsgMonitor, PrintsAnObjectALineAsSoonAsAMessageArrives) {
    const SimulatedRun run;
    RunningCommand sut(moxctlWords({"msg", "monitor", "0x0701", "--json"}), run.setting());
    sut.waitForErr("monitoring");
    EXPECT_EQ(run.json({"msg", "send", "1011:0701", "7", "--hex", "0a0b", "--count", "2"}).at("sent"), 2);
    sut.waitForOut("}\n{"); // the second object has begun, and nothing but a signal ends the command
    sut.signal(SIGINT);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 130);
    const auto messages = jsonLines(result.out);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[1].at("id"), "0x0007");
    EXPECT_EQ(messages[1].at("receiver"), "0x10110701");
    EXPECT_EQ(messages[1].at("payload"), "0a0b");
}

TEST(MsgMonitor, EndsInOrderWhenItsTimeIsUp) {
    const SimulatedRun run;
    const CommandResult result = run.moxctl({"msg", "monitor", "0", "--timeout", "0.05"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(run.json({"ps", "list"}).at("processes").size(), 0U);
}

TEST(MsgMonitorOfATakenCpid, NamesWhoHasIt) {
    const SimulatedRun run;
    run.up();
    const CommandResult result = run.moxctl({"msg", "monitor", "0600"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("CPID 0x0600 is taken by process " + std::to_string(run.pidOf("1011", "Echo")) +
                                      " (MOXEchoExe)"));
}

TEST(MsgSendToAKilledService, SaysThatNobodyIsThere) {
    const SimulatedRun run;
    run.up();
    killProcess(run.pidOf("1011", "Echo"));
    const CommandResult result = run.moxctl({"msg", "send", "Echo", "0601"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, HasSubstr("nobody has registered 1011:0600"));
}

} // namespace
} // namespace mox::testing
