#include "Inbox.hpp"

#include "../bus/Endpoint.hpp"
#include "../run/Clock.hpp"
#include "../run/NoCancellation.hpp"

#include <pthread.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <deque>

namespace mox::host {

namespace {

/// Messages in a row from the other kind of sender after which the owner changes the way in which it sleeps. Small,
/// so that a new pattern of traffic is fast soon; above 1, because a change costs a system call for each socket.
constexpr unsigned changeSleepAfter = 4;
constexpr std::size_t restingInboxes = 64;

/// Inboxes that wait to be used again, the longest first, and not soon: a sender that has looked one up and is held up
/// before it pushes would reach the next owner.
class FreeInboxes {
public:
    Inbox* take() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_free.size() < restingInboxes) {
            return nullptr;
        }
        Inbox* inbox = m_free.front();
        m_free.pop_front();
        return inbox;
    }
    void put(Inbox* inbox) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_free.push_back(inbox);
    }

private:
    std::mutex m_mutex;
    std::deque<Inbox*> m_free;
};

FreeInboxes& freeInboxes() {
    static auto* inboxes = new FreeInboxes; // outlives every thread
    return *inboxes;
}

std::uint64_t deadlineOf(std::int32_t timeoutUs) {
    return timeoutUs < 0 ? noDeadline : deadlineIn(static_cast<std::uint64_t>(timeoutUs) * 1000);
}

} // namespace

Inbox* Inbox::acquire() {
    Inbox* inbox = freeInboxes().take();
    if (inbox == nullptr) {
        return new Inbox;
    }
    inbox->m_wait = AdaptiveWait{};
    inbox->m_sleep = Sleep::onFutex;
    inbox->m_otherSource = 0;
    inbox->m_backlog.store(0);
    inbox->m_paused.store(false);
    inbox->m_pushed.store(nullptr, std::memory_order_release);
    return inbox;
}

void Inbox::close() {
    Message* pushed = m_pushed.exchange(closed(), std::memory_order_acq_rel);
    while (!isMark(pushed)) {
        Message* next = pushed->next;
        Message::release(pushed);
        pushed = next;
    }
    while (m_first != nullptr) {
        Message::release(popFront());
    }
    m_polledEndpoints.clear();
    m_pollFds.clear();
    freeInboxes().put(this);
}

bool Inbox::push(Message* message) {
    Message* top = m_pushed.load(std::memory_order_relaxed);
    do {
        if (top == closed()) {
            return false;
        }
        message->next = isMark(top) ? nullptr : top;
    } while (!m_pushed.compare_exchange_weak(top, message, std::memory_order_seq_cst, std::memory_order_relaxed));
    if (top == sleepingOnFutex()) {
        m_wakerCore.store(sched_getcpu(), std::memory_order_relaxed);
        m_gate.store(1, std::memory_order_release);
        futexWake(&m_gate);
    } else if (top == sleepingInPoll()) {
        wakeFromPoll();
    }
    return true;
}

bool Inbox::pushRead(Message* message) {
    const std::size_t bytes = message->capacity;
    m_backlog.fetch_add(bytes);
    if (push(message)) {
        return true;
    }
    m_backlog.fetch_sub(bytes);
    return false;
}

bool Inbox::notePause() {
    m_paused.store(true);
    return m_backlog.load() > mostBacklog / 2;
}

void Inbox::noteTaken(const Message& message) {
    if (message.from != Message::From::readerThread) {
        return;
    }
    const std::size_t left = m_backlog.fetch_sub(message.capacity) - message.capacity;
    if (left <= mostBacklog / 2 && m_paused.load()) {
        endPause();
    }
}

void Inbox::endPause() {
    m_paused.store(false);
    refreshEndpoints();
    for (const auto& endpoint : m_polledEndpoints) {
        endpoint->letReaderThreadRead(m_sleep == Sleep::onFutex);
    }
}

void Inbox::wakeFromPoll() const {
    const std::uint64_t one = 1;
    // Fails only when the counter is at its limit, and then the owner is being woken already.
    uncancelled(SYS_write, m_wakeFd.load(std::memory_order_acquire), &one, sizeof(one));
}

