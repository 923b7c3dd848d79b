/// Messages between two services of one process, each with its own message loop: created, sent, dispatched to a
/// delegate, destroyed. Beside it the limits of the machine and other libraries' queues and actors.
#include "InProcessCases.hpp"

using namespace mox::bench;

namespace {

constexpr int oneCore = 1;

void addGoals(Suite& suite, bool twoCores) {
    if (!twoCores) {
        suite.goal("round trip p50 [us]", "libMOX", Goal::atMost, 1.05, "futex");
        return;
    }
    suite.goal("round trip p50 [us]", "libMOX", Goal::atMost, 2, "spin");
    suite.goal("one way, 1 producer [M/s]", "libMOX", Goal::atLeast, 4, "CAF detached actors");
    suite.goal("one way, 4 producers [M/s]", "libMOX", Goal::atLeast, 2.8, "CAF detached actors");
    suite.goal("one way, 1 producer [M/s]", "libMOX", Goal::atLeast, 1.1, "moodycamel blocking queue");
}

bool idle(bool twoCores) {
    Suite suite(twoCores ? "in process, two cores" : "in process, one core");
    const int cpu = twoCores ? -1 : oneCore;
    const Placement placement{twoCores, false};
    suite.add(
        "futex", [=] { return futexRoundTrips(placement); }, cpu);
    if (twoCores) {
        suite.add(
            "spin", [=] { return spinRoundTrips(placement); }, cpu);
    }
    suite.add(
        "moodycamel blocking queue", [=] { return moodycamel(placement); }, cpu);
    suite.add(
        "CAF detached actors", [=] { return cafActors(placement); }, cpu);
    suite.add(
        "libMOX", [=] { return services(placement); }, cpu);
    addGoals(suite, twoCores);
    return suite.run();
}

bool loaded(bool twoCores) {
    Suite suite(twoCores ? "in process, two cores, a competitor on each" : "in process, one core, a competitor on it");
    const int cpu = twoCores ? -1 : oneCore;
    const Placement placement{twoCores, true};
    suite.add(
        "futex", [=] { return futexRoundTrips(placement); }, cpu);
    suite.add(
        "libMOX", [=] { return services(placement); }, cpu);
    suite.goal("round trip p50 [us]", "libMOX", Goal::atMost, 1.1, "futex");
    suite.goal("round trip p99 [us]", "libMOX", Goal::atMost, 1.35, "futex");
    return suite.run();
}

} // namespace

int main() {
    const bool held[] = {idle(true), idle(false), loaded(true), loaded(false)};
    return held[0] && held[1] && held[2] && held[3] ? 0 : 1;
}
