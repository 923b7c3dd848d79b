#include "AdaptiveWait.hpp"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace mox::host {

namespace {

bool wantedByEnvironment() {
    const char* value = std::getenv("MOX_ADAPTIVE_WAIT");
    return value == nullptr || std::strcmp(value, "0") != 0;
}

std::atomic<bool>& flag() {
    static std::atomic<bool> enabled{wantedByEnvironment()};
    return enabled;
}

} // namespace

void AdaptiveWait::setEnabled(bool enabled) {
    flag().store(enabled, std::memory_order_relaxed);
}

bool AdaptiveWait::enabled() {
    return flag().load(std::memory_order_relaxed);
}

} // namespace mox::host
