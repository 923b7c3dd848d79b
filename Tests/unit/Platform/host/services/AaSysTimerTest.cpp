#include "InRun.hpp"

#include <pal/AaSysTimer.h>

#include <gmock/gmock.h>
#include <host/pal/Timers.hpp>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

namespace mox::testing {
namespace {

using host::ManualClock;
using ::testing::ElementsAre;

class AaSysTimer : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        m_self = registerSelf();
        ASSERT_NE(AaSysComSicadGetCpid(m_self), 0);
        ManualClock::enable();
    }

    void* message(std::uint16_t id = 0x1234, char content = 'x') const {
        void* made = AaSysComMsgCreate(id, 1, m_self);
        *static_cast<char*>(AaSysComMsgGetPayload(made)) = content;
        AaSysComMsgSetSender(made, 0x00010002);
        return made;
    }
    std::uint32_t start(std::uint32_t timeoutMs, std::uint32_t periodMs, char content = 'x') const {
        std::uint32_t id = 0;
        EXPECT_EQ(AaSysTimermCreate(&id, timeoutMs, periodMs, message(0x1234, content)), 0);
        EXPECT_NE(id, 0U);
        return id;
    }
    /// Contents of the messages that have arrived.
    static std::string received() {
        std::string contents;
        while (void* one = AaSysComMsgReceive(0, 0)) {
            contents += *static_cast<char*>(AaSysComMsgGetPayload(one));
            AaSysComMsgDestroy(&one);
        }
        return contents;
    }

    std::uint32_t m_self = 0;
};

TEST_F(AaSysTimer, SendsTheMessageAfterTheTimeout) {
    start(10, 0);
    ManualClock::advanceMs(9);
    EXPECT_EQ(received(), "");
    ManualClock::advanceMs(1);
    void* got = AaSysComMsgReceive(0, 0);
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(AaSysComMsgGetId(got), 0x1234);
    EXPECT_EQ(AaSysComMsgGetSender(got), 0x00010002U);
    EXPECT_EQ(AaSysComMsgGetReceiver(got), m_self);
    AaSysComMsgDestroy(&got);
    ManualClock::advanceMs(100);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysTimer, SendsAtOnceWithoutTimeout) {
    start(0, 0);
    ManualClock::advance(0);
    EXPECT_EQ(received(), "x");
}

TEST_F(AaSysTimer, SendsCopiesOfAPeriodicMessageUntilItIsDeleted) {
    const std::uint32_t id = start(5, 10);
    ManualClock::advanceMs(4);
    EXPECT_EQ(received(), "");
    ManualClock::advanceMs(1);
    EXPECT_EQ(received(), "x");
    ManualClock::advanceMs(30);
    EXPECT_EQ(received(), "xxx");
    EXPECT_EQ(AaSysTimerDelete(id), 0);
    ManualClock::advanceMs(100);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysTimer, ServesTimersInTheOrderOfTheirDeadlines) {
    start(30, 0, 'c');
    start(10, 0, 'a');
    start(20, 0, 'b');
    ManualClock::advanceMs(30);
    EXPECT_EQ(received(), "abc");
}

TEST_F(AaSysTimer, DoesNotDrift) {
    start(1, 1);
    for (int i = 0; i < 50; ++i)
        ManualClock::advance(20'000'000 - 7);
    EXPECT_EQ(received().size(), 999U);
    ManualClock::advance(50 * 7);
    EXPECT_EQ(received().size(), 1U);
}

TEST_F(AaSysTimer, DeletesATimerWithItsMessage) {
    const std::uint32_t id = start(10, 0);
    EXPECT_EQ(AaSysTimerDelete(id), 0);
    EXPECT_EQ(AaSysTimerDelete(id), EAaSysTimerRetVal_NotFound);
    ManualClock::advanceMs(20);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysTimer, DoesNotKnowAOneShotTimerThatHasExpired) {
    const std::uint32_t id = start(1, 0);
    ManualClock::advanceMs(1);
    EXPECT_EQ(received(), "x");
    void* none = this;
    EXPECT_EQ(AaSysTimerDelete(id), EAaSysTimerRetVal_NotFound);
    EXPECT_EQ(AaSysTimerReset(id), EAaSysTimerRetVal_NotFound);
    EXPECT_EQ(AaSysTimermDelete(id, &none), EAaSysTimerRetVal_NotFound);
    EXPECT_EQ(none, nullptr);
    EXPECT_NE(start(1, 0), id);
}

TEST_F(AaSysTimer, GivesTheMessageBackWhenAsked) {
    void* original = message();
    std::uint32_t id = 0;
    ASSERT_EQ(AaSysTimermCreate(&id, 10, 10, original), 0);
    EXPECT_EQ(AaSysTimermDelete(id, nullptr), EAaSysTimerRetVal_InvalidValue);
    void* back = nullptr;
    EXPECT_EQ(AaSysTimermDelete(id, &back), 0);
    EXPECT_EQ(back, original);
    EXPECT_EQ(AaSysComMsgDestroy(&back), 0);
    ManualClock::advanceMs(20);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysTimer, StartsAnewWhenReset) {
    const std::uint32_t id = start(10, 0);
    ManualClock::advanceMs(9);
    EXPECT_EQ(AaSysTimerReset(id), 0);
    ManualClock::advanceMs(9);
    EXPECT_EQ(received(), "");
    ManualClock::advanceMs(1);
    EXPECT_EQ(received(), "x");
}

