#pragma once
/// The platform's clock, and the manual clock that a test puts in its place.
///
/// Everything in the platform that measures or waits asks here: timers, sleeps, ticks, time limits of receives. While
/// the manual clock is off, reading costs one predicted branch and the kernel's clock. While it is on, time stands
/// still until ManualClock::advance.
///
/// A wait with a time limit on whatever its author sleeps on (futex, eventfd, poll):
///
///     TimedWait limit(monotonicNs() + 5'000'000, [](void* queue) { static_cast<Queue*>(queue)->wake(); }, this);
///     while (!somethingThere() && !limit.expired())
///         sleepOnFutexAtMost(limit.sleepNs());
///
/// and one on a condition variable: waitUntil().
#include <time.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

namespace mox::host {

/// A deadline that never comes; also the answer of TimedWait::sleepNs for "until woken".
constexpr std::uint64_t noDeadline = UINT64_MAX;

namespace detail {
class ConditionWait;
inline std::atomic<bool> manualClockOn{false};
inline std::atomic<std::uint64_t> manualMonotonicNs{0};
inline std::atomic<std::int64_t> manualUtcMinusMonotonicNs{0};

inline std::uint64_t readClock(clockid_t clock) noexcept {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}
} // namespace detail

/// The kernel's monotonic clock in nanoseconds, whatever the manual clock shows. Any thread.
inline std::uint64_t realMonotonicNs() noexcept {
    return detail::readClock(CLOCK_MONOTONIC);
}

/// Monotonic time in nanoseconds since some moment before the process began. Any thread. Does not block.
inline std::uint64_t monotonicNs() noexcept {
    if (__builtin_expect(detail::manualClockOn.load(std::memory_order_acquire), 0))
        return detail::manualMonotonicNs.load(std::memory_order_acquire);
    return realMonotonicNs();
}

/// UTC in nanoseconds since 1970, without the node's offset (see AaUtcTimeSet). Any thread. Does not block.
inline std::uint64_t utcNs() noexcept {
    if (__builtin_expect(detail::manualClockOn.load(std::memory_order_acquire), 0))
        return monotonicNs() +
               static_cast<std::uint64_t>(detail::manualUtcMinusMonotonicNs.load(std::memory_order_acquire));
    return detail::readClock(CLOCK_REALTIME);
}

/// A deadline that lies `durationNs` ahead; noDeadline when that is beyond the clock's range.
inline std::uint64_t deadlineIn(std::uint64_t durationNs) noexcept {
    const std::uint64_t now = monotonicNs();
    return durationNs >= noDeadline - now ? noDeadline : now + durationNs;
}

/// A deadline as condition variables take it. One beyond the range of the C library's time, which ends 68 years after
/// the start of the clock where it has 32 bits, becomes the last moment within: whoever waits then looks again.
/// @param bytesOfTime  of the C library's time
inline std::chrono::steady_clock::time_point steadyTime(std::uint64_t deadlineNs,
                                                        std::size_t bytesOfTime = sizeof(time_t)) noexcept {
    constexpr std::uint64_t end32 = std::uint64_t{INT32_MAX} * 1'000'000'000U;
    const std::uint64_t last = bytesOfTime == 4 ? end32 : std::uint64_t{INT64_MAX};
    return std::chrono::steady_clock::time_point(
        std::chrono::nanoseconds(static_cast<std::int64_t>(deadlineNs < last ? deadlineNs : last)));
}

/// One wait of one thread with a time limit. Costs nothing but the clock's reads while the manual clock is off; while
/// it is on, the wait is known to the clock, which calls back when the deadline has come. Built, used and destroyed
/// by the waiting thread.
class TimedWait {
public:
    /// Called by the thread that moves the manual clock. Must leave a mark that the wait sees also when it begins to
    /// sleep only afterwards (a futex word, an eventfd), and must not call TimedWait or ManualClock.
    using Wake = void (*)(void* context);

