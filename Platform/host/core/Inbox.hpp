#pragma once
/// The message queue of one execution unit. Any thread pushes; only the owner takes.
///
/// Senders push onto a lock-free stack; the owner takes the whole stack at once and works through it in order, so that
/// under load one atomic operation serves many messages. The owner is woken only when it sleeps. It sleeps in one of
/// two ways, whichever suits the senders that it has had of late: on a futex (senders in this process wake it, and a
/// reader thread looks after its sockets), or in poll() on its sockets (the kernel wakes it when another process
/// sends).
#include "AdaptiveWait.hpp"
#include "Message.hpp"

#include <poll.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace mox::host {

class Endpoint;

class Inbox {
public:
    /// A queue for the calling thread. It is never given back to the heap, because a sender may have just looked it
    /// up; once closed, it is used again.
    static Inbox* acquire();
    /// Owner only. Refuses further messages, destroys those that are queued, and gives the inbox back.
    void close();

    /// Any thread. @return false: closed, and the message is still the caller's
    bool push(Message* message);

    /// Owner only. Waits until a message is there or the time is up. @param timeoutUs  -1: no limit
    Message* take(std::int32_t timeoutUs);
    /// Owner only. The first message whose id is among `ids`; the others keep their places.
    Message* takeSelective(std::int32_t timeoutUs, const std::uint16_t* ids, std::size_t count);

    /// Owner only. From now on the endpoint's socket feeds this inbox.
    /// @return false with errno: there is no descriptor left to wake the owner by
    bool attach(const std::shared_ptr<Endpoint>& endpoint);
    /// Any thread. Ends attach().
    void detach(const Endpoint* endpoint);
    /// Reader thread only: queues what it has read.
    /// @return false: closed, and the message is still the caller's
    bool pushRead(Message* message);
    /// Whether so much has been read for an owner who does not receive that the rest must wait in the sockets. Any
    /// thread.
    bool isOverfull() const { return m_backlog.load() >= mostBacklog; }
    /// Reader thread only: the reader thread has left a socket alone. The owner takes it up again.
    /// @return false: there is room meanwhile, so nobody would
    bool notePause();
    /// Owner only, called by the endpoint that it reads: queues what was read behind what others took from there
    /// before.
    void queueRead(Message* message);

    /// Owner only. Never stay awake while waiting.
    void forbidStayingAwake() { m_wait.forbid(); }

private:
    enum class Sleep { onFutex, inPoll };

    Inbox() = default;
    ~Inbox() = default;

    static Message* sleepingOnFutex() { return reinterpret_cast<Message*>(std::uintptr_t{1}); }
    static Message* sleepingInPoll() { return reinterpret_cast<Message*>(std::uintptr_t{2}); }
    static Message* closed() { return reinterpret_cast<Message*>(std::uintptr_t{3}); }
    static bool isMark(const Message* top) { return reinterpret_cast<std::uintptr_t>(top) <= 3; }

    /// Bytes of messages read for an owner who does not receive.
    static constexpr std::size_t mostBacklog = std::size_t{32} << 20;

    Message* popFront();
    void noteTaken(const Message& message);
    void endPause();
    void append(Message* message);
    Message* movePushed();
    bool collectPushed();
    bool collectNow() { return collectPushed() || readSockets(); }
    bool readSockets();
    bool collect() { return collectPushed() || (m_sleep == Sleep::inPoll && readSockets()); }
    bool waitForMore(std::uint64_t deadlineNs);
    void sleep(std::uint64_t deadlineNs);
    void sleepOnFutex(std::uint64_t deadlineNs);
    void sleepInPoll(std::uint64_t deadlineNs);
    bool announceSleep(Message* mark);
    void endSleep(Message* mark);
    void wakeFromPoll() const;
    static void wakeByClock(void* inbox);
    void noteSource(bool fromSocket);
    void setSleep(Sleep sleep);
    void refreshEndpoints();

    alignas(64) std::atomic<Message*> m_pushed{nullptr}; ///< stack of new messages, or how the owner sleeps
    alignas(64) std::atomic<std::int32_t> m_gate{0};     ///< the futex
    std::atomic<int> m_wakerCore{-1};                    ///< where the sender ran that opened the gate
    std::atomic<int> m_wakeFd{-1};                       ///< eventfd, made with the first endpoint

    std::atomic<std::size_t> m_backlog{0}; ///< bytes that the reader thread has queued
    std::atomic<bool> m_paused{false};     ///< whether the reader thread has left a socket alone

    Message* m_first = nullptr; ///< the owner's own list, in order
    Message* m_last = nullptr;
    AdaptiveWait m_wait;
    Sleep m_sleep = Sleep::onFutex;
    unsigned m_otherSource =
        0; ///< messages in a row from the kind of sender that the present way to sleep does not suit

    std::mutex m_endpointsMutex;
    std::vector<std::shared_ptr<Endpoint>> m_endpoints; ///< under m_endpointsMutex
    std::atomic<unsigned> m_endpointsVersion{0};
    unsigned m_polledVersion = 0; ///< the owner's copies, from here on
    std::vector<std::shared_ptr<Endpoint>> m_polledEndpoints;
    std::vector<pollfd> m_pollFds;
};

} // namespace mox::host
