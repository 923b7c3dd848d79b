#pragma once
/// Looks at something that tells nobody when it changes, until a limit in real time.
#include <chrono>
#include <thread>

namespace mox::testkit {

constexpr auto pollInterval = std::chrono::microseconds(500);

/// @return whether the condition has come to hold
template <typename Condition>
bool pollFor(unsigned limitMs, Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= limit)
            return condition();
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

} // namespace mox::testkit
