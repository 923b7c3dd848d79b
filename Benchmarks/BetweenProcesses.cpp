/// Messages between two processes of a run, beside the bare socket pair that carries them and ZeroMQ.
#include "harness/Suite.hpp"
#include "harness/TemporaryRun.hpp"

#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>

#include <sys/socket.h>
#include <unistd.h>
#include <zmq.h>

#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace mox::bench;

namespace {

constexpr int warmUp = 200;
constexpr int measured = 2000;
constexpr std::array<std::size_t, 2> sizes{64, 4096};

/// One end of a connection between two processes.
class End {
public:
    virtual ~End() = default;
    /// In the process that uses the end.
    virtual void open() {}
    virtual void send(const void* data, std::size_t size) = 0;
    virtual void receive(void* data, std::size_t size) = 0;
    virtual void close() {}
};

class SocketEnd : public End {
public:
    explicit SocketEnd(int fd) : m_fd(fd) {}
    void send(const void* data, std::size_t size) override {
        if (write(m_fd, data, size) != static_cast<ssize_t>(size)) {
            die("write");
        }
    }
    void receive(void* data, std::size_t size) override {
        if (read(m_fd, data, size) != static_cast<ssize_t>(size)) {
            die("read");
        }
    }

private:
    const int m_fd;
};

class ZeroMqEnd : public End {
public:
    ZeroMqEnd(std::string address, bool binds) : m_address(std::move(address)), m_binds(binds) {}
    void open() override {
        m_socket = zmq_socket(zmq_ctx_new(), ZMQ_PAIR);
        if ((m_binds ? zmq_bind(m_socket, m_address.c_str()) : zmq_connect(m_socket, m_address.c_str())) != 0) {
            die("zmq");
        }
    }
    void send(const void* data, std::size_t size) override {
        if (zmq_send(m_socket, data, size, 0) != static_cast<int>(size)) {
            die("zmq_send");
        }
    }
    void receive(void* data, std::size_t size) override {
        if (zmq_recv(m_socket, data, size, 0) != static_cast<int>(size)) {
            die("zmq_recv");
        }
    }

private:
    const std::string m_address;
    const bool m_binds;
    void* m_socket = nullptr;
};

/// An execution unit of one process that exchanges messages with one of another.
class MessageEnd : public End {
public:
    MessageEnd(std::uint16_t own, std::uint16_t other) : m_own(own), m_other(other) {}
    void open() override {
        TemporaryRun::join();
        if (AaSysComEuUserRegister(m_own) != m_own) {
            die("register");
        }
        const std::uint16_t node = AaSysComGetOwnNid();
        m_from = AaSysComSicadGet(m_own, node);
        m_to = AaSysComSicadGet(m_other, node);
        usleep(50000); // until the other process has registered too
    }
    void send(const void* data, std::size_t size) override {
        void* const msg = AaSysComMsgCreate(1, static_cast<std::uint32_t>(size), m_to);
        if (msg == nullptr) {
            die("create");
        }
        std::memcpy(AaSysComMsgGetPayload(msg), data, size);
        if (AaSysComMsgSendS(msg, m_from) != EAaSysComRetVal_NoError) {
            die("send");
        }
    }
    void receive(void* data, std::size_t size) override {
        void* msg = AaSysComMsgReceive(-1, 0);
        if (AaSysComMsgGetPayloadSize(msg) != size) {
            die("receive");
        }
        std::memcpy(data, AaSysComMsgGetPayload(msg), size);
        AaSysComMsgDestroy(&msg);
    }
    void close() override { AaStartupEeShutdown(); }

private:
    const std::uint16_t m_own;
    const std::uint16_t m_other;
    std::uint32_t m_from = 0;
    std::uint32_t m_to = 0;
};

struct Ends {
    std::unique_ptr<End> here;
    std::unique_ptr<End> there;
};

void answer(End& end, std::size_t size, long flood) {
    end.open();
    std::vector<char> block(size);
    for (int i = 0; i < warmUp + measured; ++i) {
        end.receive(block.data(), size);
        end.send(block.data(), size);
    }
    for (long i = 0; i < flood; ++i) {
        end.receive(block.data(), size);
    }
    end.send(block.data(), size);
    end.receive(block.data(), size);
    end.close();
}

Samples ask(End& end, std::size_t size, long flood) {
    end.open();
    std::vector<char> block(size, 'x');
    std::vector<double> ns;
    for (int i = 0; i < warmUp + measured; ++i) {
        const std::uint64_t begin = nowNs();
        end.send(block.data(), size);
        end.receive(block.data(), size);
        if (i >= warmUp) {
            ns.push_back(static_cast<double>(nowNs() - begin));
        }
    }
    const std::string tag = std::to_string(size) + " B ";
    Samples samples = percentiles(ns, tag + "round trip");
    const std::uint64_t begin = nowNs();
    for (long i = 0; i < flood; ++i) {
        end.send(block.data(), size);
    }
    end.receive(block.data(), size);
    samples.emplace_back(tag + "one way [k/s]",
                         static_cast<double>(flood) * 1e6 / static_cast<double>(nowNs() - begin));
    end.send(block.data(), size); // the other end may leave
    end.close();
    return samples;
}

Samples measure(const std::function<Ends()>& connect, bool twoCores, std::size_t size) {
    const Ends ends = connect();
    const long flood = 40000;
    const pid_t other = spawn([&] {
        if (twoCores) {
            pin(1);
        }
        answer(*ends.there, size, flood);
        usleep(20000); // lets a library's own threads send what is left
    });
    if (twoCores) {
        pin(0);
    }
    Samples samples = ask(*ends.here, size, flood);
    reap(other);
    return samples;
}

Samples inChildren(const std::function<Ends()>& connect, bool twoCores) {
    Samples samples;
    for (const std::size_t size : sizes) {
        samples = samples + measure(connect, twoCores, size);
    }
    return samples;
}

Ends socketPair() {
    std::array<int, 2> fds{};
    if (socketpair(AF_UNIX, SOCK_DGRAM, 0, fds.data()) != 0) {
        die("socketpair");
    }
    return {std::make_unique<SocketEnd>(fds[0]), std::make_unique<SocketEnd>(fds[1])};
}

Ends zeroMq() {
    static int count = 0;
    // A name without a file, which nobody would remove.
    const std::string address = "ipc://@mox-bench-" + std::to_string(getpid()) + "-" + std::to_string(count++);
    return {std::make_unique<ZeroMqEnd>(address, true), std::make_unique<ZeroMqEnd>(address, false)};
}

/// The asking process joins the run once, so each size has CPIDs and processes of its own.
Samples messages(bool twoCores) {
    const TemporaryRun run;
    Samples samples;
    for (const std::size_t size : sizes) {
        std::array<int, 2> result{};
        if (pipe(result.data()) != 0) {
            die("pipe");
        }
        const pid_t asking = spawn([&] {
            const auto connect = [] {
                return Ends{std::make_unique<MessageEnd>(0x0601, 0x0602), std::make_unique<MessageEnd>(0x0602, 0x0601)};
            };
            for (const auto& [metric, value] : measure(connect, twoCores, size)) {
                dprintf(result[1], "%.9g %s\n", value, metric.c_str());
            }
        });
        close(result[1]);
        FILE* lines = fdopen(result[0], "r");
        double value = 0;
        std::array<char, 128> metric{};
        while (std::fscanf(lines, "%lf %127[^\n]", &value, metric.data()) == 2) {
            samples.emplace_back(metric.data(), value);
        }
        std::fclose(lines);
        reap(asking);
    }
    return samples;
}

bool run(bool twoCores) {
    Suite suite(twoCores ? "between processes, two cores" : "between processes, one core");
    const int cpu = twoCores ? -1 : 1;
    suite.add(
        "bare datagram pair", [=] { return inChildren(socketPair, twoCores); }, cpu);
    suite.add(
        "ZeroMQ ipc", [=] { return inChildren(zeroMq, twoCores); }, cpu);
    suite.add(
        "libMOX", [=] { return messages(twoCores); }, cpu);
    if (!twoCores) {
        suite.goal("64 B round trip p50 [us]", "libMOX", Goal::atMost, 1.25, "bare datagram pair");
        suite.goal("64 B round trip p50 [us]", "libMOX", Goal::atMost, 0.3, "ZeroMQ ipc");
    }
    suite.goal("64 B one way [k/s]", "libMOX", Goal::atLeast, 0.7, "bare datagram pair");
    suite.goal("4096 B one way [k/s]", "libMOX", Goal::atLeast, 0.7, "bare datagram pair");
    return suite.run();
}

} // namespace

int main() {
    const bool one = run(false);
    const bool two = run(true);
    return one && two ? 0 : 1;
}
