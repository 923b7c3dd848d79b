#include "Connection.hpp"

#include "../run/Clock.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "Process.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace mox::host {

namespace {

/// How long room is waited for before the receiver's process is asked to make some.
constexpr std::chrono::milliseconds patience{5};
/// Bytes of messages that wait at most, but for a single longer message.
constexpr std::size_t mostWaiting = 32 * 1024;

/// @return 0 or errno; EAGAIN: no room
int sendOnce(int fd, const iovec* parts, std::size_t partCount, int flags) {
    msghdr datagram{};
    datagram.msg_iov = const_cast<iovec*>(parts);
    datagram.msg_iovlen = partCount;
    ssize_t sent = 0;
    do {
        // the kernel takes a single part faster as it is; messages have one
        sent = partCount == 1
                   ? uncancelled(SYS_sendto, fd, parts->iov_base, parts->iov_len, flags | MSG_NOSIGNAL, nullptr, 0)
                   : uncancelled(SYS_sendmsg, fd, &datagram, flags | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? errno : 0;
}

Delivery deliveryOf(int error) {
    switch (error) {
    case 0:
        return Delivery::done;
    case EAGAIN:
    case ENOBUFS: // the kernel's memory: room there comes back too
    case ENOMEM:
        return Delivery::full;
    case EMSGSIZE:
        return Delivery::tooLong;
    default:
        return Delivery::gone;
    }
}

} // namespace

Delivery Connection::open(const Run& run, SocketKey to, std::shared_ptr<Connection>& connection) {
    const NoCancellation wholeCall;
    const int directory = nodeDirectory(run, to.node);
    if (directory < 0) {
        return errno == ENOENT ? Delivery::gone : Delivery::noMeans;
    }
    const int fd = datagramSocket();
    if (fd < 0) {
        return Delivery::noMeans;
    }
    std::shared_ptr<Connection> opened(new Connection(run, to, fd));
    if (!connectTo(fd, directory, socketName(to))) {
        return Delivery::gone;
    }
    const timeval limit{0, std::chrono::microseconds(patience).count()};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
    connection = std::move(opened);
    return Delivery::done;
}

Connection::~Connection() {
    const NoCancellation wholeCall;
    Reader::instance().forgetRoom(m_fd);
    ::close(m_fd);
}

Delivery Connection::sendMessage(const void* message, std::size_t size) {
    if (!hasWaiting()) {
        const iovec whole{const_cast<void*>(message), size};
        const Delivery delivery = deliveryOf(sendOnce(m_fd, &whole, 1, MSG_DONTWAIT));
        if (delivery != Delivery::full) {
            return delivery;
        }
    }
    return wait(static_cast<const std::uint8_t*>(message), size);
}

/// Waits for what only the receiver can bring about. Asking its process may take until the time is up, if that one
/// does not listen either.
/// @return false: it has not come in time
template <typename Condition>
bool Connection::await(std::unique_lock<std::mutex>& lock, std::uint64_t giveUpAt, const Condition& condition) {
    const auto left = [giveUpAt] {
        const std::uint64_t now = realMonotonicNs();
        return std::chrono::nanoseconds(giveUpAt > now ? giveUpAt - now : 0);
    };
    if (m_room.wait_for(lock, std::min<std::chrono::nanoseconds>(patience, left()), condition)) {
        return true;
    }
    lock.unlock();
    askToDrain(giveUpAt);
    lock.lock();
    return m_room.wait_for(lock, left(), condition);
}

Delivery Connection::wait(const std::uint8_t* message, std::size_t size) {
    const NoCancellation wholeCall;
    const std::uint64_t giveUpAt = realMonotonicNs() + fullLimitNs;
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto hasRoom = [&] { return m_gone || m_waiting.empty() || m_waiting.size() + size <= mostWaiting; };
    if (!await(lock, giveUpAt, hasRoom)) {
        return Delivery::full;
    }
    if (m_gone) {
        return Delivery::gone;
    }
    m_waiting.insert(m_waiting.end(), message, message + size);
    m_hasWaiting.store(true, std::memory_order_release);
    watchForRoom();
    return Delivery::done;
}

/// Under the mutex. The connection lives on until what waits has left.
void Connection::watchForRoom() {
    if (!m_watched) {
        m_watched = true;
        Reader::instance().awaitRoom(m_fd, [self = shared_from_this()] { self->sendWaiting(); });
    }
}

/// On the reader thread, when the socket has room.
void Connection::sendWaiting() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_watched = false;
    const iovec whole{m_waiting.data(), m_waiting.size()};
    const Delivery delivery = deliveryOf(sendOnce(m_fd, &whole, 1, MSG_DONTWAIT));
    if (delivery == Delivery::full) {
        watchForRoom(); // another sender was quicker
        return;
    }
    if (delivery != Delivery::done) {
        m_gone = true;
        logPlatform(3, "%zu bytes of messages to %s of node %s are lost: it has ended", m_waiting.size(),
                    socketName(m_to).c_str(), hex4(m_to.node).c_str());
    }
    m_waiting.clear();
    m_hasWaiting.store(false, std::memory_order_release);
    m_room.notify_all();
}

void Connection::flush(std::uint64_t giveUpAt) {
    std::unique_lock<std::mutex> lock(m_mutex);
    await(lock, giveUpAt, [this] { return m_waiting.empty(); });
}

Delivery Connection::sendDatagram(const iovec* parts, std::size_t partCount, std::uint64_t giveUpAt) const {
    for (;;) {
        const Delivery delivery = deliveryOf(sendOnce(m_fd, parts, partCount, 0));
        if (delivery != Delivery::full || realMonotonicNs() >= giveUpAt) {
            return delivery;
        }
    }
}

/// Has the receiver's process read the endpoint while its owner is busy.
void Connection::askToDrain(std::uint64_t giveUpAt) const {
    const std::uint32_t pid = ownerOf(nodeDirectory(m_run, m_to.node), static_cast<std::uint16_t>(m_to.id));
    if (pid != 0) {
        const auto cpid = static_cast<std::uint16_t>(m_to.id);
        tell({m_to.node, pid}, Topic::drain, {reinterpret_cast<const char*>(&cpid), sizeof(cpid)}, giveUpAt);
    }
}

} // namespace mox::host
