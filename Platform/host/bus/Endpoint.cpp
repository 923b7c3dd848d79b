#include "Endpoint.hpp"

#include "../core/Inbox.hpp"
#include "BadDatagrams.hpp"
#include "Reader.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

namespace mox::host {

namespace {

/// Bodies up to here are read into a block that is kept for the purpose and copied into one of the right size, so
/// that a queue of small messages does not hold large blocks.
constexpr std::uint32_t copyUpTo = 1024;
constexpr std::uint32_t directCapacity = 4096;

struct ReadBuffers {
    ~ReadBuffers() {
        if (block != nullptr) {
            Message::release(block);
        }
    }
    bool prepare() {
        if (block == nullptr) {
            block = Message::allocate(directCapacity);
        }
        if (!overflow) {
            overflow = std::make_unique<std::array<std::uint8_t, maxWireSize>>();
        }
        return block != nullptr;
    }
    Message* block = nullptr;
    std::unique_ptr<std::array<std::uint8_t, maxWireSize>> overflow;
};

ReadBuffers& readBuffers() {
    thread_local ReadBuffers buffers;
    return buffers;
}

Message* copyOf(const Message& read, std::size_t body) {
    Message* message = Message::allocate(static_cast<std::uint32_t>(body));
    if (message != nullptr) {
        std::memcpy(message->handle(), &read.header, sizeof(read.header) + body);
    }
    return message;
}

/// The message that has been read, in a block of a fitting size; null: no memory, and the message is lost.
Message* takeFrom(ReadBuffers& buffers, std::size_t body) {
    if (body <= copyUpTo) {
        return copyOf(*buffers.block, body);
    }
    if (body <= directCapacity) {
        return std::exchange(buffers.block, nullptr);
    }
    Message* message = Message::allocate(static_cast<std::uint32_t>(body));
    if (message != nullptr) {
        message->header = buffers.block->header;
        std::memcpy(message->payload(), buffers.block->payload(), directCapacity);
        std::memcpy(message->payload() + directCapacity, buffers.overflow->data(), body - directCapacity);
    }
    return message;
}

} // namespace

Endpoint::Endpoint(std::uint32_t sicad, int fd, Inbox& inbox) : m_sicad(sicad), m_fd(fd), m_inbox(inbox) {}

Endpoint::~Endpoint() {
    ::close(m_fd);
}

bool Endpoint::isWellFormed(const SAaSysComMsgHeader& header, std::size_t wireSize) const {
    if (wireSize < sizeof(header)) {
        dropBadDatagram("shorter than a message header");
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
    ReadBuffers& buffers = readBuffers();
    if (!buffers.prepare()) {
        errno = ENOMEM;
        return nullptr;
    }
    for (;;) {
        std::array<iovec, 2> parts{iovec{buffers.block->handle(), sizeof(SAaSysComMsgHeader) + directCapacity},
                                   iovec{buffers.overflow->data(), maxWireSize}};
        msghdr datagram{};
        datagram.msg_iov = parts.data();
        datagram.msg_iovlen = parts.size();
        const ssize_t got = recvmsg(m_fd, &datagram, MSG_DONTWAIT);
        if (got < 0) {
            return nullptr;
        }
        if ((datagram.msg_flags & MSG_TRUNC) != 0) {
            dropBadDatagram("longer than any message");
            continue;
        }
        const auto wireSize = static_cast<std::size_t>(got);
        if (!isWellFormed(buffers.block->header, wireSize)) {
            continue;
        }
        Message* message = takeFrom(buffers, wireSize - sizeof(SAaSysComMsgHeader));
        if (message == nullptr) {
            dropBadDatagram("no memory for it");
            continue;
        }
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
