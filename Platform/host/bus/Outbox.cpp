#include "Outbox.hpp"

#include "../run/Clock.hpp"
#include "../run/Run.hpp"
#include "Process.hpp"

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace mox::host {

namespace {

/// How long the kernel waits for room before the receiver's process is asked to make some.
constexpr suseconds_t patienceUs = 5000;
constexpr std::uint64_t fullLimitNs = 2'000'000'000;
/// Partners come and go, and nothing tells that one is not needed any more.
constexpr std::size_t mostConnections = 256;

/// One connected socket; closed when the last sender lets go.
struct Connection {
    explicit Connection(int descriptor) : fd(descriptor) {}
    ~Connection() { ::close(fd); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    const int fd;
};

using ConnectionPtr = std::shared_ptr<Connection>;

ConnectionPtr connectTo(const Run& run, SocketKey to) {
    const int directory = nodeDirectory(run, to.node);
    if (directory < 0) {
        return nullptr;
    }
    const int fd = datagramSocket();
    if (fd < 0) {
        return nullptr;
    }
    auto connection = std::make_shared<Connection>(fd);
    const sockaddr_un address = addressIn(directory, socketName(to));
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        return nullptr;
    }
    const timeval patience{0, patienceUs};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    return connection;
}

class Connections {
public:
    ConnectionPtr get(const Run& run, SocketKey to) {
        {
            const std::shared_lock<std::shared_mutex> lock(m_mutex);
            const auto known = m_open.find(to.packed());
            if (known != m_open.end()) {
                return known->second;
            }
        }
        ConnectionPtr connection = connectTo(run, to);
        if (connection) {
            const std::unique_lock<std::shared_mutex> lock(m_mutex);
            if (m_open.size() >= mostConnections) {
                m_open.clear(); // whoever sends just now keeps its own; those that are needed come back
            }
            return m_open.emplace(to.packed(), connection).first->second;
        }
        return nullptr;
    }

    /// Forgets a connection that turned out to lead nowhere.
    void drop(SocketKey to, const ConnectionPtr& connection) {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        const auto known = m_open.find(to.packed());
        if (known != m_open.end() && known->second == connection) {
            m_open.erase(known);
        }
    }

private:
    std::shared_mutex m_mutex;
    std::unordered_map<std::uint64_t, ConnectionPtr> m_open;
};

Connections& connections() {
    static auto* all = new Connections; // outlives every thread
    return *all;
}

/// Asks the receiver's process to read the endpoint while its owner is busy.
void askToDrain(const Run& run, SocketKey to) {
    if (to.kind != SocketKey::Kind::endpoint) {
        return;
    }
    const std::uint32_t pid = ownerOf(nodeDirectory(run, to.node), static_cast<std::uint16_t>(to.id));
    if (pid != 0) {
        const auto cpid = static_cast<std::uint16_t>(to.id);
        tell({to.node, pid}, Topic::drain, {reinterpret_cast<const char*>(&cpid), sizeof(cpid)});
    }
}

/// @return 0 or errno; EAGAIN: no room within the patience
int sendOnce(int fd, const iovec* parts, std::size_t partCount) {
    msghdr datagram{};
    datagram.msg_iov = const_cast<iovec*>(parts);
    datagram.msg_iovlen = partCount;
    ssize_t sent = 0;
    do {
        // the kernel takes a single part faster as it is; messages have one
        sent = partCount == 1 ? send(fd, parts->iov_base, parts->iov_len, MSG_NOSIGNAL)
                              : sendmsg(fd, &datagram, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? errno : 0;
}

Delivery waitForRoom(const Run& run, SocketKey to, int fd, const iovec* parts, std::size_t partCount) {
    const std::uint64_t giveUpAt = realMonotonicNs() + fullLimitNs;
    askToDrain(run, to);
    for (;;) {
        const int error = sendOnce(fd, parts, partCount);
        if (error == 0) {
            return Delivery::done;
        }
        if (error != EAGAIN) {
            return Delivery::gone;
        }
        if (realMonotonicNs() >= giveUpAt) {
            return Delivery::full;
        }
    }
}

} // namespace

Delivery deliver(const Run& run, SocketKey to, const iovec* parts, std::size_t partCount) {
    for (bool again = false;; again = true) {
        const ConnectionPtr connection = connections().get(run, to);
        if (!connection) {
            return Delivery::gone;
        }
        const int error = sendOnce(connection->fd, parts, partCount);
        switch (error) {
        case 0:
            return Delivery::done;
        case EAGAIN:
            return waitForRoom(run, to, connection->fd, parts, partCount);
        case EMSGSIZE:
            return Delivery::tooLong;
        default: // the process behind the socket has ended; a new one may have taken its name
            connections().drop(to, connection);
            if (again) {
                return Delivery::gone;
            }
        }
    }
}

} // namespace mox::host
