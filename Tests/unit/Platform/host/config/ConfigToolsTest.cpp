// What tools do with tags and R&D values. The process joins one run, as a tool does, and can do so only once.
#include "RunOfTwoNodes.hpp"

#include <host/bus/Process.hpp>
#include <host/pal/ConfigTools.hpp>
#include <host/run/Run.hpp>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <future>
#include <mutex>

namespace {

using namespace mox::host;
using mox::testing::PeerProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The run of all tests of this executable.
class JoinedRun : public testing::Environment {
public:
    static const std::string& path() {
        static const mox::testing::TemporaryDirectory directory;
        static const std::string run = directory / "run";
        return run;
    }
    void SetUp() override {
        constexpr const char* text = R"({"nodes": [{"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}},
                                                   {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}}]})";
        std::string why;
        ASSERT_TRUE(createRun(path(), text, "board.json", why)) << why;
        ::setenv("MOX_RUN", path().c_str(), 1);
        ::setenv("MOX_NODE", "1021", 1);
        ASSERT_EQ(Run::attach(why), Run::Attach::done) << why;
        startProcess();
    }
};

const auto* const joined = testing::AddGlobalTestEnvironment(new JoinedRun);

/// Publications that a watch has reported.
class Reports {
public:
    TagWatch::Report taker() {
        return [this](const TagPublication& publication) {
            const std::lock_guard lock(m_mutex);
            m_all.push_back(publication.name + " " + showValue(publication.value));
            m_more.notify_all();
        };
    }
    std::vector<std::string> first(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_more.wait_for(lock, std::chrono::seconds(30), [&] { return m_all.size() >= count; });
        return m_all;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_more;
    std::vector<std::string> m_all;
};

class Tools : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(peer("start"), "0 0"); }

    Store& store() { return Run::current()->store(); }

    PeerProcess peer{JoinedRun::path(), "1011"};
    std::string why;
};

TEST_F(Tools, SetTagsThatAllObserversHearOf) {
    peer("register set.x");
    EXPECT_TRUE(setTag("set.x", {ValueType::text, "on"}));
    EXPECT_TRUE(setTag("set.x", {ValueType::text, "on"}));
    EXPECT_THAT(peer.told(2), ElementsAre("set.x on", "set.x on"));
    EXPECT_EQ(getTag(store(), "set.x"), (TypedValue{ValueType::text, "on"}));
    EXPECT_FALSE(setTag("", {ValueType::text, "on"}));
    EXPECT_FALSE(setTag("set.x", {ValueType::text, std::string(maxTagValue + 1, 'x')}));
}

TEST_F(Tools, ListTagsByPrefixAndRemoveThem) {
    setTag("list.b", numberValue(ValueType::u32, 2));
    peer("publish list.a 1");
    setTag("listed", numberValue(ValueType::u32, 3));
    const auto tags = listTags(store(), "list.");
    ASSERT_THAT(tags, SizeIs(2));
    EXPECT_EQ(tags[0].name, "list.a");
    EXPECT_EQ(showValue(tags[0].value), "31");
    EXPECT_EQ(tags[1].name, "list.b");
    EXPECT_EQ(showValue(tags[1].value), "2");
    EXPECT_TRUE(removeTag(store(), "list.a"));
    EXPECT_FALSE(removeTag(store(), "list.a"));
    EXPECT_EQ(peer("get list.a"), "none");
}

TEST_F(Tools, WatchEveryPublicationOfAPrefix) {
    Reports reports;
    const TagWatch sut("watch.", reports.taker());
    ASSERT_TRUE(sut.works());
    peer("publish other 0");
    peer("publish watch.x 1");
    peer("publish watch.x 1");
    peer("publish watch.y 2");
    EXPECT_THAT(reports.first(3), ElementsAre("watch.x 31", "watch.x 31", "watch.y 32"));
}