Message* Inbox::popFront() {
    Message* message = m_first;
    m_first = message->next;
    if (m_first == nullptr) {
        m_last = nullptr;
    }
    noteTaken(*message);
    return message;
}

void Inbox::append(Message* message) {
    message->next = nullptr;
    (m_last != nullptr ? m_last->next : m_first) = message;
    m_last = message;
}

/// Moves new messages to the owner's list. @return the oldest of them, or null
Message* Inbox::movePushed() {
    if (m_pushed.load(std::memory_order_relaxed) == nullptr) {
        return nullptr;
    }
    Message* newest = m_pushed.exchange(nullptr, std::memory_order_acquire);
    if (isMark(newest)) {
        return nullptr;
    }
    Message* oldest = nullptr;
    for (Message* message = newest; message != nullptr;) {
        Message* older = message->next;
        message->next = oldest;
        oldest = message;
        message = older;
    }
    (m_last != nullptr ? m_last->next : m_first) = oldest;
    m_last = newest;
    return oldest;
}

bool Inbox::collectPushed() {
    const Message* oldest = movePushed();
    if (oldest != nullptr) {
        noteSource(oldest->from != Message::From::thisProcess);
    }
    return oldest != nullptr;
}

void Inbox::queueRead(Message* message) {
    movePushed();
    append(message);
}

bool Inbox::readSockets() {
    refreshEndpoints();
    for (const auto& endpoint : m_polledEndpoints) {
        if (m_sleep == Sleep::inPoll) {
            endpoint->takeBackFromReaderThread();
        }
        if (endpoint->readForOwner()) {
            noteSource(true); // not before: it may change the list of endpoints
            return true;
        }
    }
    return false;
}

void Inbox::noteSource(bool fromSocket) {
    const bool suits = fromSocket == (m_sleep == Sleep::inPoll);
    if (suits) {
        m_otherSource = 0;
    } else if (++m_otherSource >= changeSleepAfter) {
        setSleep(fromSocket ? Sleep::inPoll : Sleep::onFutex);
    }
}

void Inbox::setSleep(Sleep sleep) {
    m_sleep = sleep;
    m_otherSource = 0;
    refreshEndpoints();
    for (const auto& endpoint : m_polledEndpoints) {
        endpoint->letReaderThreadRead(sleep == Sleep::onFutex);
    }
}

Message* Inbox::take(std::int32_t timeoutUs) {
    if (m_first == nullptr) {
        const bool any = timeoutUs == 0 ? collectNow() : waitForMore(deadlineOf(timeoutUs));
        if (!any) {
            return nullptr;
        }
    }
    return popFront();
}

Message* Inbox::takeSelective(std::int32_t timeoutUs, const std::uint16_t* ids, std::size_t count) {
    const std::uint64_t deadline = deadlineOf(timeoutUs);
    collect();
    Message* before = nullptr;
    for (;;) {
        for (Message* message = before != nullptr ? before->next : m_first; message != nullptr;
             message = message->next) {
            if (std::find(ids, ids + count, message->header.id) != ids + count) {
                (before != nullptr ? before->next : m_first) = message->next;
                if (m_last == message) {
                    m_last = before;
                }
                noteTaken(*message);
                return message;
            }
            before = message;
        }
        const bool more = timeoutUs == 0 ? collectNow() : waitForMore(deadline);
        if (!more) {
            return nullptr;
        }
    }
}

/// @return false: the deadline has come and nothing was there
bool Inbox::waitForMore(std::uint64_t deadlineNs) {
    for (;;) {
        const bool more = m_wait([this] { return collect(); });
        if (more) {
            return true;
        }
        if (deadlineNs != noDeadline && monotonicNs() >= deadlineNs) {
            return false;
        }
        sleep(deadlineNs);
        if (collect()) {
            return true;
        }
    }
}

void Inbox::sleep(std::uint64_t deadlineNs) {
    pthread_testcancel(); // sleeping on a futex is no cancellation point
    if (m_sleep == Sleep::inPoll) {
        sleepInPoll(deadlineNs);
    } else {
        sleepOnFutex(deadlineNs);
    }
}

