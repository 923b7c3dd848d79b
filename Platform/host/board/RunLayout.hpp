#pragma once
/// The directories and files of one node of a run.
#include "Description.hpp"

#include <string>

namespace mox::host {

/// Makes nodes/<nid> with its file systems, its log directory and its R&D values.
/// @param directory  nodes/<nid>; must not exist
/// @param[out] why   one line for a person when the result is false
bool layOutNode(const std::string& directory, const NodeDescription& node, std::string& why);

} // namespace mox::host
