#include "InRun.hpp"

#include <pal/AaMem.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>

#include <gmock/gmock.h>
#include <host/log/Log.hpp>

#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace mox::testing {
namespace {

using host::faults::Action;
using host::faults::Rule;
using ::testing::ElementsAre;
using Answers = std::vector<std::uint32_t>;

constexpr std::uint32_t ownAddress = 0x10110700;

/// What the function that is used most here answers to several calls. Its own answer is 0x1011.
Answers answersOf(int calls) {
    Answers answers;
    for (int i = 0; i < calls; ++i)
        answers.push_back(AaSysComGetOwnNid());
    return answers;
}

constexpr const char* ownNid = "AaSysComGetOwnNid";

class LogLines {
public:
    LogLines() {
        host::log::setCapture([this](int level, unsigned feature, std::string_view text) {
            if (level == 3 && feature == 0)
                m_lines.emplace_back(text);
        });
    }
    ~LogLines() { host::log::setCapture(nullptr); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    const std::vector<std::string>& get() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

class FaultedCall : public InRun {};

TEST_F(FaultedCall, AnswersFromTheNthOnAsOftenAsPlanned) {
    Rule rule = answering(ownNid, 5);
    rule.first = 2;
    rule.times = 2;
    const auto id = plan(rule);
    EXPECT_THAT(answersOf(5), ElementsAre(0x1011, 5, 5, 0x1011, 0x1011));
    EXPECT_EQ(fault(id).seen, 5U);
    EXPECT_EQ(fault(id).fired, 2U);
}

TEST_F(FaultedCall, AnswersForEverUntilItIsCleared) {
    const auto id = plan(answering(ownNid, 5));
    EXPECT_THAT(answersOf(3), ElementsAre(5, 5, 5));
    faults->clear(id);
    EXPECT_THAT(answersOf(1), ElementsAre(0x1011));
}

TEST_F(FaultedCall, IsCountedAnewByAFaultThatTakesTheRoomOfAnother) {
    faults->clear(plan(answering(ownNid, 5)));
    Rule rule = answering(ownNid, 6);
    rule.first = 2;
    const auto id = plan(rule);
    EXPECT_THAT(answersOf(2), ElementsAre(0x1011, 6));
    EXPECT_EQ(fault(id).seen, 2U);
}

TEST_F(FaultedCall, MeetsTheFaultThatWasPlannedFirst) {
    Rule first = answering(ownNid, 5);
    first.times = 1;
    const auto firstId = plan(first);
    const auto secondId = plan(answering(ownNid, 6));
    EXPECT_THAT(answersOf(2), ElementsAre(5, 6));
    EXPECT_EQ(fault(firstId).fired, 1U);
    EXPECT_EQ(fault(secondId).fired, 1U);
    EXPECT_EQ(fault(secondId).seen, 2U);
}

TEST_F(FaultedCall, BelongsToTheServiceAndNodeThatWereNamed) {
    Rule other = answering(ownNid, 5);
    other.service = "Fa";
    const auto otherService = plan(other);
    other.service = "";
    other.node = 0x1021;
    const auto otherNode = plan(other);
    EXPECT_THAT(answersOf(1), ElementsAre(0x1011));
    EXPECT_EQ(fault(otherService).seen + fault(otherNode).seen, 0U);
    Rule own = answering(ownNid, 7);
    own.service = "Fan";
    own.node = 0x1011;
    plan(own);
    EXPECT_THAT(answersOf(1), ElementsAre(7));
}

TEST_F(FaultedCall, LeavesOtherFunctionsAlone) {
    plan(answering(ownNid, 5));
    EXPECT_EQ(AaSysComSicadGetNid(ownAddress), 0x1011);
    EXPECT_EQ(AaSysComSicadGetCpid(ownAddress), 0x0700);
}

TEST_F(FaultedCall, IsNotMadeByThePlatformItself) {
    const auto id = plan(answering("AaSysLogVPrintE", 1));
    EXPECT_EQ(AaSysLogPrintE(EAaSysLogSeverityLevel_Info, 0, "text"), EAaSysLogRetVal_NoError);
    EXPECT_EQ(fault(id).seen, 0U);
}

TEST_F(FaultedCall, IsAPrintOfTheLogThatDoesNotAppear) {
    const auto id = plan(answering("AaSysLogPrint", 4));
    LogLines lines;
    EXPECT_EQ(AaSysLogPrint(EAaSysLogSeverityLevel_Warning, "text %d", 1), 4);
    EXPECT_THAT(lines.get(), ElementsAre("fault: AaSysLogPrint answers 4 (fault " + std::to_string(id) + ")"));
    plan(with(Action::pass, "AaSysLogPrintE"));
    EXPECT_EQ(AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, 0, "text %d", 2), 0);
    EXPECT_EQ(lines.get().back(), "text 2");
}

TEST_F(FaultedCall, TakesLongerByTheDelay) {
    Rule rule = with(Action::pass, ownNid);
    rule.delayUs = 30'000;
    const auto id = plan(rule);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(answersOf(1), ElementsAre(0x1011));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
    EXPECT_EQ(fault(id).fired, 1U);
}

TEST_F(FaultedCall, IsLoggedOnceASecond) {
    LogLines lines;
    Rule late = answering(ownNid, 5);
    late.delayUs = 2'500;
    const auto first = plan(late);
    answersOf(5);
    const auto second = plan(with(Action::answer, "AaMemUnRef"));
    AaMemUnRef(nullptr);
    EXPECT_THAT(lines.get(), ElementsAre("fault: AaSysComGetOwnNid takes 2500 us longer and answers 5 (fault " +
                                             std::to_string(first) + ")",
                                         "fault: AaMemUnRef is skipped (fault " + std::to_string(second) + ")"));
}

TEST_F(FaultedCall, IsCountedInAllThreads) {
    Rule rule = answering(ownNid, 5);
    rule.first = 101;
    rule.times = 50;
    const auto id = plan(rule);
    std::mutex mutex;
    std::multiset<std::uint32_t> all;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            const Answers answers = answersOf(100);
            const std::lock_guard<std::mutex> guard(mutex);
            all.insert(answers.begin(), answers.end());
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(all.count(5), 50U);
    EXPECT_EQ(all.count(0x1011), 350U);
    EXPECT_EQ(fault(id).seen, 400U);
    EXPECT_EQ(fault(id).fired, 50U);
}

TEST_F(FaultedCall, MeetsPlansThatChangeMeanwhile) {
    std::atomic<bool> ends{false};
    std::thread planner([&] {
        for (int i = 0; i < 200; ++i)
            faults->clear(plan(answering(ownNid, 5)));
        ends = true;
    });
    while (!ends)
        for (const std::uint32_t answer : answersOf(10))
            ASSERT_TRUE(answer == 5 || answer == 0x1011) << answer;
    planner.join();
    EXPECT_THAT(answersOf(1), ElementsAre(0x1011));
}

using FaultedSending = FaultedCall;

/// A message of a size that is used nowhere else, so that its memory comes back for the next one.
void* message() {
    return AaSysComMsgCreate(0x42, 12'345, ownAddress);
}

void* received() {
    return AaSysComMsgReceive(0, 0);
}

TEST_F(FaultedSending, DestroysTheMessage) {
    const std::vector<std::pair<const char*, int (*)(void*)>> senders{
        {"AaSysComMsgSend", [](void* msg) -> int { return AaSysComMsgSend(msg); }},
        {"AaSysComMsgSendS", [](void* msg) -> int { return AaSysComMsgSendS(msg, ownAddress); }},
        {"AaSysComMsgForward", [](void* msg) -> int { return AaSysComMsgForward(msg, ownAddress); }},
        {"AaSysComMsgRelay", [](void* msg) -> int { return AaSysComMsgRelay(msg, ownAddress); }},
        {"AaSysMbPublish", [](void* msg) { return AaSysMbPublish(msg, EAaSysMbPublMode_Node); }}};
    for (const auto& [name, send] : senders) {
        plan(answering(name, 3));
        void* const lost = message();
        EXPECT_EQ(send(lost), 3) << name;
        void* next = message();
        EXPECT_EQ(next, lost) << name << ": the memory is in use";
        AaSysComMsgDestroy(&next);
        EXPECT_EQ(received(), nullptr) << name;
    }
}

TEST_F(FaultedSending, LosesTheMessageWhenStuckAndSucceeds) {
    plan(with(Action::stuck, "AaSysComMsgSend"));
    EXPECT_EQ(AaSysComMsgSend(message()), EAaSysComRetVal_NoError);
    EXPECT_EQ(received(), nullptr);
}

TEST_F(FaultedSending, OnlyComesLateWhenDelayed) {
    Rule rule = with(Action::pass, "AaSysComMsgSend");
    rule.delayUs = 1000;
    plan(rule);
    EXPECT_EQ(AaSysComMsgSend(message()), EAaSysComRetVal_NoError);
    void* arrived = AaSysComMsgReceive(1'000'000, 0);
    ASSERT_NE(arrived, nullptr);
    AaSysComMsgDestroy(&arrived);
}

TEST_F(FaultedCall, LeavesWhatItShouldHaveReleased) {
    plan(answering("AaSysComMsgDestroy", EAaSysComRetVal_Error));
    void* kept = message();
    EXPECT_EQ(AaSysComMsgDestroy(&kept), EAaSysComRetVal_Error);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(AaSysComMsgGetId(kept), 0x42);
    faults->clearAll();
    EXPECT_EQ(AaSysComMsgDestroy(&kept), EAaSysComRetVal_NoError);
}

} // namespace
} // namespace mox::testing
