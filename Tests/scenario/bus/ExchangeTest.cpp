#include "TestRun.hpp"

#include <gmock/gmock.h>

#include <string>

using mox::testing::address;
using mox::testing::firstNode;
using mox::testing::Peer;
using mox::testing::secondNode;
using mox::testing::TestRun;
using testing::StartsWith;

namespace {

constexpr std::uint16_t serverCpid = 0x0600;
constexpr std::uint16_t clientCpid = 0x0700;

std::string text(std::uint16_t number) {
    return std::to_string(number);
}

/// What a peer says of a message.
std::string message(int id, const std::string& from, const std::string& to, std::uint32_t size) {
    return "id " + std::to_string(id) + " from " + from + " to " + to + " size " + std::to_string(size) +
           " mef 0 whole";
}

class ExchangeBetweenProcesses : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(server.ask("register " + text(serverCpid)), text(serverCpid));
        ASSERT_EQ(client.ask("register " + text(clientCpid)), text(clientCpid));
    }

    TestRun run;
    Peer server{run};
    Peer client{run};
    const std::string toServer = address(serverCpid);
    const std::string toClient = address(clientCpid);
};

} // namespace

TEST_F(ExchangeBetweenProcesses, KeepsHeaderPayloadAndTrailer) {
    for (const std::uint32_t size : {0U, 1U, 4U, 1024U, 1025U, 4096U, 4097U, 16384U, 65534U, 65535U}) {
        EXPECT_THAT(client.ask("send " + toServer + " 77 " + std::to_string(size)), StartsWith("1 0 "));
        EXPECT_EQ(server.ask("receive 10000000"), message(77, toClient, toServer, size));
        EXPECT_EQ(client.ask("trailer " + toServer + " 78 " + std::to_string(size) + " 4711"), "0");
        EXPECT_EQ(server.ask("receive 10000000"), "id 78 from " + toClient + " to " + toServer + " size " +
                                                      std::to_string(size) + " mef 3 whole crc 4711");
    }
}

TEST_F(ExchangeBetweenProcesses, AnswersComeBack) {
    client.ask("send " + toServer + " 1 8");
    server.ask("receive 10000000");
    EXPECT_EQ(server.ask("reply 2"), "0");
    EXPECT_EQ(client.ask("receive 10000000"), message(2, toServer, toClient, 0));
}

TEST_F(ExchangeBetweenProcesses, ForwardsInTheOwnNameAndRelaysInTheOriginalOne) {
    Peer third(run);
    third.ask("register 0x0800");
    const std::string toThird = address(0x0800);
    client.ask("send " + toServer + " 1 100");
    server.ask("receive 10000000");
    EXPECT_EQ(server.ask("forward " + toThird), "0");
    EXPECT_EQ(third.ask("receive 10000000"), message(1, toServer, toThird, 100));
    client.ask("send " + toServer + " 1 100");
    server.ask("receive 10000000");
    EXPECT_EQ(server.ask("relay " + toThird), "0");
    EXPECT_EQ(third.ask("receive 10000000"), message(1, toClient, toThird, 100));
}

TEST_F(ExchangeBetweenProcesses, ReachesTheOwnNodeUnderItsOtherNames) {
    for (const std::uint16_t node : {std::uint16_t{0}, std::uint16_t{0x0F01}}) {
        EXPECT_THAT(client.ask("send " + address(serverCpid, node) + " 5 4"), StartsWith("1 0 "));
        EXPECT_EQ(server.ask("receive 10000000"), message(5, toClient, address(serverCpid, node), 4));
    }
}

TEST_F(ExchangeBetweenProcesses, ReachesOtherNodesOfTheRun) {
    Peer far(run, secondNode);
    EXPECT_EQ(far.ask("node"), text(secondNode));
    EXPECT_EQ(far.ask("register " + text(serverCpid)), text(serverCpid)) << "each node has CPIDs of its own";
    const std::string toFar = address(serverCpid, secondNode);
    EXPECT_THAT(client.ask("send " + toFar + " 5 4"), StartsWith("1 0 "));
    EXPECT_EQ(far.ask("receive 10000000"), message(5, toClient, toFar, 4));
    EXPECT_EQ(far.ask("reply 6"), "0");
    EXPECT_EQ(client.ask("receive 10000000"), message(6, toFar, toClient, 0));
    EXPECT_EQ(server.ask("receive 0"), "none");
}

TEST_F(ExchangeBetweenProcesses, SelectsAmongWhatIsThereWithoutWaiting) {
    for (const char* id : {"1", "2", "3", "4"})
        EXPECT_THAT(client.ask("send " + toServer + " " + id + " 4"), StartsWith("1 0 "));
    EXPECT_THAT(server.ask("select 0 3"), StartsWith("id 3 "));
    EXPECT_THAT(server.ask("select 0 4"), StartsWith("id 4 "));
    EXPECT_EQ(server.ask("select 0 9"), "none");
    EXPECT_THAT(server.ask("receive 0"), StartsWith("id 1 "));
    EXPECT_THAT(server.ask("receive 0"), StartsWith("id 2 "));
    EXPECT_EQ(server.ask("receive 0"), "none");
}

