#include "InProcessCases.hpp"
#include "harness/Competitors.hpp"

#include <concurrentqueue/blockingconcurrentqueue.h>
#include <sched.h>

#include <atomic>
#include <thread>

namespace mox::bench {

namespace {

constexpr std::uint64_t last = UINT64_MAX;
constexpr std::uint64_t loadedNs = 150'000'000;

template <typename Channel>
Samples roundTrips(const Placement& placement) {
    startCompetitors(placement);
    Channel there;
    Channel back;
    std::thread other([&] {
        place(placement, 1);
        for (std::uint64_t sequence = 0; sequence != last;) {
            const Block block = there.pop();
            sequence = block.sequence;
            back.push(block);
        }
    });
    place(placement, 0);
    RoundTrips trips(placement);
    while (trips.next()) {
        there.push(Block{});
        keep(back.pop());
        trips.done();
    }
    Block end;
    end.sequence = last;
    there.push(end);
    keep(back.pop());
    other.join();
    return trips.result();
}

struct BlockingQueue {
    void push(const Block& block) { queue.enqueue(block); }
    Block pop() {
        Block block;
        queue.wait_dequeue(block);
        return block;
    }
    moodycamel::BlockingConcurrentQueue<Block> queue;
};

double oneWay(const Placement& placement, int producers) {
    BlockingQueue queue;
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
                queue.push(block);
            }
        });
    }
    place(placement, producers == 1 ? 1 : -1);
    while (ready < producers) {
        sched_yield();
    }
    std::uint64_t sum = 0;
    const std::uint64_t begin = nowNs();
    go = true;
    for (long n = 0; n < oneWayMessages; ++n) {
        sum += queue.pop().sequence;
    }
    const std::uint64_t end = nowNs();
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (sum != oneWayMessages) {
        die("lost messages");
    }
    return static_cast<double>(oneWayMessages) * 1000 / static_cast<double>(end - begin);
}

} // namespace

void startCompetitors(const Placement& placement) {
    if (!placement.loaded) {
        return;
    }
    for (const int cpu : {0, 1}) {
        spawn([cpu] {
            pin(cpu);
            for (volatile unsigned work = 0;; work = work + 1) {
            }
        });
    }
    usleep(20000); // until the competitors have used up what the scheduler gives newcomers
}

RoundTrips::RoundTrips(const Placement& placement)
    : m_loaded(placement.loaded),
      m_warmUp(placement.loaded ? 20 : 300),
      m_measured(placement.loaded ? 200 : 3000),
      m_start(nowNs()) {
    m_ns.reserve(static_cast<std::size_t>(m_measured) * 64);
}

bool RoundTrips::next() {
    m_begin = nowNs();
    return m_count < m_warmUp + m_measured || (m_loaded && m_begin - m_start < loadedNs);
}

void RoundTrips::done() {
    const std::uint64_t end = nowNs();
    if (++m_count > m_warmUp) {
        m_ns.push_back(static_cast<double>(end - m_begin));
    }
}

Samples RoundTrips::result() {
    return percentiles(m_ns, "round trip");
}

Samples futexRoundTrips(Placement placement) {
    return roundTrips<FutexSlot>(placement);
}

Samples spinRoundTrips(Placement placement) {
    return roundTrips<SpinSlot>(placement);
}

Samples moodycamel(Placement placement) {
    return roundTrips<BlockingQueue>(placement) + Samples{{"one way, 1 producer [M/s]", oneWay(placement, 1)},
                                                          {"one way, 4 producers [M/s]", oneWay(placement, 4)}};
}

} // namespace mox::bench
