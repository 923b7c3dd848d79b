#include "host/run/Clock.hpp"

#include <testkit/ManualClock.hpp>

#include <gtest/gtest.h>

namespace mox::testkit {

ManualClock::ManualClock() : m_isFirst(!host::ManualClock::enabled()) {
    if (!m_isFirst)
        ADD_FAILURE() << "a second manual clock is the first one: one at a time";
    host::ManualClock::enable();
}

ManualClock::~ManualClock() {
    if (m_isFirst)
        host::ManualClock::disable();
}

void ManualClock::advance(std::chrono::nanoseconds time) {
    if (time.count() < 0) {
        ADD_FAILURE() << "the clock cannot be moved back by " << -time.count() << " ns";
        return;
    }
    host::ManualClock::advance(static_cast<std::uint64_t>(time.count()));
}

void ManualClock::setUtc(std::chrono::nanoseconds sinceEpoch) {
    host::ManualClock::setUtc(static_cast<std::uint64_t>(sinceEpoch.count()));
}

bool ManualClock::awaitWaits(std::size_t count, unsigned limitMs) {
    if (host::ManualClock::awaitWaits(count, limitMs))
        return true;
    ADD_FAILURE() << "within " << limitMs << " ms there were not " << count << " waits with a deadline at a time";
    return false;
}

} // namespace mox::testkit
