#include "TestRun.hpp"

#include <gmock/gmock.h>

#include <string>

using mox::testing::address;
using mox::testing::Peer;
using mox::testing::secondNode;
using mox::testing::TestRun;

namespace {

const std::string watched = address(0x0600);
const std::string up = "link " + watched + " up";
const std::string down = "link " + watched + " down";

class Link : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(watcher.ask("register 0x0700"), std::to_string(0x0700)); }

    std::string watch() { return watcher.ask("link " + watched + " " + address(0x0700)); }
    std::string next() { return watcher.ask("receive 10000000"); }

    TestRun run;
    Peer watcher{run};
};

} // namespace

TEST_F(Link, IsToldWhenItsEndpointAppearsAndGoes) {
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), down);
    Peer server(run);
    for (int i = 0; i < 3; ++i) {
        server.ask("register 0x0600");
        EXPECT_EQ(next(), up);
        server.ask("deregister 0x0600");
        EXPECT_EQ(next(), down);
    }
}

TEST_F(Link, IsToldWhenItsEndpointIsThereAlready) {
    Peer server(run);
    server.ask("register 0x0600");
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), up);
    EXPECT_EQ(server.end(), 0);
    EXPECT_EQ(next(), down);
}

TEST_F(Link, IsToldWhenItsProcessIsKilled) {
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), down);
    for (int i = 0; i < 2; ++i) {
        Peer server(run);
        server.ask("register 0x0600");
        EXPECT_EQ(next(), up);
        server.kill();
        EXPECT_EQ(next(), down);
    }
}

TEST_F(Link, IsToldOfEveryChangeHoweverShort) {
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), down);
    Peer server(run);
    EXPECT_EQ(server.ask("cycles 50 0x0600 0"), "0");
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(next(), up) << i;
        ASSERT_EQ(next(), down) << i;
    }
}

TEST_F(Link, IsToldOfARestartThatTakesNoTime) {
    Peer next1(run);
    Peer next2(run);
    next1.ask("register 0x0600");
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), up);
    next1.kill();
    next2.ask("register 0x0600");
    EXPECT_EQ(next(), down);
    EXPECT_EQ(next(), up);
}

TEST_F(Link, OfAnotherNodeIsToldToo) {
    const std::string far = address(0x0600, secondNode);
    ASSERT_EQ(watcher.ask("link " + far + " " + address(0x0700)), "0");
    EXPECT_EQ(next(), "link " + far + " down");
    Peer server(run, secondNode);
    server.ask("register 0x0600");
    EXPECT_EQ(next(), "link " + far + " up");
    server.kill();
    EXPECT_EQ(next(), "link " + far + " down");
}

TEST_F(Link, IsToldNoMoreOnceItIsGivenUp) {
    ASSERT_EQ(watch(), "0");
    EXPECT_EQ(next(), down);
    EXPECT_EQ(watcher.ask("unlink " + watched + " " + address(0x0700)), "0");
    EXPECT_EQ(watcher.ask("unlink " + watched + " " + address(0x0700)), "6");
    Peer server(run);
    server.ask("register 0x0600");
    EXPECT_EQ(watcher.ask("receive 500000"), "none");
}
