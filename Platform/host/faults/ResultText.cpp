#include "../pal/TypedValue.hpp"
#include "Functions.hpp"

#include <string>

namespace mox::host::faults {
namespace {

using Kind = ResultShape::Kind;

/// The enumeration whose names a function's results have; empty: none.
std::string_view enumerationOf(const Function& function) {
    return function.result.isEnum ? function.resultType : resultEnumeration(function.name);
}

struct Number {
    std::uint64_t bits = 0;
    bool negative = false;
};

std::optional<Number> numberFrom(const std::string& text) {
    const bool negative = !text.empty() && text[0] == '-';
    const auto magnitude = parseNumber(negative ? text.substr(1) : text);
    if (!magnitude || (negative && *magnitude > std::uint64_t{1} << 63U))
        return std::nullopt;
    return Number{negative ? 0 - *magnitude : *magnitude, negative && *magnitude != 0};
}

std::string expected(const Function& function) {
    switch (function.result.kind) {
    case Kind::none:
        return "no value, since it answers nothing";
    case Kind::boolean:
        return "true or false";
    case Kind::pointer:
        return "null";
    case Kind::number:
        break;
    }
    const auto failure = generalFailure(function.name, function.result);
    const std::string_view name = failure ? nameOfResult(function, static_cast<std::uint64_t>(*failure)) : "";
    if (function.result.isEnum)
        return "one of " + std::string(function.resultType) + ", by name or number";
    std::string text = "a number that fits " + std::string(function.resultType);
    return name.empty() ? text : text + ", or a name such as " + std::string(name);
}

std::optional<std::uint64_t> read(const Function& function, const std::string& text) {
    if (function.result.kind == Kind::none)
        return std::nullopt;
    if (function.result.kind == Kind::pointer)
        return text == "null" ? std::optional<std::uint64_t>(0) : std::nullopt;
    if (function.result.kind == Kind::boolean)
        return text == "true"    ? std::optional<std::uint64_t>(1)
               : text == "false" ? std::optional<std::uint64_t>(0)
                                 : std::nullopt;
    const std::string_view enumeration = enumerationOf(function);
    if (const ResultName* named = findResultName(enumeration, std::string_view(text)))
        return static_cast<std::uint64_t>(named->value);
    const auto number = numberFrom(text);
    if (!number || !fits(number->bits, number->negative, function.result))
        return std::nullopt;
    const bool isOther =
        function.result.isEnum && findResultName(enumeration, static_cast<std::int64_t>(number->bits)) == nullptr;
    return isOther ? std::nullopt : std::optional(number->bits);
}

} // namespace

std::optional<std::uint64_t> parseResult(const Function& function, const std::string& text, std::string& why) {
    const auto result = read(function, text);
    why = result ? "" : std::string(function.name) + ": expected " + expected(function) + ", got '" + text + "'";
    return result;
}

std::string showResult(const Function& function, std::uint64_t bits) {
    switch (function.result.kind) {
    case Kind::none:
        return "";
    case Kind::boolean:
        return bits != 0 ? "true" : "false";
    case Kind::pointer:
        return bits == 0 ? "null" : "a pointer";
    case Kind::number:
        break;
    }
    return function.result.isSigned || function.result.isEnum ? std::to_string(static_cast<std::int64_t>(bits))
                                                              : std::to_string(bits);
}

std::string_view nameOfResult(const Function& function, std::uint64_t bits) {
    const ResultName* named = findResultName(enumerationOf(function), static_cast<std::int64_t>(bits));
    return named == nullptr || function.result.kind != Kind::number ? std::string_view() : named->name;
}

} // namespace mox::host::faults
