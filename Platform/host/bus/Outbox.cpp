#include "Outbox.hpp"

#include "../run/Clock.hpp"

#include <cstdlib>
#include <shared_mutex>
#include <unordered_map>
#include <vector>

namespace mox::host {

namespace {

/// Partners come and go, and nothing tells that one is not needed any more.
constexpr std::size_t mostConnections = 256;
constexpr std::uint64_t flushLimitNs = 2'000'000'000;

using ConnectionPtr = std::shared_ptr<Connection>;

class Connections {
public:
    /// @param[out] connection  set when the result is done
    Delivery get(const Run& run, SocketKey to, ConnectionPtr& connection) {
        {
            const std::shared_lock<std::shared_mutex> lock(m_mutex);
            const auto known = m_open.find(to.packed());
            if (known != m_open.end()) {
                connection = known->second;
                return Delivery::done;
            }
        }
        const Delivery opened = Connection::open(run, to, connection);
        if (opened == Delivery::done) {
            const std::unique_lock<std::shared_mutex> lock(m_mutex);
            if (m_open.size() >= mostConnections) {
                dropIdle(); // whoever sends just now keeps its own; those that are needed come back
            }
            connection = m_open.emplace(to.packed(), connection).first->second;
        }
        return opened;
    }

    /// Forgets a connection that turned out to lead nowhere.
    void drop(SocketKey to, const ConnectionPtr& connection) {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        const auto known = m_open.find(to.packed());
        if (known != m_open.end() && known->second == connection) {
            m_open.erase(known);
        }
    }

    /// Waits until all messages have left.
    void flush() {
        const std::uint64_t giveUpAt = realMonotonicNs() + flushLimitNs;
        for (const ConnectionPtr& connection : withWaiting()) {
            connection->flush(giveUpAt);
        }
    }

private:
    std::vector<ConnectionPtr> withWaiting() {
        const std::shared_lock<std::shared_mutex> lock(m_mutex);
        std::vector<ConnectionPtr> all;
        for (const auto& [key, connection] : m_open) {
            if (connection->hasWaiting()) {
                all.push_back(connection);
            }
        }
        return all;
    }

    /// A connection with messages that wait stays, because later ones must not overtake them.
    void dropIdle() {
        for (auto open = m_open.begin(); open != m_open.end();) {
            open = open->second->hasWaiting() ? std::next(open) : m_open.erase(open);
        }
    }

    std::shared_mutex m_mutex;
    std::unordered_map<std::uint64_t, ConnectionPtr> m_open;
};

Connections& connections() {
    static auto* all = [] {
        std::atexit([] { connections().flush(); });
        return new Connections; // outlives every thread
    }();
    return *all;
}

/// Sends over the connection to `to`, over a new one where the old one turns out to lead nowhere: the process behind
/// it has ended, and a new one may have taken its name.
template <typename Send>
Delivery over(const Run& run, SocketKey to, const Send& send) {
    for (bool again = false;; again = true) {
        ConnectionPtr connection;
        const Delivery opened = connections().get(run, to, connection);
        if (opened != Delivery::done) {
            return opened;
        }
        const Delivery delivery = send(*connection);
        if (delivery != Delivery::gone) {
            return delivery;
        }
        connections().drop(to, connection);
        if (again) {
            return delivery;
        }
    }
}

} // namespace

Delivery deliverMessage(const Run& run, SocketKey to, const void* message, std::size_t size) {
    return over(run, to, [=](Connection& connection) { return connection.sendMessage(message, size); });
}

Delivery deliverDatagram(const Run& run, SocketKey to, const iovec* parts, std::size_t partCount,
                         std::uint64_t giveUpAt) {
    return over(run, to,
                [=](const Connection& connection) { return connection.sendDatagram(parts, partCount, giveUpAt); });
}

} // namespace mox::host
