#pragma once
#include <mox/kit/ByteOrder.hpp>
#include <mox/kit/PayloadError.hpp>
#include <pal/AaSysCom.h>

#include <cstddef>
#include <cstring>
#include <string_view>

namespace mox::kit {

/// Writes the fields of a payload at their offsets, whatever their alignment; the counterpart of PayloadView:
///
///     void* const answer = AaSysComMsgCreateReply(msg, 0x0602, 6);
///     PayloadWriter::of(answer, ByteOrder::big).write<std::uint16_t>(0, fan).write<std::uint32_t>(2, speed);
///
/// Owns nothing. One thread at a time. Nothing blocks or allocates.
class PayloadWriter {
public:
    /// @param data   first byte; null makes an empty payload
    /// @param size   bytes
    /// @param order  of the fields that are written without an order of their own
    PayloadWriter(void* data, std::size_t size, ByteOrder order = ByteOrder::host)
        : m_data(static_cast<unsigned char*>(data)), m_size(data == nullptr ? 0 : size), m_order(order) {}

    /// @param msg    a message; without payload, or null, nothing can be written
    /// @param order  as above
    static PayloadWriter of(void* msg, ByteOrder order = ByteOrder::host) {
        return PayloadWriter(AaSysComMsgGetPayload(msg), AaSysComMsgGetPayloadSize(msg), order);
    }

    /// @return bytes
    std::size_t size() const { return m_size; }

    /// Writes a number. Name its type, `write<std::uint16_t>(0, fan)`: a field has the size of the type that is named.
    /// @param offset  of its first byte
    /// @throws PayloadError if it does not lie within the payload, which then is unchanged
    template <typename Number>
    PayloadWriter& write(std::size_t offset, detail::Named<Number> value) {
        return write<Number>(offset, value, m_order);
    }

    /// Writes a number in an order of its own.
    template <typename Number>
    PayloadWriter& write(std::size_t offset, detail::Named<Number> value, ByteOrder order) {
        detail::requireFit(offset, sizeof(Number), m_size);
        detail::FieldBytes<Number> bytes;
        std::memcpy(bytes.data(), &value, bytes.size());
        bytes.convert(order);
        std::memcpy(m_data + offset, bytes.data(), bytes.size());
        return *this;
    }

    /// Writes a text field and fills its rest with null bytes. A text as long as the field has no terminator.
    /// @param offset  of its first byte
    /// @param length  bytes of the field
    /// @throws PayloadError if the field does not lie within the payload, or the text not within the field; the payload
    ///         then is unchanged
    PayloadWriter& writeText(std::size_t offset, std::size_t length, std::string_view text) {
        detail::requireFit(offset, length, m_size);
        if (text.size() > length) {
            throw PayloadError(offset, text.size(), offset + length);
        }
        if (length != 0) {
            std::memset(m_data + offset, 0, length);
            text.copy(reinterpret_cast<char*>(m_data) + offset, length);
        }
        return *this;
    }

private:
    unsigned char* m_data;
    std::size_t m_size;
    ByteOrder m_order;
};

} // namespace mox::kit
