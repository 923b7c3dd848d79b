#pragma once
/// Side-by-side measurements. Every case runs in a process of its own, so that nothing of one case is left in the next;
/// the cases of a suite take turns over the repetitions, so that the machine's noise hits all alike; medians count.
/// Only ratios taken in one run are fit for goals.
///
///     Suite suite("in process, one core");
///     suite.add("futex", [] { return roundTrips<FutexSlot>(); }, 0);
///     suite.add("libMOX", [] { return serviceRoundTrips(); }, 0);
///     suite.goal("round trip p50", "libMOX", Goal::atMost, 1.05, "futex");
///     return suite.run() ? 0 : 1;
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace mox::bench {

/// What a case has measured: metric with unit -> value.
using Samples = std::vector<std::pair<std::string, double>>;

std::uint64_t nowNs();

/// Confines the calling thread to one processor; -1: to none.
void pin(int cpu);

/// 50th and 99th percentile of durations in nanoseconds, in microseconds.
Samples percentiles(std::vector<double>& ns, const std::string& metric);

Samples operator+(Samples a, const Samples& b);

/// Ends the case with a message.
[[noreturn]] void die(const char* what);

/// A forked helper that dies with its parent.
pid_t spawn(const std::function<void()>& body);
/// Waits for a helper's end.
void reap(pid_t pid);

/// Has the compiler believe that a value is used.
template <typename T>
void keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

enum class Goal { atMost, atLeast };

class Suite {
public:
    explicit Suite(std::string title);

    /// Left out when MOX_BENCH_CASE names another case, as for a profiler's run.
    /// @param cpu  the processor to which the whole case is confined; -1: none
    void add(const std::string& name, std::function<Samples()> body, int cpu = -1);

    /// A limit to hold: the case's metric, divided by the peer's; without a peer, as it is.
    void goal(const std::string& metric, const std::string& name, Goal direction, double limit,
              const std::string& peer = {});

    /// Runs everything (MOX_BENCH_REPETITIONS times, 7 when not set) and prints a table and the goals.
    /// @return whether all goals are held
    bool run();

private:
    struct Case {
        std::string name;
        std::function<Samples()> body;
        int cpu;
        std::map<std::string, std::vector<double>> values;
    };
    struct Limit {
        std::string metric;
        std::string name;
        Goal direction;
        double limit;
        std::string peer;
    };

    void runOnce(Case& one);
    void runInChild(const Case& one, int result);
    double median(const std::string& name, const std::string& metric) const;
    void printTable() const;
    bool printGoals() const;

    const std::string m_title;
    std::vector<Case> m_cases;
    std::vector<std::string> m_metrics;
    std::vector<Limit> m_goals;
};

} // namespace mox::bench