/// @return false: a message came meanwhile
bool Inbox::announceSleep(Message* mark) {
    Message* none = nullptr;
    return m_pushed.compare_exchange_strong(none, mark, std::memory_order_seq_cst);
}

void Inbox::endSleep(Message* mark) {
    m_pushed.compare_exchange_strong(mark, nullptr, std::memory_order_relaxed);
}

void Inbox::wakeByClock(void* context) {
    auto* inbox = static_cast<Inbox*>(context);
    inbox->m_gate.store(1, std::memory_order_release);
    futexWake(&inbox->m_gate);
    if (inbox->m_wakeFd.load(std::memory_order_acquire) >= 0) {
        inbox->wakeFromPoll();
    }
}

void Inbox::sleepOnFutex(std::uint64_t deadlineNs) {
    m_gate.store(0, std::memory_order_relaxed);
    if (!announceSleep(sleepingOnFutex())) {
        return;
    }
    if (deadlineNs == noDeadline) {
        while (m_gate.load(std::memory_order_acquire) == 0) {
            futexWait(&m_gate, 0);
        }
        m_wait.wokenFrom(m_wakerCore.load(std::memory_order_relaxed));
        return;
    }
    {
        TimedWait limit(deadlineNs, wakeByClock, this);
        while (m_gate.load(std::memory_order_acquire) == 0) {
            const std::uint64_t ns = limit.sleepNs();
            if (ns == 0) {
                break;
            }
            futexWait(&m_gate, 0, ns == noDeadline ? -1 : static_cast<std::int64_t>(ns));
        }
    }
    endSleep(sleepingOnFutex());
}

void Inbox::sleepInPoll(std::uint64_t deadlineNs) {
    if (!announceSleep(sleepingInPoll())) {
        return;
    }
    {
        TimedWait limit(deadlineNs, wakeByClock, this);
        const std::uint64_t ns = limit.sleepNs();
        if (ns != 0) {
            const timespec length{static_cast<time_t>(ns / 1000000000), static_cast<long>(ns % 1000000000)};
            ppoll(m_pollFds.data(), m_pollFds.size(), ns == noDeadline ? nullptr : &length, nullptr);
        }
    }
    endSleep(sleepingInPoll());
    if ((m_pollFds.front().revents & POLLIN) != 0) {
        std::uint64_t count = 0;
        const auto drained = ::read(m_wakeFd.load(std::memory_order_relaxed), &count, sizeof(count));
        (void)drained;
    }
}

bool Inbox::attach(const std::shared_ptr<Endpoint>& endpoint) {
    {
        const std::lock_guard<std::mutex> lock(m_endpointsMutex);
        if (m_wakeFd.load(std::memory_order_relaxed) < 0) {
            const int fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
            if (fd < 0) {
                return false;
            }
            m_wakeFd.store(fd, std::memory_order_release);
        }
        m_endpoints.push_back(endpoint);
        m_endpointsVersion.fetch_add(1, std::memory_order_release);
    }
    setSleep(Sleep::inPoll);
    return true;
}

void Inbox::detach(const Endpoint* endpoint) {
    {
        const std::lock_guard<std::mutex> lock(m_endpointsMutex);
        m_endpoints.erase(std::remove_if(m_endpoints.begin(), m_endpoints.end(),
                                         [endpoint](const auto& mine) { return mine.get() == endpoint; }),
                          m_endpoints.end());
        m_endpointsVersion.fetch_add(1, std::memory_order_release);
    }
    wakeFromPoll(); // lets the owner drop its copy, and with it the socket
}

void Inbox::refreshEndpoints() {
    const unsigned version = m_endpointsVersion.load(std::memory_order_acquire);
    if (version == m_polledVersion) {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_endpointsMutex);
    m_polledVersion = m_endpointsVersion.load(std::memory_order_relaxed);
    m_polledEndpoints = m_endpoints;
    m_pollFds.assign(1, pollfd{m_wakeFd.load(std::memory_order_relaxed), POLLIN, 0});
    for (const auto& endpoint : m_polledEndpoints) {
        m_pollFds.push_back(pollfd{endpoint->fd(), POLLIN, 0});
    }
}

} // namespace mox::host
