/// Two services of this library in one process: each message is created, sent, received by the service's loop,
/// dispatched to the delegate of its id and destroyed by the loop.
#include "InProcessCases.hpp"
#include "harness/TemporaryRun.hpp"

#include <mox/Service.hpp>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaSysCom.h>

#include <sched.h>

#include <atomic>
#include <functional>
#include <memory>

namespace mox::bench {

namespace {

using namespace ps::hwapi::common;

constexpr std::uint16_t blockId = 0x2345;
constexpr std::uint32_t payloadSize = 64;
constexpr std::uint16_t firstOtherId = 0x1000;
constexpr int otherIds = 32;

class Handler : public MsgDelegateBase {
public:
    Handler(std::uint16_t id, std::function<void(void*)> handle) : MsgDelegateBase(id), m_handle(std::move(handle)) {}
    void HandleMessage(void* msg) override { m_handle(msg); }

private:
    const std::function<void(void*)> m_handle;
};

/// A service whose loop runs on an execution unit of the benchmark, as its main one does.
class LoopService : public Service {
public:
    LoopService(const char* name, std::uint16_t cpid, int stateIndex, const Placement& placement, int end)
        : Service(name, cpid, static_cast<ERadHwapi>(0x20000), static_cast<ERadHwapiState>(0x220000 + stateIndex)),
          m_cpid(cpid),
          m_placement(placement),
          m_end(end) {
        AaSemCreateC(&m_ended, 0);
        for (int i = 0; i < otherIds; ++i) {
            handle(static_cast<std::uint16_t>(firstOtherId + 7 * i), [](void*) { die("wrong delegate"); });
        }
    }
    ~LoopService() override { AaSemDestroy(m_ended); }
    void handle(std::uint16_t id, std::function<void(void*)> handler) {
        AddMsgDelegate(std::make_unique<Handler>(id, std::move(handler)));
    }
    void start() {
        LoopService* self = this;
        std::uint32_t id = 0;
        if (AaSysComEuCreateAndStart(&id, GetName().c_str(), loop, 4096, 10, &self, sizeof(self)) != 0) {
            die("execution unit");
        }
        while (!m_ready) {
            sched_yield();
        }
    }
    void awaitEnd() const { AaSemWait(m_ended); }
    std::uint32_t address() const { return AaSysComSicadGet(m_cpid, AaSysComGetOwnNid()); }

private:
    static void* loop(void* argument) {
        LoopService& self = **static_cast<LoopService**>(argument);
        place(self.m_placement, self.m_end);
        self.InitEu();
        self.m_ready = true;
        bool more = true;
        while (more) {
            self.SetServiceStateRad(2);
            more = self.Run();
        }
        AaSemPost(self.m_ended);
        return nullptr;
    }

    const std::uint16_t m_cpid;
    const Placement m_placement;
    const int m_end;
    std::atomic<bool> m_ready{false};
    TAaSem m_ended = nullptr;
};

void post(std::uint32_t receiver, std::uint32_t sender) {
    AaSysComMsgSendS(AaSysComMsgCreate(blockId, payloadSize, receiver), sender);
}

Samples roundTrips(const Placement& placement) {
    LoopService asking("Asking", 0x0601, 0, placement, 0);
    LoopService answering("Answering", 0x0602, 1, placement, 1);
    RoundTrips trips(placement);
    answering.handle(blockId, [&](void*) { post(asking.address(), answering.address()); });
    asking.handle(blockId, [&](void*) {
        trips.done();
        if (trips.next()) {
            post(answering.address(), asking.address());
            return;
        }
        asking.Terminate();
        answering.Terminate();
    });
    answering.start();
    asking.start();
    trips.next();
    post(answering.address(), asking.address());
    asking.awaitEnd();
    post(answering.address(), 0); // its loop ends after the next message
    answering.awaitEnd();
    return trips.result();
}

struct Producer {
    const Placement* placement;
    int count;
    std::uint32_t sink;
    std::atomic<int>* ready;
    std::atomic<bool>* go;
};

void* produce(void* argument) {
    const Producer& self = *static_cast<Producer*>(argument);
    place(*self.placement, self.count == 1 ? 0 : -1);
    ++*self.ready;
    while (!*self.go) {
        sched_yield();
    }
    for (long n = 0; n < oneWayMessages / self.count; ++n) {
        post(self.sink, 0);
    }
    return nullptr;
}

double oneWay(const Placement& placement, int producers) {
    const auto cpid = static_cast<std::uint16_t>(0x0610 + producers);
    LoopService sink("Sink", cpid, 2, placement, producers == 1 ? 1 : -1);
    long got = 0;
    std::uint64_t end = 0;
    sink.handle(blockId, [&](void*) {
        if (++got == oneWayMessages) {
            end = nowNs();
            sink.Terminate();
        }
    });
    sink.start();
    std::atomic<int> ready{0};
    std::atomic<bool> go{false};
    for (int i = 0; i < producers; ++i) {
        const Producer producer{&placement, producers, sink.address(), &ready, &go};
        std::uint32_t id = 0;
        if (AaSysComEuCreateAndStart(&id, "Producer", produce, 4096, 10, &producer, sizeof(producer)) != 0) {
            die("execution unit");
        }
    }
    while (ready < producers) {
        sched_yield();
    }
    const std::uint64_t begin = nowNs();
    go = true;
    sink.awaitEnd();
    return static_cast<double>(oneWayMessages) * 1000 / static_cast<double>(end - begin);
}

} // namespace

Samples services(Placement placement) {
    const TemporaryRun run;
    TemporaryRun::join();
    startCompetitors(placement);
    Samples samples = roundTrips(placement);
    if (!placement.loaded) {
        samples.emplace_back("one way, 1 producer [M/s]", oneWay(placement, 1));
        samples.emplace_back("one way, 4 producers [M/s]", oneWay(placement, 4));
    }
    return samples;
}

} // namespace mox::bench