TEST_F(ExchangeBetweenProcesses, FindsWithoutWaitingWhatCameWhileItsOwnProcessWasTheBusyOne) {
    // Many messages from its own process let the server sleep in the way that suits those.
    EXPECT_EQ(server.ask("send " + toServer + " 1 4 50").substr(0, 5), "50 0 ");
    for (int i = 0; i < 50; ++i)
        ASSERT_THAT(server.ask("receive 1000000"), StartsWith("id 1 "));
    for (int i = 0; i < 100; ++i) {
        ASSERT_THAT(client.ask("send " + toServer + " 2 4"), StartsWith("1 0 "));
        ASSERT_THAT(server.ask("receive 0"), StartsWith("id 2 "));
        ASSERT_THAT(server.ask("send " + toServer + " 1 4 6"), StartsWith("6 0 "));
        for (int own = 0; own < 6; ++own)
            ASSERT_THAT(server.ask("receive 1000000"), StartsWith("id 1 "));
    }
}

TEST_F(ExchangeBetweenProcesses, KeepsTimeLimitsInBothWaysToSleep) {
    for (Peer* sender : {&server, &client, &server}) {
        ASSERT_THAT(sender->ask("send " + toServer + " 1 4 50"), StartsWith("50 0 ")); // decides how the server sleeps
        ASSERT_EQ(server.ask("collect 50 10000000"), "all");
        for (int i = 0; i < 5; ++i) {
            const int ms = std::stoi(server.ask("wait 30000"));
            EXPECT_GE(ms, 29);
            EXPECT_LT(ms, 5000);
        }
        EXPECT_LT(std::stoi(server.ask("wait 0")), 1000);
        EXPECT_LT(std::stoi(server.ask("wait 1")), 1000);
        for (const char* timeout : {"-1", "10000000"}) {
            server.start(std::string("receive ") + timeout);
            EXPECT_THAT(client.ask("send " + toServer + " 9 4"), StartsWith("1 0 "));
            EXPECT_THAT(server.answer(), StartsWith("id 9 "));
        }
    }
}

TEST_F(ExchangeBetweenProcesses, HandsMessagesOfAHopToTheEndpointThatRelaysThem) {
    const std::string far = address(0x0900, 0x7777);
    EXPECT_EQ(client.ask("hop 0x7777 " + toServer), "0");
    EXPECT_THAT(client.ask("send " + far + " 5 4"), StartsWith("1 0 "));
    EXPECT_EQ(server.ask("receive 10000000"), message(5, toClient, far, 4));
    EXPECT_EQ(server.ask("dropped"), "0");
    EXPECT_EQ(client.ask("hop 0x7777 0"), "0");
    EXPECT_THAT(client.ask("send " + far + " 5 4"), StartsWith("0 4 "));
    EXPECT_EQ(client.ask("hop 0 " + toServer), "2");
}

TEST(ExchangeInARunWithALongPath, WorksAsElsewhere) {
    const TestRun run(200);
    ASSERT_GT(run.path().size(), 200U);
    Peer server(run);
    Peer client(run);
    ASSERT_EQ(server.ask("register 0x0600"), std::to_string(0x0600));
    client.ask("register 0");
    server.start("echo 10");
    EXPECT_EQ(client.ask("pingpong " + address(0x0600) + " 10"), "played");
    EXPECT_EQ(server.answer(), "echoed");
}

class ExchangeWithAdaptiveWait : public testing::TestWithParam<const char*> {};

TEST_P(ExchangeWithAdaptiveWait, GivesTheSameResults) {
    const TestRun run;
    Peer server(run, firstNode, {{"MOX_ADAPTIVE_WAIT", GetParam()}});
    Peer client(run, firstNode, {{"MOX_ADAPTIVE_WAIT", GetParam()}});
    server.ask("register 0x0600");
    client.ask("register 0x0700");
    server.start("echo 5000");
    EXPECT_EQ(client.ask("pingpong " + address(0x0600) + " 5000"), "played");
    EXPECT_EQ(server.answer(), "echoed");
    server.start("collect 20000 20000000");
    EXPECT_THAT(client.ask("send " + address(0x0600) + " 1 64 20000"), StartsWith("20000 0 "));
    EXPECT_EQ(server.answer(), "all");
    EXPECT_EQ(server.ask("receive 1000"), "none");
}

INSTANTIATE_TEST_SUITE_P(OnAndOff, ExchangeWithAdaptiveWait, testing::Values("1", "0"));