TEST_F(Tools, WatchNothingAfterTheWatchHasEnded) {
    Reports ended;
    Reports reports;
    { const TagWatch watch("", ended.taker()); }
    const TagWatch sut("", reports.taker());
    peer("publish ended.x 1");
    EXPECT_THAT(reports.first(1), ElementsAre("ended.x 31"));
    EXPECT_THAT(ended.first(0), IsEmpty());
}

TEST_F(Tools, EndAWatchFromItsOwnReport) {
    std::promise<void> done;
    std::mutex mutex; // the report comes on another thread
    std::unique_ptr<TagWatch> sut;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        sut = std::make_unique<TagWatch>("self.", [&](const TagPublication&) {
            std::unique_ptr<TagWatch> ending;
            {
                const std::lock_guard<std::mutex> reporting(mutex);
                ending = std::move(sut);
            }
            ending.reset();
            done.set_value();
        });
    }
    peer("publish self.x 1");
    EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

class ToolsForRad : public Tools {
protected:
    void SetUp() override {
        Tools::SetUp();
        ASSERT_EQ(peer("domain"), "0");
        sut = RadOfNode::open(*Run::current(), 0x1011, why);
        ASSERT_NE(sut, nullptr) << why;
        sut->reset(0x20006);
    }

    std::unique_ptr<RadOfNode> sut;
};

TEST_F(ToolsForRad, ListWhatHasANameOrWasSet) {
    peer("radset 0x40001 8");
    const auto all = sut->list();
    ASSERT_THAT(all, SizeIs(4));
    EXPECT_EQ(all[0].id, 0x20006u);
    EXPECT_EQ(all[0].name, "RESET");
    EXPECT_EQ(all[0].defaultValue, 3u);
    EXPECT_EQ(all[0].value, 3u);
    EXPECT_EQ(all[0].state, rad::State::byDefault);
    EXPECT_EQ(all[3].id, 0x40001u);
    EXPECT_EQ(all[3].name, "");
    EXPECT_EQ(all[3].state, rad::State::set);
    ASSERT_THAT(sut->domains(), SizeIs(1));
    EXPECT_EQ(sut->domains()[0].name, "HWA");
    EXPECT_EQ(sut->domains()[0].room, 0x106u);
}

TEST_F(ToolsForRad, SetAndResetForARunningService) {
    EXPECT_TRUE(sut->set(0x20006, 11));
    EXPECT_EQ(peer("radget 0x20006"), "11");
    EXPECT_TRUE(sut->reset(0x20006));
    EXPECT_EQ(peer("radget 0x20006"), "3");
    EXPECT_FALSE(sut->set(1, 1));
    EXPECT_FALSE(sut->reset(1));
}

TEST_F(ToolsForRad, RefuseANameOfSeveralParametersWithTheirNumbers) {
    const auto request = findRad(*sut, "EAC");
    EXPECT_TRUE(request.ambiguous);
    EXPECT_FALSE(request.parameter);
    EXPECT_EQ(request.why, "'EAC' is the name of several R&D parameters, give a number: 0x20038, 0x200B0");
}

TEST_F(ToolsForRad, FindAParameterByNumberAndByName) {
    ASSERT_TRUE(findRad(*sut, "RESET").parameter);
    EXPECT_EQ(findRad(*sut, "RESET").parameter->id, 0x20006u);
    ASSERT_TRUE(findRad(*sut, "0x200b0").parameter);
    EXPECT_EQ(findRad(*sut, "0x200b0").parameter->name, "EAC");
    ASSERT_TRUE(findRad(*sut, "262145").parameter);
    EXPECT_EQ(findRad(*sut, "262145").parameter->id, 0x40001u);
    EXPECT_FALSE(findRad(*sut, "reset").parameter);
    EXPECT_THAT(findRad(*sut, "6").why, HasSubstr("expected a number with domain 1 to 1023"));
}

TEST_F(ToolsForRad, SayThatThereIsNoSuchNode) {
    EXPECT_EQ(RadOfNode::open(*Run::current(), 0x9999, why), nullptr);
    EXPECT_THAT(why, HasSubstr("no node 0x9999"));
}

} // namespace
