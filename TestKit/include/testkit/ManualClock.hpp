#pragma once
/// A clock that only the test moves. Everything of the platform in this process measures and waits by it: timers,
/// sleeps, ticks, time limits of receives.
///
///     ManualClock clock;
///     sut.startTimeout(std::chrono::seconds(30));
///     clock.awaitWaits(1);                       // the time-out stands
///     clock.advance(std::chrono::seconds(30));   // due timers have been sent when this returns
///     EXPECT_TRUE(sut.hasTimedOut());
///
/// From its construction to its destruction the platform's time stands still otherwise. One at a time, a second one
/// fails the test; built, used and destroyed by the test's thread. Processes of their own (ChildService) keep the real
/// clock.
#include <chrono>
#include <cstddef>

namespace mox::testkit {

class ManualClock {
public:
    ManualClock();
    ~ManualClock();
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    /// Moves the time forward, stopping at each deadline on the way. A negative time fails the test and moves nothing.
    void advance(std::chrono::nanoseconds time);
    /// Sets the time of day. @param sinceEpoch  since 1970-01-01 00:00 UTC
    void setUtc(std::chrono::nanoseconds sinceEpoch);
    /// Waits in real time until at least so many waits with a deadline stand still.
    /// @return false when the limit has passed first; the test has failed then
    bool awaitWaits(std::size_t count, unsigned limitMs = 10'000);

private:
    bool m_isFirst;
};

} // namespace mox::testkit
