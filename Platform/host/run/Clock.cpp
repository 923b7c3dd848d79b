#include "host/run/Clock.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>
#include <vector>

namespace mox::host {

namespace {

/// What the manual clock knows of. Never destroyed: threads may still wait while the process ends.
struct Registry {
    std::mutex moving; ///< held for a whole move; taken before `mutex`
    std::mutex mutex;  ///< guards `waits`
    std::condition_variable changed;
    std::vector<TimedWait*> waits;
    std::vector<std::pair<int, ManualClock::Follower>> followers; ///< guarded by `moving`
    int nextFollower = 1;

    /// The first deadline that lies ahead.
    std::uint64_t nextDeadline();
    /// Wakes the waits whose deadline has come by `ns`.
    void wake(std::uint64_t ns);
    void follow();
};

Registry& registry() {
    static auto& instance = *new Registry;
    return instance;
}

std::uint64_t Registry::nextDeadline() {
    const std::uint64_t now = monotonicNs();
    std::uint64_t next = noDeadline;
    const auto consider = [&](std::uint64_t deadline) {
        if (deadline > now)
            next = std::min(next, deadline);
    };
    for (const auto& follower : followers)
        consider(follower.second.nextDeadline());
    const std::lock_guard<std::mutex> guard(mutex);
    for (const TimedWait* wait : waits)
        consider(wait->deadlineNs());
    return next;
}

void Registry::wake(std::uint64_t ns) {
    const std::lock_guard<std::mutex> guard(mutex);
    for (TimedWait* wait : waits)
        if (wait->deadlineNs() <= ns)
            wait->wake();
}

void Registry::follow() {
    for (const auto& follower : followers)
        follower.second.follow();
}

} // namespace

std::uint64_t TimedWait::sleepNs() {
    if (ManualClock::enabled() && !m_listed)
        join();
    if (m_deadlineNs == noDeadline)
        return noDeadline;
    const std::uint64_t now = monotonicNs();
    if (now >= m_deadlineNs)
        return 0;
    return m_listed && ManualClock::enabled() ? noDeadline : m_deadlineNs - now;
}

void TimedWait::join() {
    auto& known = registry();
    const std::lock_guard<std::mutex> guard(known.mutex);
    known.waits.push_back(this);
    m_listed = true;
    known.changed.notify_all();
}

void TimedWait::leave() {
    auto& known = registry();
    const std::lock_guard<std::mutex> guard(known.mutex);
    known.waits.erase(std::find(known.waits.begin(), known.waits.end(), this));
}

void ManualClock::enable() {
    auto& known = registry();
    const std::lock_guard<std::mutex> moving(known.moving);
    if (enabled())
        return;
    const std::uint64_t now = realMonotonicNs();
    detail::manualUtcMinusMonotonicNs = static_cast<std::int64_t>(detail::readClock(CLOCK_REALTIME) - now);
    detail::manualMonotonicNs = now;
    detail::manualClockOn = true;
    known.follow();
}

void ManualClock::disable() {
    auto& known = registry();
    const std::lock_guard<std::mutex> moving(known.moving);
    detail::manualClockOn = false;
    known.wake(noDeadline);
    known.follow();
}

void ManualClock::advance(std::uint64_t ns) {
    auto& known = registry();
    const std::lock_guard<std::mutex> moving(known.moving);
    const std::uint64_t target = detail::manualMonotonicNs + ns;
    std::uint64_t stop = 0;
    do {
        stop = std::min(target, known.nextDeadline());
        detail::manualMonotonicNs = stop;
        known.wake(stop);
        known.follow();
    } while (stop != target);
}

void ManualClock::setUtc(std::uint64_t ns) {
    detail::manualUtcMinusMonotonicNs = static_cast<std::int64_t>(ns - monotonicNs());
}

bool ManualClock::awaitWaits(std::size_t count, std::uint64_t limitMs) {
    auto& known = registry();
    std::unique_lock<std::mutex> lock(known.mutex);
    return known.changed.wait_for(lock, std::chrono::milliseconds(limitMs), [&] {
        const std::uint64_t now = monotonicNs();
        const auto standing = std::count_if(known.waits.begin(), known.waits.end(), [now](const TimedWait* wait) {
            return wait->deadlineNs() != noDeadline && wait->deadlineNs() > now;
        });
        return static_cast<std::size_t>(standing) >= count;
    });
}

int ManualClock::addFollower(Follower follower) {
    auto& known = registry();
    const std::lock_guard<std::mutex> moving(known.moving);
    known.followers.emplace_back(known.nextFollower, std::move(follower));
    return known.nextFollower++;
}

void ManualClock::removeFollower(int number) {
    auto& known = registry();
    const std::lock_guard<std::mutex> moving(known.moving);
    const auto end = std::remove_if(known.followers.begin(), known.followers.end(),
                                    [number](const auto& follower) { return follower.first == number; });
    known.followers.erase(end, known.followers.end());
}

namespace detail {

// The clock takes its own lock and then the wait's mutex to wake it: so a wait must join and leave without that mutex.
ConditionWait::ConditionWait(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
                             std::uint64_t deadlineNs)
    : m_condition(condition), m_lock(lock), m_deadlineNs(deadlineNs), m_limit(deadlineNs, &ConditionWait::wake, this) {}

ConditionWait::~ConditionWait() {
    // The members' destructors run with the caller's lock held again; only a known wait needs it open.
    if (m_limit.m_listed) {
        m_lock.unlock();
        m_limit.leave();
        m_limit.m_listed = false;
        m_lock.lock();
    }
}

bool ConditionWait::sleep() {
    if (ManualClock::enabled() && !m_limit.m_listed) {
        m_lock.unlock();
        m_limit.sleepNs();
        m_lock.lock();
        return true;
    }
    if (m_limit.expired())
        return false;
    if (m_deadlineNs == noDeadline || ManualClock::enabled())
        m_condition.wait(m_lock);
    else
        m_condition.wait_until(m_lock, steadyTime(m_deadlineNs));
    return true;
}

void ConditionWait::wake(void* self) {
    auto& wait = *static_cast<ConditionWait*>(self);
    const std::lock_guard<std::mutex> guard(*wait.m_lock.mutex());
    wait.m_condition.notify_all();
}

} // namespace detail

void sleepFor(std::uint64_t ns) {
    const std::uint64_t deadline = deadlineIn(ns);
    if (!ManualClock::enabled()) {
        const auto last = static_cast<std::uint64_t>(steadyTime(deadline).time_since_epoch().count());
        const timespec until{static_cast<time_t>(last / 1'000'000'000U), static_cast<long>(last % 1'000'000'000U)};
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
        }
    }
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock<std::mutex> lock(mutex);
    waitUntil(condition, lock, deadline, [] { return false; });
}

} // namespace mox::host
