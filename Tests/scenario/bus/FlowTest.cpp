#include "TestRun.hpp"

#include <gmock/gmock.h>
#include <signal.h>

#include <array>
#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using mox::testing::address;
using mox::testing::Peer;
using mox::testing::TestRun;
using testing::StartsWith;

namespace {

constexpr std::uint16_t firstCpid = 0x0600;

std::vector<std::unique_ptr<Peer>> registeredPeers(const TestRun& run, std::uint16_t count) {
    std::vector<std::unique_ptr<Peer>> peers;
    for (std::uint16_t i = 0; i < count; ++i) {
        peers.push_back(std::make_unique<Peer>(run));
        EXPECT_EQ(peers.back()->ask("register " + std::to_string(firstCpid + i)), std::to_string(firstCpid + i));
    }
    return peers;
}

std::string addressOfPeer(std::size_t index) {
    return address(static_cast<std::uint16_t>(firstCpid + index));
}

struct SendResult {
    int sent = -1;
    int last = -1;
    int ms = -1;
};

SendResult parse(const std::string& text) {
    SendResult result;
    std::istringstream(text) >> result.sent >> result.last >> result.ms;
    return result;
}

} // namespace

TEST(Flow, OfFourProcessesKeepsTheOrderOfEach) {
    const TestRun run;
    const auto peers = registeredPeers(run, 5);
    peers[0]->start("collect 80000 30000000");
    for (std::size_t i = 1; i < 5; ++i)
        peers[i]->start("send " + addressOfPeer(0) + " 1 64 20000");
    for (std::size_t i = 1; i < 5; ++i)
        EXPECT_THAT(peers[i]->answer(), StartsWith("20000 0 "));
    EXPECT_EQ(peers[0]->answer(), "all");
}

TEST(Flow, OfLargeMessagesKeepsTheOrder) {
    const TestRun run;
    const auto peers = registeredPeers(run, 3);
    peers[0]->start("collect 2000 30000000");
    peers[1]->start("send " + addressOfPeer(0) + " 1 65535 1000");
    peers[2]->start("send " + addressOfPeer(0) + " 1 4097 1000");
    EXPECT_THAT(peers[1]->answer(), StartsWith("1000 0 "));
    EXPECT_THAT(peers[2]->answer(), StartsWith("1000 0 "));
    EXPECT_EQ(peers[0]->answer(), "all");
}

class FlowInARing : public testing::TestWithParam<std::uint16_t> {};

TEST_P(FlowInARing, EndsAlthoughEachSendsBeforeItReceives) {
    const TestRun run;
    const auto peers = registeredPeers(run, GetParam());
    for (std::size_t i = 0; i < peers.size(); ++i)
        peers[i]->start("exchange " + addressOfPeer((i + 1) % peers.size()) + " 64 10000");
    for (const auto& peer : peers)
        EXPECT_EQ(peer->answer(), "10000 0 all");
}

INSTANTIATE_TEST_SUITE_P(OfTwoAndThree, FlowInARing, testing::Values(std::uint16_t{2}, std::uint16_t{3}));

TEST(FlowToABusyReceiver, IsKeptForIt) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    peers[0]->start("sleep 3000");
    const SendResult sent = parse(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 10000"));
    EXPECT_EQ(sent.sent, 10000);
    EXPECT_LT(sent.ms, 2900) << "the sender does not wait for the receiver";
    EXPECT_EQ(peers[0]->answer(), "slept");
    EXPECT_EQ(peers[0]->ask("collect 10000 10000000"), "all");
}

TEST(FlowToABusyReceiver, IsKeptForItAlsoWhileACallBackOfItsProcessHangs) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    ASSERT_EQ(peers[0]->ask("observe flow"), "0");
    ASSERT_EQ(peers[1]->ask("publish flow 4 1"), "1");
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 20000"), StartsWith("20000 0 "));
    EXPECT_EQ(peers[0]->ask("seen 0"), "0");
    EXPECT_EQ(peers[0]->ask("collect 20000 10000000"), "all");
    peers[0]->ask("go-on");
    EXPECT_EQ(peers[0]->ask("seen 1"), "1");
}

TEST(FlowToAReceiverThatNaps, KeepsItsOrder) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    peers[0]->start("collect 60000 10000000 200");
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 60000"), StartsWith("60000 0 "));
    EXPECT_EQ(peers[0]->answer(), "all");
}

TEST(FlowToAProcessThatIsStopped, IsToldAsFullAfterTheTimeLimitAndNotBefore) {
    const TestRun run;
    const auto peers = registeredPeers(run, 3);
    peers[0]->signal(SIGSTOP);
    const SendResult sent = parse(peers[1]->ask("fill " + addressOfPeer(0) + " 64 100000"));
    EXPECT_EQ(sent.last, 5);
    EXPECT_GE(sent.ms, 1950);
    EXPECT_LT(sent.ms, 5000);
    EXPECT_THAT(peers[1]->log(), testing::HasSubstr("full"));
    // Nobody else is held up.
    peers[1]->start("fill " + addressOfPeer(0) + " 64 1");
    peers[2]->start("collect 100 10000000");
    EXPECT_EQ(parse(peers[1]->answer()).last, 5);
    const SendResult toOther = parse(peers[1]->ask("send " + addressOfPeer(2) + " 1 64 100"));
    EXPECT_EQ(toOther.sent, 100);
    EXPECT_LT(toOther.ms, 1000);
    EXPECT_EQ(peers[2]->answer(), "all");
    peers[0]->signal(SIGCONT);
    EXPECT_EQ(peers[0]->ask("collect " + std::to_string(sent.sent) + " 10000000"), "all");
}

