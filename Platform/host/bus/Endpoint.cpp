#include "Endpoint.hpp"

#include "../core/Inbox.hpp"
#include "../core/Send.hpp"
#include "BadDatagrams.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>

namespace mox::host {

namespace {

/// Room for the largest datagram and one byte more, which tells a longer one. Only the pages that are used are there.
using ReadBuffer = std::array<std::uint8_t, maxWireSize + 1>;

thread_local const std::unique_ptr<ReadBuffer> t_readBuffer(new ReadBuffer);

} // namespace

Endpoint::Endpoint(std::uint32_t sicad, int fd, Inbox& inbox) : m_sicad(sicad), m_fd(fd), m_inbox(inbox) {}

Endpoint::~Endpoint() {
    ::close(m_fd);
}

bool Endpoint::isWellFormed(const std::uint8_t* datagram, std::size_t wireSize) const {
    SAaSysComMsgHeader header{};
    std::memcpy(&header, datagram, std::min(wireSize, sizeof(header)));
    if (wireSize < sizeof(header)) {
        dropBadDatagram("shorter than a message header");
    } else if (wireSize > maxWireSize) {
        dropBadDatagram("longer than any message");
    } else if (wireSize != sizeof(header) + Message::bodySize(header)) {
        dropBadDatagram("its length is not what its header says");
    } else if (!isForHere(header.receiver)) {
        dropBadDatagram("its receiver is not the address that it was sent to");
    } else {
        return true;
    }
    return false;
}

/// Messages to other nodes come to an endpoint that relays them.
bool Endpoint::isForHere(std::uint32_t receiver) const {
    const std::uint32_t node = receiver >> 16U;
    const bool toOwnNode = node == m_sicad >> 16U || node == 0 || node == localNode;
    return !toOwnNode || (receiver & 0xFFFFU) == (m_sicad & 0xFFFFU);
}

Message* Endpoint::readOne() {
    ReadBuffer& buffer = *t_readBuffer;
    for (;;) {
        const ssize_t got = recv(m_fd, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (got < 0) {
            return nullptr;
        }
        const auto wireSize = static_cast<std::size_t>(got);
        if (!isWellFormed(buffer.data(), wireSize)) {
            continue;
        }
        Message* message = Message::allocate(static_cast<std::uint32_t>(wireSize - sizeof(SAaSysComMsgHeader)));
        if (message == nullptr) {
            dropBadDatagram("no memory for it");
            errno = ENOMEM;
            return nullptr;
        }
        std::memcpy(message->handle(), buffer.data(), wireSize);
        message->from = Message::From::ownersRead;
        return message;
    }
}

bool Endpoint::readForOwner() {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    Message* message = m_shutDown ? nullptr : readOne();
    if (message != nullptr) {
        m_inbox.queueRead(message);
    }
    return message != nullptr;
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
    for (unsigned i = 0; i < most; ++i) {
        Message* message = readOne();
        if (message == nullptr) {
            return errno != ENOMEM;
        }
        message->from = Message::From::readerThread;
        if (!m_inbox.pushRead(message)) {
            Message::release(message);
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
