#include "Process.hpp"

#include "../run/Clock.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/PlatformThread.hpp"
#include "../run/Run.hpp"
#include "BadDatagrams.hpp"
#include "Outbox.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace mox::host {

namespace {

/// What a notice's datagram begins with.
struct NoticeHeader {
    std::uint32_t magic;
    std::uint16_t topic;
    std::uint16_t fromNode;
    std::uint32_t fromPid;
};
static_assert(sizeof(NoticeHeader) == 12, "processes of different builds share a run");

constexpr std::uint32_t noticeMagic = 0x4E584F4D;
/// Notices read before the other sockets are looked at.
constexpr unsigned fairShare = 64;
/// Bytes of notices that wait for their handlers. A handler that hangs must not eat the machine: what follows waits in
/// the socket, and whoever tells more learns that this process is full.
constexpr std::size_t mostBacklog = std::size_t{32} << 20;
/// What a queued notice takes beside its body, about.
constexpr std::size_t bytesAround = 256;

/// The notice thread and its queue, and who handles which topic.
class Notices {
public:
    void setHandler(Topic topic, NoticeHandler handler) {
        const std::lock_guard<std::mutex> lock(m_handlersMutex);
        m_handlers[static_cast<std::size_t>(topic)] = std::move(handler);
    }

    void post(std::function<void()> function) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_started) {
            m_started = true;
            startPlatformThread("mox-notices", [this] { run(); }).detach();
        }
        m_queue.push_back(std::move(function));
        m_more.notify_one();
    }

    void post(ProcessAddress from, std::uint16_t topic, std::string body) {
        post([this, from, topic, text = std::move(body)] { handle(from, topic, text); });
    }

    /// Takes what was read from a socket. Senders wait for drained sockets, so these do not wait for call-backs.
    void takeRead(ProcessAddress from, std::uint16_t topic, std::string body) {
        if (topic == static_cast<std::uint16_t>(Topic::drain)) {
            handle(from, topic, body);
            return;
        }
        const std::size_t bytes = bytesAround + body.size();
        m_backlog.fetch_add(bytes);
        post([this, from, topic, bytes, text = std::move(body)] {
            handle(from, topic, text);
            noteHandled(bytes);
        });
    }

    /// Whether there is room for more from a socket; otherwise the reader thread leaves it alone until there is.
    bool hasRoom(int fd) {
        if (m_backlog.load() < mostBacklog) {
            return true;
        }
        const std::lock_guard<std::mutex> lock(m_pauseMutex);
        Reader::instance().watch(fd, false);
        m_paused = fd;
        endPause();
        return false;
    }

    /// Before the socket is closed.
    void forget(int fd) {
        const std::lock_guard<std::mutex> lock(m_pauseMutex);
        if (m_paused == fd) {
            m_paused = -1;
        }
    }

