#include "TypedValue.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace mox::host {
namespace {

struct TypeRow {
    ValueType type;
    const char* name;
    std::size_t width;
    const char* expected;
};

constexpr std::array typeTable{
    TypeRow{ValueType::bytes, "bytes", 0, "pairs of hexadecimal digits, at most 65535 of them"},
    TypeRow{ValueType::text, "text", 0, "a text of at most 65535 bytes"},
    TypeRow{ValueType::u8, "u8", 1, "a decimal or 0x... hexadecimal number of 8 bits"},
    TypeRow{ValueType::u16, "u16", 2, "a decimal or 0x... hexadecimal number of 16 bits"},
    TypeRow{ValueType::u32, "u32", 4, "a decimal or 0x... hexadecimal number of 32 bits"},
    TypeRow{ValueType::u64, "u64", 8, "a decimal or 0x... hexadecimal number of 64 bits"},
};

const TypeRow& rowOf(ValueType type) {
    const auto row = std::find_if(typeTable.begin(), typeTable.end(), [type](auto& r) { return r.type == type; });
    return row != typeTable.end() ? *row : typeTable.front();
}

template <class Number>
std::string packed(std::uint64_t number) {
    const auto narrow = static_cast<Number>(number);
    std::string bytes(sizeof narrow, '\0');
    std::memcpy(bytes.data(), &narrow, sizeof narrow);
    return bytes;
}

template <class Number>
std::uint64_t unpacked(std::string_view bytes) {
    Number number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

std::optional<std::string> fromHex(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        if (text.front() == ' ') {
            text.remove_prefix(1);
            continue;
        }
        unsigned byte = 0;
        const auto pair = text.substr(0, 2);
        const auto end = std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
        if (pair.size() != 2 || end.ec != std::errc{} || end.ptr != pair.data() + 2) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(byte));
        text.remove_prefix(2);
    }
    return bytes;
}

std::string toHex(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 15]);
    }
    return text;
}

std::optional<TypedValue> limited(ValueType type, std::optional<std::string> bytes) {
    if (!bytes || bytes->size() > maxTagValue) {
        return std::nullopt;
    }
    return TypedValue{type, std::move(*bytes)};
}

} // namespace

const char* nameOf(ValueType type) {
    return rowOf(type).name;
}

std::optional<ValueType> valueTypeOf(std::string_view name) {
    const auto row = std::find_if(typeTable.begin(), typeTable.end(), [name](auto& r) { return r.name == name; });
    return row != typeTable.end() ? std::optional(row->type) : std::nullopt;
}

std::size_t widthOf(ValueType type) {
    return rowOf(type).width;
}

const char* expectedText(ValueType type) {
    return rowOf(type).expected;
}

std::optional<TypedValue> parseValue(ValueType type, std::string_view text) {
    if (type == ValueType::text) {
        return limited(type, std::string(text));
    }
    if (type == ValueType::bytes) {
        return limited(type, fromHex(text));
    }
    const auto number = parseNumber(text);
    const auto bits = 8 * widthOf(type);
    if (!number || (bits < 64 && (*number >> bits) != 0)) {
        return std::nullopt;
    }
    return numberValue(type, *number);
}

std::string showValue(const TypedValue& value) {
    if (value.type == ValueType::text) {
        return value.bytes;
    }
    const auto number = numberIn(value.bytes);
    return number && value.bytes.size() == widthOf(value.type) ? std::to_string(*number) : toHex(value.bytes);
}

TypedValue numberValue(ValueType type, std::uint64_t number) {
    switch (widthOf(type)) {
    case 1:
        return {type, packed<std::uint8_t>(number)};
    case 2:
        return {type, packed<std::uint16_t>(number)};
    case 4:
        return {type, packed<std::uint32_t>(number)};
    default:
        return {type, packed<std::uint64_t>(number)};
    }
}

std::optional<std::uint64_t> numberIn(std::string_view bytes) {
    switch (bytes.size()) {
    case 1:
        return unpacked<std::uint8_t>(bytes);
    case 2:
        return unpacked<std::uint16_t>(bytes);
    case 4:
        return unpacked<std::uint32_t>(bytes);
    case 8:
        return unpacked<std::uint64_t>(bytes);
    default:
        return std::nullopt;
    }
}

std::optional<std::uint64_t> parseNumber(std::string_view text) {
    const bool hexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    const auto digits = hexadecimal ? text.substr(2) : text;
    std::uint64_t number = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    if (digits.empty() || end.ec != std::errc{} || end.ptr != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace mox::host
