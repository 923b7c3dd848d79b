#pragma once
/// Values of tags with the type that people write and read them as. Programs see bytes only: a number of 1, 2, 4 or 8
/// bytes in the byte order of the machine, a text without terminator.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mox::host {

/// How a value is shown. The characters stand in the store: never changed.
enum class ValueType : char { bytes = 'b', text = 's', u8 = '1', u16 = '2', u32 = '4', u64 = '8' };

struct TypedValue {
    ValueType type = ValueType::bytes;
    std::string bytes;

    friend bool operator==(const TypedValue& a, const TypedValue& b) { return a.type == b.type && a.bytes == b.bytes; }
};

/// Largest value of a tag, in bytes.
constexpr std::size_t maxTagValue = 65535;

/// Longest name of a tag or configuration service, in characters.
constexpr std::size_t maxTagName = 480;

/// "bytes", "text", "u8", "u16", "u32" or "u64".
const char* nameOf(ValueType type);

/// The type of such a name; nothing for any other text.
std::optional<ValueType> valueTypeOf(std::string_view name);

/// Bytes of a number type; 0 for text and bytes.
std::size_t widthOf(ValueType type);

/// What parseValue expects, for a message: "a decimal or 0x... hexadecimal number of 32 bits", ...
const char* expectedText(ValueType type);

/// Turns a text into a value: numbers decimal or hexadecimal with 0x, bytes as pairs of hexadecimal digits with or
/// without blanks between the pairs, text as it is.
/// @return nothing when the text is not of that form, or longer than a tag may be
std::optional<TypedValue> parseValue(ValueType type, std::string_view text);

/// The opposite of parseValue. A number whose length is not that of its type is shown as bytes.
std::string showValue(const TypedValue& value);

/// A number as a value of a number type; bits that do not fit are dropped.
TypedValue numberValue(ValueType type, std::uint64_t number);

/// The number in 1, 2, 4 or 8 bytes; nothing for other lengths.
std::optional<std::uint64_t> numberIn(std::string_view bytes);

/// Reads decimal or 0x... hexadecimal digits, all of the text.
std::optional<std::uint64_t> parseNumber(std::string_view text);

} // namespace mox::host
