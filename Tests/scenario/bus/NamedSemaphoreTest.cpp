#include "TestRun.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

using mox::testing::Peer;
using mox::testing::secondNode;
using mox::testing::TestRun;

TEST(NamedSemaphoreOfANode, IsSharedByItsProcesses) {
    const TestRun run;
    Peer first(run);
    Peer second(run);
    Peer elsewhere(run, secondNode);
    ASSERT_EQ(first.ask("semopen shared 3"), "0");
    ASSERT_EQ(second.ask("semopen shared 9"), "0");
    ASSERT_EQ(elsewhere.ask("semopen shared 7"), "0");
    EXPECT_EQ(second.ask("semvalue"), "3");
    EXPECT_EQ(elsewhere.ask("semvalue"), "7") << "another node, another semaphore";
    EXPECT_EQ(second.ask("semwait 3"), "0");
    second.start("semwait 2");
    EXPECT_EQ(first.ask("sempost 2"), "0");
    EXPECT_EQ(second.answer(), "0");
    EXPECT_EQ(first.ask("semvalue"), "0");
}

TEST(NamedSemaphoreOfANode, ConservesItsCount) {
    const TestRun run;
    std::vector<std::unique_ptr<Peer>> peers;
    for (int i = 0; i < 4; ++i) {
        peers.push_back(std::make_unique<Peer>(run));
        ASSERT_EQ(peers.back()->ask("semopen flow 0"), "0");
    }
    for (std::size_t i = 0; i < 4; ++i)
        peers[i]->start(i % 2 == 0 ? "sempost 100000" : "semwait 100000");
    for (const auto& peer : peers)
        EXPECT_EQ(peer->answer(), "0");
    EXPECT_EQ(peers[0]->ask("semvalue"), "0");
}

TEST(NamedSemaphoreOfANode, SurvivesAProcessThatDiesWhileItWaits) {
    const TestRun run;
    Peer first(run);
    Peer second(run);
    ASSERT_EQ(first.ask("semopen dying 0"), "0");
    {
        Peer dying(run);
        ASSERT_EQ(dying.ask("semopen dying 0"), "0");
        dying.start("semwait 1");
        ASSERT_EQ(second.ask("semopen dying 0"), "0");
        dying.kill();
    }
    second.start("semwait 1");
    EXPECT_EQ(first.ask("sempost 1"), "0");
    EXPECT_EQ(second.answer(), "0");
    EXPECT_EQ(first.ask("semvalue"), "0");
}

TEST(NamedSemaphoreOfANode, LosesItsNameOnce) {
    const TestRun run;
    Peer first(run);
    Peer second(run);
    ASSERT_EQ(first.ask("semopen gone 1"), "0");
    EXPECT_EQ(second.ask("semunlink gone"), "0");
    EXPECT_EQ(second.ask("semunlink gone"), "4");
    EXPECT_EQ(first.ask("semwait 1"), "0") << "who has it open keeps it";
    ASSERT_EQ(second.ask("semopen gone 5"), "0");
    EXPECT_EQ(second.ask("semvalue"), "5");
    EXPECT_EQ(first.ask("semvalue"), "0");
}