private:
    void noteHandled(std::size_t bytes) {
        if (m_backlog.fetch_sub(bytes) >= mostBacklog / 2) {
            const std::lock_guard<std::mutex> lock(m_pauseMutex);
            endPause();
        }
    }

    /// Under the mutex. Whoever comes second, the reader thread or the notice thread that makes room, ends the pause.
    void endPause() {
        if (m_paused >= 0 && m_backlog.load() < mostBacklog / 2) {
            Reader::instance().watch(m_paused, true);
            m_paused = -1;
        }
    }

    void run() {
        for (;;) {
            std::function<void()> next;
            {
                std::unique_lock<std::mutex> lock(m_mutex);
                m_more.wait(lock, [this] { return !m_queue.empty(); });
                next = std::move(m_queue.front());
                m_queue.pop_front();
            }
            next();
        }
    }

    void handle(ProcessAddress from, std::uint16_t topic, const std::string& body) {
        NoticeHandler handler;
        {
            const std::lock_guard<std::mutex> lock(m_handlersMutex);
            handler = m_handlers[topic];
        }
        if (handler) {
            handler(from, body);
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_more;
    std::deque<std::function<void()>> m_queue;
    bool m_started = false;
    std::atomic<std::size_t> m_backlog{0}; ///< bytes read from sockets and not handled yet
    std::mutex m_pauseMutex;
    int m_paused = -1; ///< the socket that the reader thread has left alone; under m_pauseMutex
    std::mutex m_handlersMutex;
    std::array<NoticeHandler, static_cast<std::size_t>(Topic::count)> m_handlers;
};

Notices& notices() {
    static auto* all = new Notices; // outlives every thread
    return *all;
}

/// Reads what other processes have told; on the reader thread, which has other sockets to serve.
void readNotices(int fd) {
    static auto* buffer = new std::array<char, sizeof(NoticeHeader) + maxNoticeBody>;
    for (unsigned i = 0; i < fairShare && notices().hasRoom(fd); ++i) {
        const ssize_t got = recv(fd, buffer->data(), buffer->size(), MSG_DONTWAIT | MSG_TRUNC);
        if (got < 0) {
            return;
        }
        NoticeHeader header{};
        const auto size = static_cast<std::size_t>(got);
        if (size < sizeof(header) || size > buffer->size()) {
            dropBadDatagram("a notice of a wrong length");
            continue;
        }
        std::memcpy(&header, buffer->data(), sizeof(header));
        if (header.magic != noticeMagic || header.topic >= static_cast<std::uint16_t>(Topic::count)) {
            dropBadDatagram("no notice that this process knows");
            continue;
        }
        notices().takeRead({header.fromNode, header.fromPid}, header.topic,
                           std::string(buffer->data() + sizeof(header), size - sizeof(header)));
    }
}

bool openProcessSocket(const Run& run) {
    removeSocketsOfTheDead(run);
    const std::string name = socketName({SocketKey::Kind::process, run.node(), ownProcess().pid});
    const sockaddr_un address = addressIn(run.nodeFd(), name);
    const int fd = datagramSocket();
    unlinkat(run.nodeFd(), name.c_str(), 0);
    if (fd < 0 || bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        !Reader::instance().addDescriptor(fd, [fd] { readNotices(fd); })) {
        logPlatform(4, "cannot open the process's socket %s: %s", name.c_str(), std::strerror(errno));
        if (fd >= 0) {
            ::close(fd);
        }
        return false;
    }
    atPlatformEnd([fd, name] {
        Reader::instance().removeDescriptor(fd);
        notices().forget(fd);
        ::close(fd);
        unlinkat(Run::current()->nodeFd(), name.c_str(), 0);
    });
    return true;
}

} // namespace

ProcessAddress ownProcess() {
    const Run* run = Run::current();
    return {run != nullptr ? run->node() : std::uint16_t{0}, static_cast<std::uint32_t>(getpid())};
}

bool tell(ProcessAddress to, Topic topic, std::string_view body) {
    return tell(to, topic, body, realMonotonicNs() + fullLimitNs);
}

bool tell(ProcessAddress to, Topic topic, std::string_view body, std::uint64_t giveUpAt) {
    if (to == ownProcess()) {
        notices().post(to, static_cast<std::uint16_t>(topic), std::string(body));
        return true;
    }
    const Run* run = Run::current();
    if (run == nullptr || body.size() > maxNoticeBody) {
        return false;
    }
    const ProcessAddress own = ownProcess();
    NoticeHeader header{noticeMagic, static_cast<std::uint16_t>(topic), own.node, own.pid};
    const std::array<iovec, 2> parts{iovec{&header, sizeof(header)},
                                     iovec{const_cast<char*>(body.data()), body.size()}};
    const SocketKey receiver{SocketKey::Kind::process, to.node, to.pid};
    return deliverDatagram(*run, receiver, parts.data(), parts.size(), giveUpAt) == Delivery::done;
}

void onNotice(Topic topic, NoticeHandler handler) {
    notices().setHandler(topic, std::move(handler));
}

void runOnNoticeThread(std::function<void()> function) {
    notices().post(std::move(function));
}

bool startProcess() {
    const Run* run = Run::current();
    return run == nullptr || openProcessSocket(*run);
}

} // namespace mox::host
