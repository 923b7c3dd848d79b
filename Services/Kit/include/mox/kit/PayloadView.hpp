#pragma once
#include <mox/kit/ByteOrder.hpp>
#include <mox/kit/PayloadError.hpp>
#include <pal/AaSysCom.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

namespace mox::kit {

/// Reads the fields of a payload at their offsets, whatever their alignment:
///
///     const PayloadView request = PayloadView::of(msg, ByteOrder::big);
///     const auto fan = request.read<std::uint16_t>(0);
///     const auto speed = request.read<std::uint32_t>(2, ByteOrder::little);
///     const std::string name = request.text(6, 16);
///     if (const auto extra = request.tryRead<std::uint8_t>(22)) { ... }
///
/// Owns nothing: the message lives longer than its view. Any number of threads may read. Nothing blocks or allocates,
/// text() excepted.
class PayloadView {
public:
    /// @param data   first byte; null makes an empty view
    /// @param size   bytes
    /// @param order  of the fields that are read without an order of their own
    PayloadView(const void* data, std::size_t size, ByteOrder order = ByteOrder::host)
        : m_data(static_cast<const unsigned char*>(data)), m_size(data == nullptr ? 0 : size), m_order(order) {}

    /// @param msg    a message; without payload the view is empty
    /// @param order  as above
    static PayloadView of(const void* msg, ByteOrder order = ByteOrder::host) {
        return PayloadView(AaSysComMsgGetPayload(msg), AaSysComMsgGetPayloadSize(msg), order);
    }

    /// @return bytes
    std::size_t size() const { return m_size; }

    /// @return whether a field lies within the payload
    /// @param offset  of its first byte
    /// @param length  bytes; 0 fits up to the payload's end
    bool holds(std::size_t offset, std::size_t length) const { return detail::fits(offset, length, m_size); }

    /// Reads a number.
    /// @param offset  of its first byte
    /// @throws PayloadError if it does not lie within the payload
    template <typename Number>
    Number read(std::size_t offset) const {
        return read<Number>(offset, m_order);
    }

    /// Reads a number in an order of its own.
    template <typename Number>
    Number read(std::size_t offset, ByteOrder order) const {
        detail::requireFit(offset, sizeof(Number), m_size);
        detail::FieldBytes<Number> bytes;
        std::memcpy(bytes.data(), m_data + offset, bytes.size());
        bytes.convert(order);
        Number number;
        std::memcpy(&number, bytes.data(), bytes.size());
        return number;
    }

    /// Reads a number that may be missing.
    /// @return nothing if it does not lie within the payload
    template <typename Number>
    std::optional<Number> tryRead(std::size_t offset) const {
        return tryRead<Number>(offset, m_order);
    }

    /// Reads a number that may be missing, in an order of its own.
    template <typename Number>
    std::optional<Number> tryRead(std::size_t offset, ByteOrder order) const {
        if (!holds(offset, sizeof(Number))) {
            return std::nullopt;
        }
        return read<Number>(offset, order);
    }

    /// Reads a text field.
    /// @param offset  of its first byte
    /// @param length  bytes of the field
    /// @return the characters before the first null byte, or all of them if there is none
    /// @throws PayloadError if the field does not lie within the payload
    std::string text(std::size_t offset, std::size_t length) const {
        detail::requireFit(offset, length, m_size);
        if (length == 0) {
            return {};
        }
        const char* const first = reinterpret_cast<const char*>(m_data) + offset;
        return std::string(first, strnlen(first, length));
    }

    /// @return a view of a part with the same order
    /// @throws PayloadError if the part does not lie within the payload
    PayloadView part(std::size_t offset, std::size_t length) const {
        detail::requireFit(offset, length, m_size);
        return PayloadView(m_size == 0 ? nullptr : m_data + offset, length, m_order);
    }

private:
    const unsigned char* m_data;
    std::size_t m_size;
    ByteOrder m_order;
};

} // namespace mox::kit
