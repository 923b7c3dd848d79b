#include "TextForms.hpp"

#include "../pal/TypedValue.hpp"

#include <algorithm>
#include <string>

namespace mox::host::form {
namespace {

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isPrintable(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool isIdentifier(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return isLetterOrDigit(c) || c == '.' || c == '_' || c == '-'; });
}

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isFlashPath(std::string_view text) {
    constexpr std::string_view parent = "/ffs/";
    const auto name = text.substr(std::min(parent.size(), text.size()));
    return text.substr(0, parent.size()) == parent && !name.empty() && isLetterOrDigit(name.front()) &&
           isIdentifier(name);
}

bool isEngine(std::string_view text) {
    constexpr std::string_view scheme = "nats://";
    if (text == "local") {
        return true;
    }
    const auto colon = text.rfind(':');
    if (text.substr(0, scheme.size()) != scheme || colon < scheme.size()) {
        return false;
    }
    const auto host = text.substr(scheme.size(), colon - scheme.size());
    const auto port = text.substr(colon + 1);
    return !host.empty() && isIdentifier(host) && !port.empty() && port.size() <= 5 && isDigits(port);
}

bool isTagName(std::string_view text) {
    return isPrintable(text) && text.find(' ') == std::string_view::npos;
}

} // namespace

const TextForm printable{"^[ -~]*$", isPrintable};
const TextForm identifier{"^[A-Za-z0-9._-]*$", isIdentifier};
const TextForm digits{"^[0-9]*$", isDigits};
const TextForm flashPath{"^/ffs/[A-Za-z0-9][A-Za-z0-9._-]*$", isFlashPath};
const TextForm engine{"^(local|nats://[A-Za-z0-9._-]+:[0-9]{1,5})$", isEngine};
const TextForm tagName{"^[!-~]*$", isTagName};

} // namespace mox::host::form
