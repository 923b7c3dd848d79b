#include "RunOfTwoNodes.hpp"

namespace {

using mox::testing::PeerProcess;

class RadOfARun : public mox::testing::RunOfTwoNodes {};

TEST_F(RadOfARun, IsSharedByTheProcessesOfANodeAndNotByNodes) {
    PeerProcess one(run, "1011");
    PeerProcess neighbour(run, "1011");
    PeerProcess other(run, "1021");
    for (PeerProcess* peer : {&one, &neighbour, &other}) {
        ASSERT_EQ((*peer)("start"), "0 0");
    }
    EXPECT_EQ(one("radset 0x200EC 5"), "0");
    EXPECT_EQ(neighbour("radget 0x200EC"), "5");
    EXPECT_EQ(other("radget 0x200EC"), "0");
}

TEST_F(RadOfARun, KeepsWhatWasSetWhenAServiceStartsAgain) {
    {
        PeerProcess first(run, "1011");
        first("start");
        ASSERT_EQ(first("domain"), "0");
        EXPECT_EQ(first("radget 0x20006"), "3");
        first("radset 0x20006 9");
    }
    PeerProcess again(run, "1011");
    again("start");
    ASSERT_EQ(again("domain"), "0");
    EXPECT_EQ(again("radget 0x20006"), "9");
}

} // namespace
