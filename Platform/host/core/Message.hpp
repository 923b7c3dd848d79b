#pragma once
/// Messages in memory: a block of a pool that holds the queue's link, the 16-byte header, payload and trailer.
/// A handle points to the header.
#include "pal/AaSysCom.h"

#include <cstddef>
#include <cstdint>

namespace mox::host {

/// The block around a message. Owned by whoever holds the handle; next belongs to the queue that holds it.
struct alignas(16) Message {
    /// How a message has come into a queue: sent by this process, or from another and read by the owner or for it.
    enum class From : std::uint8_t { thisProcess, ownersRead, readerThread };

    Message* next;
    std::uint32_t capacity; ///< bytes behind the header
    std::uint8_t poolClass;
    From from;
    std::uint16_t mark; ///< tells a live message from a destroyed one
    alignas(16) SAaSysComMsgHeader header;

    static constexpr std::uint16_t live = 0x5AFE;
    static constexpr std::uint16_t dead = 0xDEAD;

    /// The message of a handle, or null when it is null or destroyed.
    static Message* of(const void* handle);
    /// A message without payload set; bytes of payload and trailer are not zeroed. Null: no memory left for messages.
    static Message* allocate(std::uint32_t capacity);
    /// Gives the block back to the pool.
    static void release(Message* message);

    void* handle() { return &header; }
    std::uint8_t* payload() { return reinterpret_cast<std::uint8_t*>(&header) + sizeof(header); }
    bool hasTrailer() const { return (header.flags & formatMask) == formatWithTrailer; }
    SAaSysComMsgTrailer* trailer() {
        return reinterpret_cast<SAaSysComMsgTrailer*>(payload() + trailerOffset(header.size));
    }
    /// Bytes on the wire.
    std::size_t wireSize() const { return sizeof(header) + bodySize(header); }

    static constexpr std::uint16_t formatMask = 3;
    static constexpr std::uint16_t formatWithTrailer = 3;
    static constexpr std::size_t trailerOffset(std::size_t payloadSize) { return (payloadSize + 3U) & ~std::size_t{3}; }
    /// Bytes behind the header.
    static std::size_t bodySize(const SAaSysComMsgHeader& header) {
        return (header.flags & formatMask) == formatWithTrailer
                   ? trailerOffset(header.size) + sizeof(SAaSysComMsgTrailer)
                   : header.size;
    }
};

static_assert(offsetof(Message, header) % 16 == 0, "payloads are aligned for any type");

/// Most bytes on the wire.
constexpr std::size_t maxWireSize =
    sizeof(SAaSysComMsgHeader) + Message::trailerOffset(AASYSCOM_MAX_PAYLOAD) + sizeof(SAaSysComMsgTrailer);

} // namespace mox::host
