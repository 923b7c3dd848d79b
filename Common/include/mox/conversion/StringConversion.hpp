#pragma once
#include <string>
#include <string_view>
#include <type_traits>

namespace ps::hwapi::common::conversion {

/// @name One piece as characters
/// How each kind of value becomes text. A type of a service joins in with an overload of its own beside the type.
/// @{
inline std::string_view asText(std::string_view text) {
    return text;
}

inline std::string_view asText(const std::string& text) {
    return text;
}

/// A null pointer counts as an empty text.
inline std::string_view asText(const char* text) {
    return text == nullptr ? std::string_view() : text;
}

inline std::string asText(char character) {
    return std::string(1, character);
}

/// Numbers in decimal. Enumerations without a scope count as numbers.
template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number> ||
                                                       (std::is_enum_v<Number> && std::is_convertible_v<Number, long>)>>
std::string asText(Number number) {
    return std::to_string(+number);
}
/// @}

namespace detail {

/// Puts texts one after the other, in one allocation.
template <typename... Texts>
std::string concatenate(const Texts&... texts) {
    std::string all;
    all.reserve((std::size_t{0} + ... + texts.size()));
    (all.append(texts), ...);
    return all;
}

} // namespace detail

/// Turns values into one string, in order and with nothing between them.
/// @param pieces  character arrays, strings, characters, numbers, or types with an asText() of their own
template <typename... Pieces>
std::string toString(const Pieces&... pieces) {
    return detail::concatenate(asText(pieces)...);
}

} // namespace ps::hwapi::common::conversion