TEST(FlowToAProcessThatIsStopped, IsToldAsFullNoLaterWhenItsProcessDoesNotListenEither) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    peers[0]->signal(SIGSTOP);
    run.fillRaw("p" + std::to_string(peers[0]->pid()) + ".sock");
    const SendResult sent = parse(peers[1]->ask("fill " + addressOfPeer(0) + " 1000 1000"));
    EXPECT_EQ(sent.last, 5);
    EXPECT_GE(sent.ms, 1950);
    EXPECT_LT(sent.ms, 3500) << "and not as long again for asking the process";
}

TEST(FlowToAProcessThatIsStopped, ArrivesAlthoughItsSenderEnds) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    peers[0]->signal(SIGSTOP);
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 200"), StartsWith("200 0 "));
    std::thread later([&peers] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200)); // long enough to end without having sent
        peers[0]->signal(SIGCONT);
    });
    EXPECT_EQ(peers[1]->end(), 0);
    later.join();
    EXPECT_EQ(peers[0]->ask("collect 200 10000000"), "all");
}

TEST(FlowToAProcessThatIsStopped, IsLostWithItAndToldOf) {
    const TestRun run;
    const auto peers = registeredPeers(run, 2);
    peers[0]->signal(SIGSTOP);
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 200"), StartsWith("200 0 "));
    peers[0]->kill();
    const auto giveUpAt = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    const std::string told = "bytes of messages to 0600.sock of node 1011 are lost: it has ended";
    while (peers[1]->log().find(told) == std::string::npos && std::chrono::steady_clock::now() < giveUpAt)
        std::this_thread::yield();
    EXPECT_THAT(peers[1]->log(), testing::HasSubstr(told));
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 64 1"), StartsWith("0 4 "));
}

TEST(FlowToAReceiverThatNeverReads, IsToldAsFullAndLeavesItsProcessAble) {
    const TestRun run;
    const auto peers = registeredPeers(run, 3);
    ASSERT_EQ(peers[0]->ask("server 0x0680"), "0"); // another execution unit of the process, which answers
    const SendResult sent = parse(peers[1]->ask("fill " + addressOfPeer(0) + " 60000 1000000"));
    EXPECT_EQ(sent.last, 5);
    EXPECT_GE(sent.ms, 1950);
    EXPECT_EQ(peers[2]->ask("pingpong " + address(0x0680) + " 1000"), "played") << "its process goes on";
    EXPECT_EQ(peers[0]->ask("collect " + std::to_string(sent.sent) + " 10000000"), "all");
    EXPECT_THAT(peers[1]->ask("send " + addressOfPeer(0) + " 1 60000 100"), StartsWith("100 0 "))
        << "it is not full any more";
}

TEST(FlowOfPublications, ToAnObserverThatHangsWaitsOutsideOfItsProcessBeforeLong) {
    constexpr int most = 1500; // of 64 KiB
    const TestRun run;
    Peer observer(run);
    Peer publisher(run);
    ASSERT_EQ(observer.ask("observe flow"), "0");
    const std::string fast = publisher.ask("publish flow 65535 " + std::to_string(most));
    EXPECT_LT(std::stoi("0" + fast), most);
    EXPECT_GT(std::stoi("0" + fast), 300);
    EXPECT_THAT(publisher.log(), testing::HasSubstr("did not take the publication"));
    observer.ask("go-on");
    EXPECT_EQ(observer.ask("seen " + fast), fast) << "those that it took are not lost";
    EXPECT_EQ(publisher.ask("publish flow 65535 100"), "100");
    const std::string all = std::to_string(std::stoi("0" + fast) + 100);
    EXPECT_EQ(observer.ask("seen " + all), all) << "and it takes more";
}

TEST(MixedFlow, ThatChangesTheWayToSleepLosesNothing) {
    constexpr int count = 20000;
    const TestRun run;
    const auto peers = registeredPeers(run, 3);
    const std::string to = addressOfPeer(0);
    ASSERT_EQ(peers[0]->ask("local " + to + " " + std::to_string(count) + " 13"), "0");
    ASSERT_EQ(peers[0]->ask("local " + to + " " + std::to_string(count) + " 7"), "0");
    peers[0]->start("collect " + std::to_string(4 * count) + " 20000000");
    peers[1]->start("bursts " + to + " " + std::to_string(count) + " 11");
    peers[2]->start("bursts " + to + " " + std::to_string(count) + " 5");
    EXPECT_EQ(peers[1]->answer(), "sent");
    EXPECT_EQ(peers[2]->answer(), "sent");
    EXPECT_EQ(peers[0]->answer(), "all");
    EXPECT_EQ(peers[0]->ask("receive 1000"), "none");
}
