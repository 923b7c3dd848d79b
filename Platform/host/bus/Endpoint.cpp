#include "Endpoint.hpp"

#include "../core/Inbox.hpp"
#include "../core/Send.hpp"
#include "../run/NoCancellation.hpp"
#include "BadDatagrams.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

namespace mox::host {

namespace {

/// Room for the largest datagram and one byte more, which tells a longer one.
constexpr std::size_t bufferSize = maxWireSize + 1;

/// What the bytes begin with; zeros where they end early.
SAaSysComMsgHeader headerIn(const std::uint8_t* bytes, std::size_t size) {
    SAaSysComMsgHeader header{};
    std::memcpy(&header, bytes, std::min(size, sizeof(header)));
    return header;
}

} // namespace

Endpoint::Endpoint(std::uint32_t sicad, int fd, Inbox& inbox)
    : m_sicad(sicad), m_fd(fd), m_inbox(inbox), m_buffer(new std::uint8_t[bufferSize]) {}

Endpoint::~Endpoint() {
    const NoCancellation wholeCall; // the last owner may be a thread that receives
    ::close(m_fd);
}

/// @return length of the message that `bytes` begins with; 0: there is none, and why is noted
std::size_t Endpoint::wellFormedMessage(const std::uint8_t* bytes, std::size_t size) const {
    const SAaSysComMsgHeader header = headerIn(bytes, size);
    const std::size_t wireSize = sizeof(header) + Message::bodySize(header);
    if (size < sizeof(header)) {
        dropBadDatagram("shorter than a message header");
    } else if (size < wireSize) {
        dropBadDatagram("its length is not what its header says");
    } else if (!isForHere(header.receiver)) {
        dropBadDatagram("its receiver is not the address that it was sent to");
    } else {
        return wireSize;
    }
    return 0;
}

/// A datagram holds one message, or several end to end.
bool Endpoint::isWellFormed(const std::uint8_t* datagram, std::size_t size) const {
    if (size > maxWireSize) {
        dropBadDatagram("longer than any message");
        return false;
    }
    std::size_t at = 0;
    do {
        const std::size_t length = wellFormedMessage(datagram + at, size - at);
        if (length == 0) {
            return false;
        }
        at += length;
    } while (at < size);
    return true;
}

/// Messages to other nodes come to an endpoint that relays them.
bool Endpoint::isForHere(std::uint32_t receiver) const {
    const std::uint32_t node = receiver >> 16U;
    const bool toOwnNode = node == m_sicad >> 16U || node == 0 || node == localNode;
    return !toOwnNode || (receiver & 0xFFFFU) == (m_sicad & 0xFFFFU);
}

/// Reads the next well-formed datagram, and gives its messages to `take`.
/// @return false with errno: there is none, or no memory (ENOMEM) for one of them
template <typename Take>
bool Endpoint::readDatagram(const Take& take) {
    std::uint8_t* const buffer = m_buffer.get();
    std::size_t size = 0;
    do {
        const ssize_t got = recv(m_fd, buffer, bufferSize, MSG_DONTWAIT);
        if (got < 0) {
            return false;
        }
        size = static_cast<std::size_t>(got);
    } while (!isWellFormed(buffer, size));
    for (std::size_t at = 0; at < size;) {
        const std::size_t bodySize = Message::bodySize(headerIn(buffer + at, size - at));
        Message* message = Message::allocate(static_cast<std::uint32_t>(bodySize));
        if (message == nullptr) {
            dropBadDatagram("no memory for it");
            errno = ENOMEM;
            return false;
        }
        const std::size_t wireSize = sizeof(SAaSysComMsgHeader) + bodySize;
        std::memcpy(message->handle(), buffer + at, wireSize);
        at += wireSize;
        take(message);
    }
    return true;
}

bool Endpoint::readForOwner() {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    bool any = false;
    if (!m_shutDown) {
        readDatagram([this, &any](Message* message) {
            message->from = Message::From::ownersRead;
            m_inbox.queueRead(message);
            any = true;
        });
    }
    return any;
}

bool Endpoint::moveToInbox(unsigned most) {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    if (m_shutDown) {
        return true;
    }
    if (m_inbox.isOverfull()) {
        pause();
        return true;
    }
    return moveLocked(most);
}

/// The socket fills up, and its senders are told so. Whoever comes second, this thread or the owner who makes room,
/// has the reader thread go on.
void Endpoint::pause() {
    const std::lock_guard<std::mutex> lock(m_watchMutex);
    Reader::instance().watch(*this, false);
    if (!m_inbox.notePause()) {
        Reader::instance().watch(*this, true);
    }
}

bool Endpoint::moveLocked(unsigned most) {
    const auto take = [this](Message* message) {
        message->from = Message::From::readerThread;
        if (!m_inbox.pushRead(message)) {
            Message::release(message);
        }
    };
    for (unsigned i = 0; i < most; ++i) {
        if (!readDatagram(take)) {
            return errno != ENOMEM;
        }
    }
    return true;
}

void Endpoint::letReaderThreadRead(bool watch) {
    const std::lock_guard<std::mutex> lock(m_watchMutex);
    m_servedWhileFull.store(false, std::memory_order_relaxed);
    Reader::instance().watch(*this, watch);
}

void Endpoint::serveFullSocket() {
    const std::lock_guard<std::mutex> lock(m_watchMutex);
    m_servedWhileFull.store(true, std::memory_order_relaxed);
    Reader::instance().watch(*this, true);
}

void Endpoint::shutDown() {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    shutdown(m_fd, SHUT_RDWR);
    moveLocked(UINT_MAX);
    m_shutDown = true;
}

} // namespace mox::host
