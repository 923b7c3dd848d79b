#include "RunOfTwoNodes.hpp"

#include <host/pal/ConfigTools.hpp>

namespace {

using mox::host::Table;
using mox::testing::PeerProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class TagsOfTwoProcesses : public mox::testing::RunOfTwoNodes {
protected:
    void SetUp() override {
        RunOfTwoNodes::SetUp();
        ASSERT_EQ(one("start"), "0 0");
        ASSERT_EQ(two("start"), "0 0");
    }

    PeerProcess one{run, "1011"};
    PeerProcess two{run, "1021"};
};

TEST_F(TagsOfTwoProcesses, AreSeenByTheOtherAsSoonAsTheyArePublished) {
    EXPECT_EQ(two("get app.x"), "none");
    EXPECT_EQ(one("publish app.x 17"), "0");
    EXPECT_EQ(two("get app.x"), "17");
}

TEST_F(TagsOfTwoProcesses, AreNotSharedWhileTheyAreOwnTags) {
    one("own app.x mine");
    EXPECT_EQ(one("get app.x"), "mine");
    EXPECT_EQ(two("get app.x"), "none");
}

TEST_F(TagsOfTwoProcesses, ReachAnObserverWithEachPublicationAlsoOfAnUnchangedValue) {
    ASSERT_EQ(two("register app.x"), "0");
    for (const char* value : {"1", "1", "2", "1"}) {
        one(std::string("publish app.x ") + value);
    }
    EXPECT_THAT(two.told(4), ElementsAre("app.x 1", "app.x 1", "app.x 2", "app.x 1"));
}

TEST_F(TagsOfTwoProcesses, ReachEveryObserverInTheOrderOfPublication) {
    PeerProcess three(run, "1011");
    three("start");
    two("register app.x");
    three("register app.x");
    one("register app.x");
    constexpr std::size_t count = 2000;
    ASSERT_EQ(one("flood app.x " + std::to_string(count)), "0");
    for (PeerProcess* observer : {&one, &two, &three}) {
        const auto told = observer->told(count);
        ASSERT_THAT(told, SizeIs(count));
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(told[i], "app.x " + std::to_string(i));
        }
    }
}

TEST_F(TagsOfTwoProcesses, ReachNobodyAfterHeUnregistered) {
    two("register app.x");
    two("register app.end");
    two("unregister app.x");
    one("publish app.x 1");
    one("publish app.end 1");
    EXPECT_THAT(two.told(1), ElementsAre("app.end 1"));
    EXPECT_EQ(entries(Table::tagObservers), 1u);
}

TEST_F(TagsOfTwoProcesses, ReachSubscriptionsByTheirScope) {
    PeerProcess neighbour(run, "1011");
    neighbour("start");
    ASSERT_EQ(neighbour("subscribe app 1"), "0");
    ASSERT_EQ(two("subscribe app 1"), "0");
    ASSERT_EQ(two("subscribe other 2"), "0");
    ASSERT_EQ(one("subscribe app 0"), "0");
    two("publish app.x fromTwo");
    one("publish app.x fromOne");
    one("publish other.x fromOne");
    EXPECT_THAT(neighbour.told(1), ElementsAre("app.x fromOne"));
    EXPECT_THAT(two.told(2), ElementsAre("app.x fromTwo", "other.x fromOne"));
    EXPECT_THAT(one.told(1), ElementsAre("app.x fromOne"));
}

TEST_F(TagsOfTwoProcesses, ForgetAnObserverThatWasKilled) {
    two("register app.x");
    two("subscribe app 2");
    ASSERT_EQ(entries(Table::tagObservers), 1u);
    ASSERT_EQ(entries(Table::services), 1u);
    two.kill();
    EXPECT_EQ(one("publish app.x 1"), "0");
    EXPECT_EQ(entries(Table::tagObservers), 0u);
    EXPECT_EQ(entries(Table::services), 0u);
}

TEST_F(TagsOfTwoProcesses, AreObservedNoMoreAfterAShutDown) {
    two("register app.x");
    two("subscribe app 2");
    EXPECT_EQ(two("end"), "0");
    EXPECT_EQ(entries(Table::tagObservers), 0u);
    EXPECT_EQ(entries(Table::services), 0u);
}

TEST_F(TagsOfTwoProcesses, KeepAnObserverWhoseExecutionEnvironmentHasNotStartedYet) {
    PeerProcess early(run, "1011");
    ASSERT_EQ(early("early"), "0");
    early("register app.x");
    EXPECT_EQ(one("publish app.x 1"), "0");
    EXPECT_EQ(entries(Table::tagObservers), 1u);
    ASSERT_EQ(early("start"), "0 0");
    one("publish app.x 2");
    EXPECT_THAT(early.told(1), ElementsAre("app.x 2"));
}

TEST_F(TagsOfTwoProcesses, OutliveTheProcessThatPublishedThem) {
    one("publish app.x 5");
    one.kill();
    EXPECT_EQ(two("get app.x"), "5");
    const auto tag = mox::host::getTag(*store(), "app.x");
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->bytes, "5");
}

TEST(AProcess, SaysOnStandardErrorWhyItIsInNoRun) {
    const mox::testing::TemporaryDirectory directory;
    PeerProcess sut(directory / "missing", "1011");
    EXPECT_EQ(sut("start"), "6 -1");
    EXPECT_THAT(sut.errors(), HasSubstr("AaConfigEarlyStartup: " + (directory / "missing")));
}

using ANodeThatIsNone = mox::testing::RunOfTwoNodes;

TEST_F(ANodeThatIsNone, IsNamedOnStandardError) {
    PeerProcess sut(run, "9999");
    EXPECT_EQ(sut("start"), "6 -1");
    EXPECT_THAT(sut.errors(), HasSubstr("9999"));
}

} // namespace
