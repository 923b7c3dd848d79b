#pragma once
/// One registered address of this process, as other processes see it: a datagram socket nodes/<nid>/<cpid>.sock.
/// Whoever waits reads it: its owner in poll(), or the process's reader thread while the owner sleeps on its futex, or
/// when a sender found it full.
#include "../core/Message.hpp"

#include <atomic>
#include <cstdint>
#include <mutex>

namespace mox::host {

class Inbox;

class Endpoint {
public:
    /// Takes over the bound, non-blocking socket `fd`.
    Endpoint(std::uint32_t sicad, int fd, Inbox& inbox);
    /// Closes the socket.
    ~Endpoint();
    Endpoint(const Endpoint&) = delete;
    Endpoint& operator=(const Endpoint&) = delete;

    std::uint32_t sicad() const { return m_sicad; }
    int fd() const { return m_fd; }

    /// The next well-formed message in the socket, or null when there is none or no memory for it. Any thread, but the
    /// owner only while it reads itself.
    Message* read();

    /// What the reader thread does when the socket is readable: moves up to `most` messages to the inbox.
    /// @return false: there was no memory left for messages
    bool moveToInbox(unsigned most);

    /// Owner only. Whether the reader thread watches the socket, for longer.
    void letReaderThreadRead(bool watch);
    /// Owner only. Ends what serveFullSocket began.
    void takeBackFromReaderThread() {
        if (m_servedWhileFull.load(std::memory_order_relaxed)) {
            letReaderThreadRead(false);
        }
    }
    /// A sender finds the socket full: the reader thread reads until the owner waits again. Any thread.
    void serveFullSocket();

    /// Refuses further datagrams; those that are queued are lost.
    void shutDown() const;

private:
    Message* readOne();
    bool isWellFormed(const std::uint8_t* datagram, std::size_t wireSize) const;

    const std::uint32_t m_sicad;
    const int m_fd;
    Inbox& m_inbox;
    std::atomic<bool> m_servedWhileFull{false};
    std::mutex m_readMutex; ///< a datagram is read and queued in one step, so that the order of a sender is kept
};

} // namespace mox::host