TEST_F(AaSysTimer, StartsAPeriodicTimerAnewWithItsTimeout) {
    const std::uint32_t id = start(20, 5);
    ManualClock::advanceMs(27);
    EXPECT_EQ(received(), "xx");
    EXPECT_EQ(AaSysTimerReset(id), 0);
    ManualClock::advanceMs(19);
    EXPECT_EQ(received(), "");
    ManualClock::advanceMs(6);
    EXPECT_EQ(received(), "xx");
}

TEST_F(AaSysTimer, WaitsLongerThan32BitsOfMilliseconds) {
    std::uint32_t id = 0;
    const std::uint64_t sixtyDays = 60ULL * 24 * 3600 * 1000;
    ASSERT_EQ(AaSysTimermCreateLong(&id, sixtyDays, 0, message()), 0);
    ManualClock::advanceMs(sixtyDays - 1);
    EXPECT_EQ(received(), "");
    ManualClock::advanceMs(1);
    EXPECT_EQ(received(), "x");
}

TEST_F(AaSysTimer, AcceptsTheLongestTimeAndKeepsStill) {
    std::uint32_t id = 0;
    ASSERT_EQ(AaSysTimermCreateLong(&id, 1ULL << 53, 1ULL << 53, message()), 0);
    ManualClock::advanceMs(1000);
    EXPECT_EQ(received(), "");
    EXPECT_EQ(AaSysTimerDelete(id), 0);
}

TEST_F(AaSysTimer, LeavesTheMessageWithTheCallerWhenItRefuses) {
    void* kept = message();
    std::uint32_t id = 77;
    EXPECT_EQ(AaSysTimermCreate(nullptr, 1, 0, kept), EAaSysTimerRetVal_InvalidValue);
    EXPECT_EQ(AaSysTimermCreate(&id, 1, 0, nullptr), EAaSysTimerRetVal_InvalidValue);
    EXPECT_EQ(AaSysTimermCreateLong(&id, (1ULL << 53) + 1, 0, kept), EAaSysTimerRetVal_InvalidValue);
    host::setEnvironmentState(host::EnvironmentState::ended);
    EXPECT_EQ(AaSysTimermCreate(&id, 1, 0, kept), EAaSysTimerRetVal_NotStarted);
    EXPECT_EQ(id, 77U);
    EXPECT_EQ(AaSysComMsgDestroy(&kept), 0);
}

struct Calls {
    std::vector<int> order;
    std::uint32_t lastId = 0;
    std::atomic<int> count{0};
};

void countCall(std::uint32_t id, void* argument) {
    auto& calls = *static_cast<Calls*>(argument);
    calls.lastId = id;
    ++calls.count;
}

TEST_F(AaSysTimer, CallsAFunctionWithItsIdAndArgument) {
    Calls calls;
    std::uint32_t id = 0;
    ASSERT_EQ(AaSysTimercCreate(&id, 10, 20, countCall, &calls, EAaSysTimePriority_Normal), 0);
    ManualClock::advanceMs(10);
    EXPECT_EQ(calls.count, 1);
    EXPECT_EQ(calls.lastId, id);
    ManualClock::advanceMs(40);
    EXPECT_EQ(calls.count, 3);
    void* none = nullptr;
    EXPECT_EQ(AaSysTimermDelete(id, &none), EAaSysTimerRetVal_NotFound);
    ManualClock::advanceMs(20);
    EXPECT_EQ(calls.count, 4);
    EXPECT_EQ(AaSysTimerDelete(id), 0);
    ManualClock::advanceMs(100);
    EXPECT_EQ(calls.count, 4);
}

TEST_F(AaSysTimer, RefusesACallBackTimerThatCannotBe) {
    std::uint32_t id = 77;
    const auto normal = EAaSysTimePriority_Normal;
    EXPECT_EQ(AaSysTimercCreate(nullptr, 1, 0, countCall, nullptr, normal), EAaSysTimerRetVal_InvalidValue);
    EXPECT_EQ(AaSysTimercCreate(&id, 1, 0, nullptr, nullptr, normal), EAaSysTimerRetVal_InvalidValue);
    EXPECT_EQ(AaSysTimercCreate(&id, 1, 0, countCall, nullptr, static_cast<EAaSysTimePriority>(3)),
              EAaSysTimerRetVal_InvalidValue);
    EXPECT_EQ(id, 77U);
}

struct Mark {
    std::vector<int>* order;
    int value;
};

