#include "BadDatagrams.hpp"

#include "../run/Clock.hpp"
#include "../run/PlatformLog.hpp"

#include <atomic>

namespace mox::host {

namespace {

constexpr std::uint64_t quietNs = 1'000'000'000;
std::atomic<std::uint64_t> g_dropped{0};
std::atomic<std::uint64_t> g_quietUntil{0};

} // namespace

void dropBadDatagram(const char* reason) {
    const std::uint64_t dropped = g_dropped.fetch_add(1, std::memory_order_relaxed) + 1;
    const std::uint64_t now = realMonotonicNs();
    std::uint64_t until = g_quietUntil.load(std::memory_order_relaxed);
    if (now >= until && g_quietUntil.compare_exchange_strong(until, now + quietNs)) {
        logPlatform(3, "datagram dropped: %s (%llu dropped so far)", reason, static_cast<unsigned long long>(dropped));
    }
}

std::uint64_t droppedDatagrams() {
    return g_dropped.load(std::memory_order_relaxed);
}

} // namespace mox::host
