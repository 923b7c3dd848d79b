#pragma once
#include <algorithm>
#include <array>
#include <type_traits>

namespace mox::kit {

/// In which order the bytes of a number lie in a payload.
enum class ByteOrder {
    little, ///< lowest byte first
    big,    ///< highest byte first
    host    ///< as this processor has it
};

namespace detail {

constexpr ByteOrder hostOrder = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? ByteOrder::little : ByteOrder::big;

/// The bytes of a field. What a number consists of can be anything that comes over a wire, so truth values and
/// enumerations are left out: read a number and compare it.
template <typename Number>
struct FieldBytes : std::array<unsigned char, sizeof(Number)> {
    static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>, "a field is a number");

    /// Turns the bytes from host order into another one, or back.
    void convert(ByteOrder order) {
        if (order != ByteOrder::host && order != hostOrder) {
            std::reverse(this->begin(), this->end());
        }
    }
};

/// Names a type without deducing it from an argument.
template <typename Number>
struct Identity {
    using Type = Number;
};
template <typename Number>
using Named = typename Identity<Number>::Type;

} // namespace detail
} // namespace mox::kit
