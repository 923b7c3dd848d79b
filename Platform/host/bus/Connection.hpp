#pragma once
/// A connected socket to one endpoint or process of the run, and the messages that wait for room there.
///
/// The kernel holds some ten datagrams for a receiver. Messages beyond them wait here, end to end, and leave as one
/// datagram when there is room again: a sender that is ahead goes on without a system call a message, and the receiver
/// gets many messages with one.
#include "SocketNames.hpp"

#include <sys/uio.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace mox::host {

/// noMeans: this process lacks what it needs, most likely descriptors.
enum class Delivery { done, gone, full, tooLong, noMeans };

/// How long a sender waits for a full receiver.
constexpr std::uint64_t fullLimitNs = 2'000'000'000;

class Connection : public std::enable_shared_from_this<Connection> {
public:
    /// @param[out] connection  set when the result is done
    /// @return done, gone (there is no such socket), noMeans
    static Delivery open(const Run& run, SocketKey to, std::shared_ptr<Connection>& connection);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Sends one well-formed message, or has it wait for room. Messages of one thread arrive in order. Blocks while
    /// too much waits, up to 2 s. Any thread.
    Delivery sendMessage(const void* message, std::size_t size);
    /// Sends one datagram. Blocks while there is no room. @param giveUpAt  by realMonotonicNs(). Any thread.
    Delivery sendDatagram(const iovec* parts, std::size_t partCount, std::uint64_t giveUpAt) const;

    bool hasWaiting() const { return m_hasWaiting.load(std::memory_order_acquire); }
    /// Waits until nothing waits. @param giveUpAt  by realMonotonicNs()
    void flush(std::uint64_t giveUpAt);

private:
    Connection(const Run& run, SocketKey to, int fd) : m_run(run), m_to(to), m_fd(fd) {}
    Delivery wait(const std::uint8_t* message, std::size_t size);
    template <typename Condition>
    bool await(std::unique_lock<std::mutex>& lock, std::uint64_t giveUpAt, const Condition& condition);
    void watchForRoom();
    void sendWaiting();
    void askToDrain(std::uint64_t giveUpAt) const;

    const Run& m_run;
    const SocketKey m_to;
    const int m_fd;
    std::atomic<bool> m_hasWaiting{false};
    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_room;
    std::vector<std::uint8_t> m_waiting;
    bool m_watched = false;
    bool m_gone = false;
};

} // namespace mox::host
