#include "Check.hpp"

#include <algorithm>
#include <numeric>

namespace mox::host {
namespace {

constexpr std::size_t nearEnough = 3;

bool refuse(JsonError& error, unsigned line, std::string text) {
    error = {line, std::move(text)};
    return false;
}

bool unexpected(JsonError& error, const std::string& path, const char* expected, const JsonValue& got) {
    return refuse(error, got.line, path + ": expected " + expected + ", got " + got.show());
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
        }
    }
    return row.back();
}

std::string hintFor(std::string_view key, const ObjectRule& rule) {
    // A key of a thousand characters is nobody's typing error.
    const auto typed = key.substr(0, 64);
    const auto nearest =
        std::min_element(rule.fields.begin(), rule.fields.end(), [typed](const auto& a, const auto& b) {
            return editDistance(typed, a.key) < editDistance(typed, b.key);
        });
    if (editDistance(typed, nearest->key) <= nearEnough) {
        return std::string("did you mean \"") + nearest->key + "\"?";
    }
    std::string known = "known keys:";
    for (const auto& field : rule.fields) {
        known += std::string(known.back() == ':' ? " " : ", ") + field.key;
    }
    return known;
}

bool inRange(std::uint64_t number, const FieldRule& rule) {
    return number >= rule.least && number <= rule.most;
}

bool isNumber(const JsonValue& value, const FieldRule& rule) {
    const auto number = value.asNumber();
    return number && inRange(*number, rule);
}

bool isText(const JsonValue& value, const FieldRule& rule) {
    return value.kind == JsonValue::Kind::text && inRange(value.text.size(), rule) && rule.form->accepts(value.text);
}

bool isChoice(const JsonValue& value, const FieldRule& rule) {
    return value.kind == JsonValue::Kind::text &&
           std::any_of(rule.choices.begin(), rule.choices.end(), [&](auto* choice) { return value.text == choice; });
}

bool isListOf(const JsonValue& value, bool (*accepts)(const JsonValue&, const FieldRule&), const FieldRule& rule,
              std::size_t most) {
    return value.kind == JsonValue::Kind::list && value.items.size() <= most &&
           std::all_of(value.items.begin(), value.items.end(), [&](auto& item) { return accepts(item, rule); });
}

bool isAnyText(const JsonValue& value, const FieldRule&) {
    return value.kind == JsonValue::Kind::text;
}

bool isSimple(const JsonValue& value, const FieldRule& rule) {
    constexpr std::size_t mostNumbers = 65536;
    switch (rule.kind) {
    case FieldKind::text:
        return isText(value, rule);
    case FieldKind::number:
        return isNumber(value, rule);
    case FieldKind::flag:
        return value.kind == JsonValue::Kind::flag;
    case FieldKind::choice:
        return isChoice(value, rule);
    case FieldKind::scalar:
        return value.kind == JsonValue::Kind::text || value.kind == JsonValue::Kind::number;
    case FieldKind::texts:
        return isListOf(value, isAnyText, rule, static_cast<std::size_t>(rule.most));
    case FieldKind::numbers:
        return isListOf(value, isNumber, rule, mostNumbers);
    case FieldKind::list:
        return value.kind == JsonValue::Kind::list && inRange(value.items.size(), rule);
    case FieldKind::object:
        break;
    }
    return value.kind == JsonValue::Kind::object;
}

bool checkField(const JsonValue& value, const FieldRule& rule, const std::string& path, JsonError& error) {
    if (!isSimple(value, rule)) {
        return unexpected(error, path, rule.expected, value);
    }
    if (rule.kind == FieldKind::object) {
        return checkObject(value, *rule.object, path, error);
    }
    if (rule.kind == FieldKind::list) {
        for (std::size_t i = 0; i < value.items.size(); ++i) {
            if (!checkObject(value.items[i], *rule.object, itemOf(path, "", i), error)) {
                return false;
            }
        }
    }
    return true;
}

bool checkMember(const JsonValue& parent, const JsonMember& member, const ObjectRule& rule, const std::string& path,
                 JsonError& error) {
    const auto field = std::find_if(rule.fields.begin(), rule.fields.end(),
                                    [&](const auto& candidate) { return member.key == candidate.key; });
    if (field == rule.fields.end()) {
        JsonValue shown;
        shown.kind = JsonValue::Kind::text;
        shown.text = member.key;
        return refuse(error, member.line,
                      (path.empty() ? "" : path + ": ") + "unknown key " + shown.show() + ", " +
                          hintFor(member.key, rule));
    }
    const auto first = std::find_if(parent.members.begin(), parent.members.end(),
                                    [&](const auto& other) { return other.key == member.key; });
    if (&*first != &member) {
        return refuse(error, member.line,
                      below(path, member.key) + ": expected once, but it stands on line " +
                          std::to_string(first->line) + " already");
    }
    return checkField(member.value, *field, below(path, member.key), error);
}

} // namespace

std::string below(const std::string& path, std::string_view key) {
    return path.empty() ? std::string(key) : path + "." + std::string(key);
}

std::string itemOf(const std::string& path, std::string_view key, std::size_t index) {
    return (key.empty() ? path : below(path, key)) + "[" + std::to_string(index) + "]";
}

bool checkObject(const JsonValue& value, const ObjectRule& rule, const std::string& path, JsonError& error) {
    const std::string shownPath = path.empty() ? rule.name : path;
    if (value.kind != JsonValue::Kind::object) {
        return unexpected(error, shownPath, "an object", value);
    }
    for (const auto& member : value.members) {
        if (!checkMember(value, member, rule, path, error)) {
            return false;
        }
    }
    for (const auto& field : rule.fields) {
        if (field.required && value.find(field.key) == nullptr) {
            return refuse(error, value.line,
                          shownPath + ": expected a key \"" + field.key + "\" with " + field.expected);
        }
    }
    return true;
}

} // namespace mox::host
