#pragma once
/// One registered address of this process, as other processes see it: a datagram socket nodes/<nid>/<cpid>.sock.
/// Whoever waits reads it: its owner in poll(), or the process's reader thread while the owner sleeps on its futex, or
/// when a sender found it full.
#include "../core/Message.hpp"

#include <atomic>
#include <cstdint>
#include <memory>
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

    /// Owner only. Moves the messages of the next well-formed datagram in the socket to the owner's queue.
    /// @return false: there is none, or no memory for the first of them
    bool readForOwner();

    /// What the reader thread does when the socket is readable: moves up to `most` datagrams to the inbox.
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

    /// Refuses further datagrams, and moves those that have been sent to the inbox. Nothing is moved there afterwards,
    /// because the inbox may soon be somebody else's. Any thread.
    void shutDown();

private:
    template <typename Take>
    bool readDatagram(const Take& take);
    bool moveLocked(unsigned most);
    void pause();
    bool isForHere(std::uint32_t receiver) const;
    std::size_t wellFormedMessage(const std::uint8_t* bytes, std::size_t size) const;
    bool isWellFormed(const std::uint8_t* datagram, std::size_t size) const;

    const std::uint32_t m_sicad;
    const int m_fd;
    Inbox& m_inbox;
    std::atomic<bool> m_servedWhileFull{false};
    std::mutex m_watchMutex; ///< m_servedWhileFull and what the reader thread does change together
    std::mutex m_readMutex;  ///< a datagram is read and queued in one step, so that the order of a sender is kept
    const std::unique_ptr<std::uint8_t[]> m_buffer; ///< used under m_readMutex; only the pages that are used are there
    bool m_shutDown = false;                        ///< under m_readMutex
};

} // namespace mox::host