    /// @param deadlineNs  as monotonicNs() shows it; noDeadline: no limit
    TimedWait(std::uint64_t deadlineNs, Wake onDeadline, void* context) noexcept
        : m_deadlineNs(deadlineNs), m_wake(onDeadline), m_context(context) {}
    /// Returns only when no `wake` of this wait is running or can begin. Locks that `wake` takes must not be held.
    ~TimedWait() {
        if (m_listed)
            leave();
    }
    TimedWait(const TimedWait&) = delete;
    TimedWait& operator=(const TimedWait&) = delete;

    /// Whether the deadline has come.
    bool expired() const noexcept { return m_deadlineNs != noDeadline && monotonicNs() >= m_deadlineNs; }

    /// How long to sleep at most before the next look at expired(). Locks that `wake` takes must not be held.
    /// @return nanoseconds; 0 when expired; noDeadline: until woken
    std::uint64_t sleepNs();

    std::uint64_t deadlineNs() const noexcept { return m_deadlineNs; }
    /// Ends the sleep, for another look.
    void wake() { m_wake(m_context); }

private:
    friend class detail::ConditionWait;
    void join();
    void leave();

    const std::uint64_t m_deadlineNs;
    const Wake m_wake;
    void* const m_context;
    bool m_listed = false;
};

/// The clock of a test. Any thread; moves are made one after the other.
class ManualClock {
public:
    /// Stops the time at what monotonicNs() and utcNs() show now. A wait that began before ends at its real deadline
    /// and then looks again.
    static void enable();
    /// Returns to the kernel's clock; wakes all waits, which then look again.
    static void disable();
    static bool enabled() noexcept { return detail::manualClockOn.load(std::memory_order_acquire); }

    /// Moves the time forward. It stops on the way at every deadline that is known, in order: timers that are due have
    /// been sent, and their call-backs have returned, before it goes on. Threads that are merely woken may see a later
    /// time than their deadline. Must not be called by a timer's call-back.
    static void advance(std::uint64_t ns);
    static void advanceMs(std::uint64_t ms) { advance(ms * 1'000'000U); }

    /// Sets what utcNs() shows now; it goes on with the manual clock. @param ns  since 1970
    static void setUtc(std::uint64_t ns);

    /// Blocks in real time until at least `count` waits with a deadline stand still.
    /// @return false when `limitMs` of real time have passed before
    static bool awaitWaits(std::size_t count, std::uint64_t limitMs = 10'000);

    /// Something that has deadlines of its own, beside the waits of threads.
    struct Follower {
        /// When it is due next; noDeadline: never.
        std::function<std::uint64_t()> nextDeadline;
        /// Called by the thread that moves the clock, at each stop and when the clock is switched on or off; returns
        /// when what was due has been done.
        std::function<void()> follow;
    };
    /// @return a number for removeFollower
    static int addFollower(Follower follower);
    /// Returns when the follower is not running and will not be called again.
    static void removeFollower(int number);
};

namespace detail {
/// One wait on a condition variable that the manual clock can end; see waitUntil.
class ConditionWait {
public:
    ConditionWait(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, std::uint64_t deadlineNs);
    ~ConditionWait();
    ConditionWait(const ConditionWait&) = delete;
    ConditionWait& operator=(const ConditionWait&) = delete;
    /// @return false when the deadline has come. Sleeps at most once.
    bool sleep();

private:
    static void wake(void* self);

    std::condition_variable& m_condition;
    std::unique_lock<std::mutex>& m_lock;
    const std::uint64_t m_deadlineNs;
    TimedWait m_limit;
};
} // namespace detail

/// Waits on a condition variable until `predicate()` holds or the deadline has come.
/// @param lock        held by the caller, also on return; released meanwhile
/// @param deadlineNs  as monotonicNs() shows it, or noDeadline
/// @return predicate()
template <class Predicate>
bool waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, std::uint64_t deadlineNs,
               Predicate predicate) {
    if (predicate())
        return true;
    detail::ConditionWait wait(condition, lock, deadlineNs);
    while (!predicate())
        if (!wait.sleep())
            return predicate();
    return true;
}

/// Sleeps for so long by the platform's clock, without drift or early return.
void sleepFor(std::uint64_t ns);

} // namespace mox::host
