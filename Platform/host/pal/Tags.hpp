#pragma once
/// Values of configuration tags. *Own* tags are in this process, *public* ones in the store of the run, or in this
/// process while it stands alone. Any thread.
#include "TypedValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace mox::host {

class Store;

namespace tags {

/// Whether a text can be the name of a tag: 1 to maxTagName characters.
bool isName(const char* name);

/// The own tag, or the public one when there is none.
std::optional<TypedValue> get(std::string_view name);

/// Sets an own tag and tells the subscriptions of scope "process".
void setOwn(const std::string& name, const TypedValue& value);

/// Stores a public tag, and afterwards tells every process that observes it, with the value. One process's
/// publications arrive in the order in which they were stored; blocks while a receiver is full.
/// @return false: the store is full, and nobody was told
bool publish(const std::string& name, const TypedValue& value);

/// Forgets the own tags, and the public ones of a process that stands alone.
void clear();

/// How a public tag stands in Table::tags.
std::string encode(const TypedValue& value);
std::optional<TypedValue> decode(std::string_view record);

} // namespace tags
} // namespace mox::host