TEST_F(AaSysTimer, ServesUrgentCallBacksFirst) {
    std::vector<int> order;
    Mark marks[] = {{&order, 0}, {&order, 1}, {&order, 2}};
    for (Mark& mark : marks) {
        std::uint32_t id = 0;
        const auto call = [](std::uint32_t, void* argument) {
            const Mark& one = *static_cast<Mark*>(argument);
            one.order->push_back(one.value);
        };
        ASSERT_EQ(AaSysTimercCreate(&id, 10, 0, call, &mark, static_cast<EAaSysTimePriority>(mark.value)), 0);
    }
    ManualClock::advanceMs(10);
    EXPECT_THAT(order, ElementsAre(2, 1, 0));
}

TEST_F(AaSysTimer, LetsACallBackDeleteItsOwnTimerAndStartAnother) {
    struct State {
        std::uint32_t second = 0;
        int first = 0;
        int deleted = -1;
        Calls calls;
    } state;
    std::uint32_t id = 0;
    const auto call = [](std::uint32_t own, void* argument) {
        auto& one = *static_cast<State*>(argument);
        ++one.first;
        one.deleted = AaSysTimerDelete(own);
        AaSysTimercCreate(&one.second, 5, 0, countCall, &one.calls, EAaSysTimePriority_High);
    };
    ASSERT_EQ(AaSysTimercCreate(&id, 10, 10, call, &state, EAaSysTimePriority_Low), 0);
    ManualClock::advanceMs(100);
    EXPECT_EQ(state.first, 1);
    EXPECT_EQ(state.deleted, 0);
    EXPECT_EQ(state.calls.count, 1);
    EXPECT_NE(state.second, id);
}

TEST_F(AaSysTimer, DeletesAllTimersAtShutDown) {
    start(10, 10);
    start(1000, 0);
    EXPECT_EQ(host::Timers::instance().count(), 2U);
    AaStartupEeShutdown();
    EXPECT_EQ(host::Timers::instance().count(), 0U);
    std::uint32_t id = 0;
    EXPECT_EQ(AaSysTimercCreate(&id, 1, 0, countCall, nullptr, EAaSysTimePriority_Low), EAaSysTimerRetVal_NotStarted);
}

TEST_F(AaSysTimer, ServesAHundredThousandTimersEachOnceAndInOrder) {
    constexpr std::uint32_t count = 100'000;
    struct Expiry {
        std::vector<std::uint32_t>* order;
        std::uint32_t timeoutMs;
    };
    std::vector<std::uint32_t> order;
    std::vector<Expiry> expiries(count);
    const auto call = [](std::uint32_t, void* argument) {
        const Expiry& one = *static_cast<Expiry*>(argument);
        one.order->push_back(one.timeoutMs);
    };
    for (std::uint32_t i = 0; i < count; ++i) {
        expiries[i] = {&order, i * 7919 % 1000 + 1};
        std::uint32_t id = 0;
        ASSERT_EQ(AaSysTimercCreate(&id, expiries[i].timeoutMs, 0, call, &expiries[i], EAaSysTimePriority_Normal), 0);
    }
    ManualClock::advanceMs(1000);
    EXPECT_EQ(order.size(), count);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(host::Timers::instance().count(), 0U);
}

TEST(NextExpiry, CatchesUpForASecondAndThenGoesOnWithWhatIsToCome) {
    constexpr std::uint64_t second = 1'000'000'000;
    const struct {
        std::uint64_t deadline, period, now, next;
    } table[] = {{100, 10, 100, 110},
                 {100, 10, 155, 110},
                 {100, 10, 110 + second, 110},
                 {100, 10, 111 + second, 120 + second},
                 {100, 10, 119 + second, 120 + second},
                 {0, second, 5 * second + 1, 6 * second}};
    for (const auto& row : table)
        EXPECT_EQ(host::nextExpiry(row.deadline, row.period, row.now), row.next) << row.now;
}

TEST_F(AaSysTimer, KeepsRealTimeWithoutTheManualClock) {
    ManualClock::disable();
    const std::uint64_t begin = host::realMonotonicNs();
    start(20, 0);
    void* got = AaSysComMsgReceive(10'000'000, 0);
    ASSERT_NE(got, nullptr);
    EXPECT_GE(host::realMonotonicNs() - begin, 20'000'000U);
    AaSysComMsgDestroy(&got);
}

TEST_F(AaSysTimer, IsStartedAndDeletedByManyThreads) {
    ManualClock::disable();
    Calls calls;
    std::vector<std::thread> threads;
    std::atomic<int> expired{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (std::uint32_t i = 0; i < 500; ++i) {
                std::uint32_t id = 0;
                ASSERT_EQ(AaSysTimercCreate(
                              &id, i % 3, 0,
                              [](std::uint32_t, void* argument) { ++static_cast<Calls*>(argument)->count; }, &calls,
                              EAaSysTimePriority_Normal),
                          0);
                if (i % 2 == 0 && AaSysTimerDelete(id) == EAaSysTimerRetVal_NotFound)
                    ++expired;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    // What was not deleted expires; what could not be deleted had expired.
    while (host::Timers::instance().count() != 0)
        std::this_thread::yield();
    AaStartupEeShutdown();
    EXPECT_EQ(calls.count, 1000 + expired);
}

} // namespace
} // namespace mox::testing
