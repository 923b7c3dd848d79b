#include <gtest/gtest.h>
#include <host/run/Clock.hpp>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace mox::host {
namespace {

constexpr std::uint64_t ms = 1'000'000;

/// Something that a test waits on, as its author would write it.
struct Gate {
    std::mutex mutex;
    std::condition_variable condition;
    bool open = false;

    bool waitUntilOpen(std::uint64_t deadlineNs) {
        std::unique_lock<std::mutex> lock(mutex);
        return waitUntil(condition, lock, deadlineNs, [this] { return open; });
    }
    void release() {
        const std::lock_guard<std::mutex> guard(mutex);
        open = true;
        condition.notify_all();
    }
};

class WithManualClock : public ::testing::Test {
protected:
    void SetUp() override { ManualClock::enable(); }
    void TearDown() override { ManualClock::disable(); }
};

TEST(Clock, ShowsTheKernelsTimeWhileTheManualClockIsOff) {
    const std::uint64_t before = realMonotonicNs();
    const std::uint64_t shown = monotonicNs();
    EXPECT_LE(before, shown);
    EXPECT_LE(shown, realMonotonicNs());
}

TEST(Clock, EndsAWaitAtItsRealDeadline) {
    Gate gate;
    const std::uint64_t deadline = deadlineIn(5 * ms);
    EXPECT_FALSE(gate.waitUntilOpen(deadline));
    EXPECT_GE(monotonicNs(), deadline);
}

TEST(Clock, EndsAWaitWithItsCondition) {
    Gate gate;
    std::thread waiter([&] { EXPECT_TRUE(gate.waitUntilOpen(noDeadline)); });
    gate.release();
    waiter.join();
}

TEST(Clock, SleepsAtLeastAsLongAsAsked) {
    const std::uint64_t before = realMonotonicNs();
    sleepFor(2 * ms);
    EXPECT_GE(realMonotonicNs() - before, 2 * ms);
}

TEST(Clock, AddsUpToADeadlineThatNeverComes) {
    EXPECT_EQ(deadlineIn(noDeadline), noDeadline);
    EXPECT_EQ(deadlineIn(noDeadline - 1), noDeadline);
}

TEST_F(WithManualClock, TimeStandsStillUntilItIsMoved) {
    const std::uint64_t begin = monotonicNs();
    EXPECT_EQ(monotonicNs(), begin);
    ManualClock::advance(17);
    EXPECT_EQ(monotonicNs(), begin + 17);
    ManualClock::advanceMs(3);
    EXPECT_EQ(monotonicNs(), begin + 17 + 3 * ms);
}

TEST_F(WithManualClock, UtcMovesAlongFromWhereItWasSet) {
    ManualClock::setUtc(1'000'000'000'000'000'000);
    EXPECT_EQ(utcNs(), 1'000'000'000'000'000'000U);
    ManualClock::advanceMs(1);
    EXPECT_EQ(utcNs(), 1'000'000'000'001'000'000U);
}

TEST_F(WithManualClock, AWaitEndsWhenItsDeadlineIsReachedAndNotBefore) {
    Gate gate;
    std::atomic<bool> ended{false};
    std::thread waiter([&] {
        EXPECT_FALSE(gate.waitUntilOpen(deadlineIn(10 * ms)));
        ended = true;
    });
    ASSERT_TRUE(ManualClock::awaitWaits(1));
    ManualClock::advanceMs(9);
    EXPECT_FALSE(ended);
    ManualClock::advanceMs(1);
    waiter.join();
    EXPECT_TRUE(ended);
}

TEST_F(WithManualClock, AWaitEndsWithItsConditionWhileTimeStandsStill) {
    Gate gate;
    std::thread waiter([&] { EXPECT_TRUE(gate.waitUntilOpen(deadlineIn(10 * ms))); });
    ASSERT_TRUE(ManualClock::awaitWaits(1));
    gate.release();
    waiter.join();
}

TEST_F(WithManualClock, EverySleeperWakesAtItsOwnTime) {
    constexpr int sleepers = 8;
    std::atomic<int> awake{0};
    std::vector<std::thread> threads;
    for (int i = 1; i <= sleepers; ++i)
        threads.emplace_back([&awake, i] {
            sleepFor(static_cast<std::uint64_t>(i) * ms);
            ++awake;
        });
    for (int i = 1; i <= sleepers; ++i) {
        ASSERT_TRUE(ManualClock::awaitWaits(static_cast<std::size_t>(sleepers - i + 1)));
        ManualClock::advanceMs(1);
        threads[static_cast<std::size_t>(i - 1)].join();
        EXPECT_EQ(awake, i);
    }
}

TEST_F(WithManualClock, WaitsGoOnByTheKernelsTimeWhenItIsSwitchedOff) {
    Gate gate;
    std::thread waiter([&] { EXPECT_FALSE(gate.waitUntilOpen(deadlineIn(1 * ms))); });
    ASSERT_TRUE(ManualClock::awaitWaits(1));
    ManualClock::disable();
    waiter.join();
}

TEST_F(WithManualClock, StopsAtEveryDeadlineOfAFollower) {
    const std::uint64_t begin = monotonicNs();
    std::vector<std::uint64_t> stops;
    std::uint64_t next = begin + 10;
    const int follower = ManualClock::addFollower({[&] { return next; },
                                                   [&] {
                                                       stops.push_back(monotonicNs() - begin);
                                                       if (next == monotonicNs())
                                                           next += 10;
                                                   }});
    ManualClock::advance(35);
    ManualClock::removeFollower(follower);
    ManualClock::advance(100);
    EXPECT_EQ(stops, (std::vector<std::uint64_t>{10, 20, 30, 35}));
}

TEST_F(WithManualClock, SaysWhenNobodyWaits) {
    EXPECT_FALSE(ManualClock::awaitWaits(1, 1));
}

TEST(SteadyTime, StaysWithinWhatTheCLibrarysTimeHolds) {
    constexpr std::uint64_t second = 1'000'000'000;
    const auto seconds = [](std::uint64_t deadlineNs, std::size_t bytes) {
        return std::chrono::duration_cast<std::chrono::seconds>(steadyTime(deadlineNs, bytes).time_since_epoch())
            .count();
    };
    for (const std::size_t bytes : {std::size_t{4}, std::size_t{8}}) {
        EXPECT_EQ(seconds(0, bytes), 0);
        EXPECT_EQ(seconds(INT32_MAX * second - 1, bytes), INT32_MAX - 1);
    }
    EXPECT_EQ(seconds(UINT32_MAX * second, 4), INT32_MAX);
    EXPECT_EQ(seconds(noDeadline, 4), INT32_MAX);
    EXPECT_EQ(seconds(UINT32_MAX * second, 8), UINT32_MAX);
    EXPECT_EQ(seconds(noDeadline, 8), INT64_MAX / static_cast<std::int64_t>(second));
}

} // namespace
} // namespace mox::host
