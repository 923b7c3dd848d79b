#pragma once
/// What a board description must obey beyond the tables of Rules.hpp: values that depend on each other.
/// All functions expect a tree that checkObject has accepted.
#include "../pal/TypedValue.hpp"
#include "Json.hpp"

#include <optional>
#include <string>

namespace mox::host {

/// @return whether the nodes and tags of a description agree with each other and in themselves
bool checkDescription(const JsonValue& description, JsonError& error);

/// The same of one node. @param path  such as "nodes[0]"
bool checkNode(const JsonValue& node, const std::string& path, JsonError& error);

/// The value of an object with a "value" and perhaps a "type"; without one a text is of type text, a number of type
/// `numberType`. Nothing when the two do not agree.
std::optional<TypedValue> typedValueOf(const JsonValue& object, ValueType numberType);

} // namespace mox::host
