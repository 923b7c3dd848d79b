#include "host/run/Clock.hpp"

#include <testkit/ManualClock.hpp>

namespace mox::testkit {

ManualClock::ManualClock() {
    host::ManualClock::enable();
}

ManualClock::~ManualClock() {
    host::ManualClock::disable();
}

void ManualClock::advance(std::chrono::nanoseconds time) {
    host::ManualClock::advance(static_cast<std::uint64_t>(time.count()));
}

void ManualClock::setUtc(std::chrono::nanoseconds sinceEpoch) {
    host::ManualClock::setUtc(static_cast<std::uint64_t>(sinceEpoch.count()));
}

bool ManualClock::awaitWaits(std::size_t count, unsigned limitMs) {
    return host::ManualClock::awaitWaits(count, limitMs);
}

} // namespace mox::testkit
