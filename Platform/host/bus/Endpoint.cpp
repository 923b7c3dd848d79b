#include "Endpoint.hpp"

#include "../core/Inbox.hpp"
#include "BadDatagrams.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace mox::host {

namespace {

/// Room for the largest datagram and one byte more, which tells a longer one. Only the pages that are used are there.
using ReadBuffer = std::array<std::uint8_t, maxWireSize + 1>;

ReadBuffer& readBuffer() {
    thread_local const std::unique_ptr<ReadBuffer> buffer(new ReadBuffer);
    return *buffer;
}

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
    } else if ((header.receiver & 0xFFFFU) != (m_sicad & 0xFFFFU)) {
        dropBadDatagram("its receiver is not the address that it was sent to");
    } else {
        return true;
    }
    return false;
}

Message* Endpoint::readOne() {
    ReadBuffer& buffer = readBuffer();
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
        message->fromSocket = true;
        return message;
    }
}

Message* Endpoint::read() {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    return readOne();
}

bool Endpoint::moveToInbox(unsigned most) {
    const std::lock_guard<std::mutex> lock(m_readMutex);
    for (unsigned i = 0; i < most; ++i) {
        Message* message = readOne();
        if (message == nullptr) {
            return errno != ENOMEM;
        }
        if (!m_inbox.push(message)) {
            Message::release(message);
        }
    }
    return true;
}

void Endpoint::letReaderThreadRead(bool watch) {
    m_servedWhileFull.store(false, std::memory_order_relaxed);
    Reader::instance().watch(*this, watch);
}

void Endpoint::serveFullSocket() {
    m_servedWhileFull.store(true, std::memory_order_relaxed);
    Reader::instance().watch(*this, true);
}

void Endpoint::shutDown() const {
    shutdown(m_fd, SHUT_RDWR);
}

} // namespace mox::host
