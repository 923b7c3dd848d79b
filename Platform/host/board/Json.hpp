#pragma once
/// JSON with comments, read into a tree that remembers the line of every value.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

struct JsonMember;

struct JsonValue {
    enum class Kind { null, flag, number, other, text, list, object };

    Kind kind = Kind::null;
    unsigned line = 0;               ///< where the value begins, from 1
    bool flag = false;               ///< kind flag
    std::uint64_t number = 0;        ///< kind number: an integer from 0
    std::string text;                ///< kind text; kind other (negative or fractional number): how it shows
    std::vector<JsonValue> items;    ///< kind list
    std::vector<JsonMember> members; ///< kind object, in the order of the text, names may repeat

    /// The first member of that name; null when there is none.
    const JsonValue* find(std::string_view key) const;

    /// An integer from 0, or a text with one in 0x... hexadecimal digits.
    std::optional<std::uint64_t> asNumber() const;

    /// How a message names the value: "x" in quotes, 17, true, null, a list, an object; long texts cut.
    std::string show() const;

    /// The value as JSON without comments.
    std::string dump() const;
};

struct JsonMember {
    std::string key;
    unsigned line = 0;
    JsonValue value;
};

/// What is wrong with a text.
struct JsonError {
    unsigned line = 0;
    std::string text;
};

/// Deepest nesting of lists and objects.
constexpr std::size_t maxJsonDepth = 16;

/// Reads one JSON value. Comments as in C++ are passed over.
/// @return nothing, and `error` set, when the text is not well formed or nested too deeply
std::optional<JsonValue> parseJson(std::string_view text, JsonError& error);

} // namespace mox::host
