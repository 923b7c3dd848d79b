#pragma once
#include <cstddef>
#include <stdexcept>
#include <string>

namespace mox::kit {

/// A field does not lie within its payload. In a delegate it ends the service like any other exception: catch it, or
/// use PayloadView::tryRead, where a message of a peer may be too short.
class PayloadError : public std::out_of_range {
public:
    /// @param offset   of the field's first byte
    /// @param length   bytes of the field
    /// @param payload  bytes of the payload
    PayloadError(std::size_t offset, std::size_t length, std::size_t payload)
        : std::out_of_range("field of " + std::to_string(length) + " bytes at offset " + std::to_string(offset) +
                            " does not fit into a payload of " + std::to_string(payload) + " bytes") {}
};

namespace detail {

/// @return whether a field lies within a payload
inline bool fits(std::size_t offset, std::size_t length, std::size_t payload) {
    return offset <= payload && length <= payload - offset;
}

/// @throws PayloadError if a field does not lie within a payload
inline void requireFit(std::size_t offset, std::size_t length, std::size_t payload) {
    if (!fits(offset, length, payload)) {
        throw PayloadError(offset, length, payload);
    }
}

} // namespace detail
} // namespace mox::kit
