#include "Json.hpp"

#include "../pal/TypedValue.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace mox::host {
namespace {

using Nlohmann = nlohmann::json;

constexpr std::size_t shownText = 40;

/// `last` is the line of the character read last. The reader looks at most one character beyond a token, and only
/// beyond a number: so `last` counts that character to the line that it ends.
struct Lines {
    unsigned next = 1;
    unsigned last = 1;
};

class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, Lines* lines) : m_at(at), m_lines(lines) {}
    reference operator*() const { return *m_at; }
    CountingIterator& operator++() {
        m_lines->last = m_lines->next;
        m_lines->next += *m_at == '\n' ? 1u : 0u;
        ++m_at;
        return *this;
    }
    CountingIterator operator++(int) {
        const CountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountingIterator& other) const { return m_at == other.m_at; }
    bool operator!=(const CountingIterator& other) const { return m_at != other.m_at; }

private:
    const char* m_at;
    Lines* m_lines;
};

std::string printable(std::string_view text) {
    std::string result(text.substr(0, shownText));
    for (char& c : result) {
        c = c >= ' ' && c <= '~' ? c : '?';
    }
    return text.size() > shownText ? result + "..." : result;
}

// "[...] parse error at line 2, column 1: syntax error while parsing value - unexpected ...": the line is ours to tell.
std::string reasonOf(std::string_view what) {
    const auto begin = what.find("syntax error ");
    std::string reason(begin == std::string_view::npos ? what : what.substr(begin + 13));
    const auto lastRead = reason.find("; last read: ");
    if (lastRead != std::string::npos) {
        const auto expected = reason.find("; expected ", lastRead);
        const auto tail = expected == std::string::npos ? std::string() : reason.substr(expected);
        reason = reason.substr(0, lastRead) + tail;
    }
    std::transform(reason.begin(), reason.end(), reason.begin(), [](char c) { return c >= ' ' && c <= '~' ? c : '?'; });
    return reason;
}

class TreeBuilder {
public:
    TreeBuilder(const Lines& lines, JsonError& error) : m_lines(lines), m_error(error) {}

    bool null() { return add({}) != nullptr; }
    bool boolean(bool flag) {
        JsonValue value;
        value.kind = JsonValue::Kind::flag;
        value.flag = flag;
        return add(std::move(value)) != nullptr;
    }
    bool number_unsigned(std::uint64_t number) {
        JsonValue value;
        value.kind = JsonValue::Kind::number;
        value.number = number;
        return add(std::move(value)) != nullptr;
    }
    bool number_integer(std::int64_t number) { return addOther(std::to_string(number)); }
    bool number_float(double, const std::string& digits) { return addOther(digits); }
    bool string(std::string& text) {
        JsonValue value;
        value.kind = JsonValue::Kind::text;
        value.text = std::move(text);
        return add(std::move(value)) != nullptr;
    }
    bool binary(Nlohmann::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(JsonValue::Kind::object); }
    bool start_array(std::size_t) { return open(JsonValue::Kind::list); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        m_open.back()->members.push_back({std::move(name), m_lines.last, {}});
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Nlohmann::exception& failure) {
        m_error = {m_lines.last, "expected well-formed JSON: " + reasonOf(failure.what())};
        return false;
    }
    JsonValue take() { return std::move(m_root); }

private:
    JsonValue* add(JsonValue value) {
        value.line = m_lines.last;
        JsonValue* place = &m_root;
        if (!m_open.empty()) {
            JsonValue& parent = *m_open.back();
            place = parent.kind == JsonValue::Kind::list ? &parent.items.emplace_back() : &parent.members.back().value;
        }
        *place = std::move(value);
        return place;
    }
    bool addOther(std::string shown) {
        JsonValue value;
        value.kind = JsonValue::Kind::other;
        value.text = std::move(shown);
        return add(std::move(value)) != nullptr;
    }
    // Only the innermost open container grows, so the pointers to the ones around it stay good.
    bool open(JsonValue::Kind kind) {
        if (m_open.size() == maxJsonDepth) {
            m_error = {m_lines.last, "expected at most " + std::to_string(maxJsonDepth) + " levels of nesting"};
            return false;
        }
        JsonValue value;
        value.kind = kind;
        m_open.push_back(add(std::move(value)));
        return true;
    }
    bool close() {
        m_open.pop_back();
        return true;
    }

    const Lines& m_lines;
    JsonError& m_error;
    JsonValue m_root;
    std::vector<JsonValue*> m_open;
};

Nlohmann toNlohmann(const JsonValue& value) {
    switch (value.kind) {
    case JsonValue::Kind::flag:
        return value.flag;
    case JsonValue::Kind::number:
        return value.number;
    case JsonValue::Kind::text:
    case JsonValue::Kind::other:
        return value.text;
    case JsonValue::Kind::list: {
        auto list = Nlohmann::array();
        for (const auto& item : value.items) {
            list.push_back(toNlohmann(item));
        }
        return list;
    }
    case JsonValue::Kind::object: {
        auto object = Nlohmann::object();
        for (const auto& member : value.members) {
            object[member.key] = toNlohmann(member.value);
        }
        return object;
    }
    case JsonValue::Kind::null:
        break;
    }
    return nullptr;
}

} // namespace

const JsonValue* JsonValue::find(std::string_view key) const {
    const auto member = std::find_if(members.begin(), members.end(), [key](auto& m) { return m.key == key; });
    return member != members.end() ? &member->value : nullptr;
}

std::optional<std::uint64_t> JsonValue::asNumber() const {
    if (kind == Kind::number) {
        return number;
    }
    return kind == Kind::text && text.substr(0, 2) == "0x" ? parseNumber(text) : std::nullopt;
}

std::string JsonValue::show() const {
    switch (kind) {
    case Kind::null:
        return "null";
    case Kind::flag:
        return flag ? "true" : "false";
    case Kind::number:
        return std::to_string(number);
    case Kind::other:
        return printable(text);
    case Kind::text:
        return '"' + printable(text) + '"';
    case Kind::list:
        return "a list";
    case Kind::object:
        break;
    }
    return "an object";
}

std::string JsonValue::dump() const {
    return toNlohmann(*this).dump(-1, ' ', true, Nlohmann::error_handler_t::replace);
}

std::optional<JsonValue> parseJson(std::string_view text, JsonError& error) {
    Lines lines;
    TreeBuilder builder(lines, error);
    const CountingIterator begin(text.data(), &lines);
    const CountingIterator end(text.data() + text.size(), &lines);
    if (!Nlohmann::sax_parse(begin, end, &builder, Nlohmann::input_format_t::json, true, true)) {
        return std::nullopt;
    }
    return builder.take();
}

} // namespace mox::host
