#pragma once
/// Turns a checked tree into the structs of Description.hpp.
#include "Description.hpp"
#include "Json.hpp"

namespace mox::host {

NodeDescription extractNode(const JsonValue& node);
Description extractDescription(const JsonValue& description);

} // namespace mox::host
