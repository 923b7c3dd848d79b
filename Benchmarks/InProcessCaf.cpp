/// Actors with a thread of their own, of the C++ Actor Framework.
#include "InProcessCases.hpp"
#include "harness/Competitors.hpp"

#include <caf/all.hpp>
#include <semaphore.h>

#include <atomic>
#include <thread>

CAF_ALLOW_UNSAFE_MESSAGE_TYPE(mox::bench::Block)

namespace mox::bench {

namespace {

struct Done {
    Done() { sem_init(&semaphore, 0, 0); }
    void post() { sem_post(&semaphore); }
    void wait() {
        while (sem_wait(&semaphore) != 0) {
        }
    }
    sem_t semaphore;
};

Samples roundTrips(caf::actor_system& system, const Placement& placement) {
    Done done;
    RoundTrips trips(placement);
    const auto other = system.spawn<caf::detached>([=](caf::event_based_actor*) -> caf::behavior {
        place(placement, 1);
        return {[](const Block& block) { return block; }};
    });
    system.spawn<caf::detached>([&, other](caf::event_based_actor* self) -> caf::behavior {
        place(placement, 0);
        trips.next();
        self->send(other, Block{});
        return {[&, other, self](const Block& block) {
            trips.done();
            if (trips.next()) {
                self->send(other, block);
                return;
            }
            self->send_exit(other, caf::exit_reason::user_shutdown);
            self->quit();
            done.post();
        }};
    });
    done.wait();
    return trips.result();
}

double oneWay(caf::actor_system& system, const Placement& placement, int producers) {
    Done done;
    long got = 0;
    std::uint64_t end = 0;
    const auto sink =
        system.spawn<caf::detached>([&, placement, producers](caf::event_based_actor* self) -> caf::behavior {
            place(placement, producers == 1 ? 1 : -1);
            return {[&, self](const Block& block) {
                got += static_cast<long>(block.sequence);
                if (got == oneWayMessages) {
                    end = nowNs();
                    self->quit();
                    done.post();
                }
            }};
        });
    std::atomic<int> ready{0};
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < producers; ++i) {
        threads.emplace_back([&] {
            place(placement, producers == 1 ? 0 : -1);
            ++ready;
            while (!go) {
                sched_yield();
            }
            for (long n = 0; n < oneWayMessages / producers; ++n) {
                Block block;
                block.sequence = 1;
                caf::anon_send(sink, block);
            }
        });
    }
    while (ready < producers) {
        sched_yield();
    }
    const std::uint64_t begin = nowNs();
    go = true;
    done.wait();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return static_cast<double>(oneWayMessages) * 1000 / static_cast<double>(end - begin);
}

} // namespace

Samples cafActors(Placement placement) {
    startCompetitors(placement);
    caf::actor_system_config config;
    caf::actor_system system(config);
    Samples samples = roundTrips(system, placement);
    samples.emplace_back("one way, 1 producer [M/s]", oneWay(system, placement, 1));
    samples.emplace_back("one way, 4 producers [M/s]", oneWay(system, placement, 4));
    return samples;
}

} // namespace mox::bench
