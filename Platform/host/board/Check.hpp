#pragma once
/// Checks a tree by the tables of Rules.hpp.
#include "Json.hpp"
#include "Rules.hpp"

#include <string>

namespace mox::host {

/// @param path  where `value` stands, for the message: "" for the description, "nodes[0]" for its first node
/// @return whether the value obeys the rule; the first failure in the order of the text is in `error` otherwise
bool checkObject(const JsonValue& value, const ObjectRule& rule, const std::string& path, JsonError& error);

/// "a.b" of "a" and "b"; "b" alone when `path` is empty.
std::string below(const std::string& path, std::string_view key);

/// "a.b[3]".
std::string itemOf(const std::string& path, std::string_view key, std::size_t index);

} // namespace mox::host
