#pragma once
/// The cases of the in-process suites; each in a source of its own, because the peers' headers are heavy.
#include "harness/Suite.hpp"

#include <unistd.h>

#include <cstdint>
#include <vector>

namespace mox::bench {

/// Where the two ends run, and beside what.
struct Placement {
    bool twoCores; ///< one end on each of two cores; else the case is confined to one
    bool loaded;   ///< a process that computes without rest runs on each core
};

/// Confines the calling thread to its end's core; 0 and 1 are the ends, -1 is anywhere.
inline void place(const Placement& placement, int end) {
    if (placement.twoCores) {
        pin(end);
    }
}

/// Starts the competitors of a loaded case; they die with the case.
void startCompetitors(const Placement& placement);

/// Counts the round trips of a case: some to warm up, some that are measured; under load at least 150 ms of them.
class RoundTrips {
public:
    explicit RoundTrips(const Placement& placement);
    /// Whether another one is to be made; begins it.
    bool next();
    /// The one that was begun has ended.
    void done();
    Samples result();

private:
    const bool m_loaded;
    const int m_warmUp;
    const int m_measured;
    const std::uint64_t m_start;
    int m_count = 0;
    std::uint64_t m_begin = 0;
    std::vector<double> m_ns;
};

/// Messages of a one-way case, all producers together.
constexpr long oneWayMessages = 400000;

Samples futexRoundTrips(Placement placement);
Samples spinRoundTrips(Placement placement);
Samples moodycamel(Placement placement);
Samples cafActors(Placement placement);
Samples services(Placement placement);

} // namespace mox::bench
