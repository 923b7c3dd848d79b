#pragma once
/// How a receiver waits before it sleeps in the kernel. Waking a sleeper costs several microseconds, and tens of them
/// on an idle core; a receiver whose sender is awake on another core gains by staying awake for a moment, one that
/// shares its core with the sender only loses. So the waiter learns: it stays awake at most 50 us, keeps doing so
/// while that pays, halves the time while it does not, then sleeps at once and probes once in 256 waits. A waiter that
/// was woken from its own core does not even probe.
#include "Futex.hpp"

#include <sched.h>

#include <algorithm>
#include <cstdint>
#include <ctime>

namespace mox::host {

class AdaptiveWait {
public:
    /// Switches staying awake on or off for the process; MOX_ADAPTIVE_WAIT=0 in the environment is off. Any thread.
    static void setEnabled(bool enabled);
    static bool enabled();

    /// Waits awake until `ready()` or the time is up. One thread at a time. @return what `ready()` answered last
    template <class Ready>
    bool operator()(Ready&& ready) {
        if (ready()) {
            return true;
        }
        const std::uint64_t limit = timeToStayAwake();
        return limit != 0 && stayAwake(ready, limit);
    }

    /// Tells on which core the sender ran that ended the last sleep.
    void wokenFrom(int core) {
        m_sharesCore = core == sched_getcpu();
        if (m_sharesCore) {
            m_budget = 0;
        }
    }

    /// Real-time threads never stay awake: they would keep the processor from whoever they wait for.
    void forbid() { m_forbidden = true; }

private:
    static constexpr std::uint64_t cap = 50000;
    static constexpr std::uint64_t leastWorthTrying = 4000;
    static constexpr unsigned probeEvery = 256;

    static std::uint64_t now() {
        timespec t{};
        clock_gettime(CLOCK_MONOTONIC, &t);
        return static_cast<std::uint64_t>(t.tv_sec) * 1000000000U + static_cast<std::uint64_t>(t.tv_nsec);
    }

    std::uint64_t timeToStayAwake() {
        if (m_forbidden || m_sharesCore || !enabled()) {
            return 0;
        }
        if (m_budget != 0) {
            return m_budget;
        }
        return ++m_waits % probeEvery == 0 ? cap : 0;
    }

    template <class Ready>
    bool stayAwake(Ready&& ready, std::uint64_t limit) {
        const std::uint64_t begin = now();
        std::uint64_t passed = 0;
        bool isReady = false;
        while (!(isReady = ready()) && passed < limit) {
            cpuRelax();
            passed = now() - begin;
        }
        if (isReady) {
            m_budget = std::min(cap, std::max(m_budget, 4 * passed + 2000));
        } else {
            m_budget = m_budget < leastWorthTrying ? 0 : m_budget / 2;
        }
        return isReady;
    }

    std::uint64_t m_budget = cap;
    unsigned m_waits = 0;
    bool m_forbidden = false;
    bool m_sharesCore = false;
};

} // namespace mox::host
