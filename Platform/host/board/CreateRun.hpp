#pragma once
/// Lays out the directory of a run (see run/Run.hpp), and reads back what the store knows of its nodes.
#include "Description.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

class Store;

/// Makes a run. Each node gets its file systems below nodes/<nid>/fs: ffs (with a directory for every flash file system
/// and ffs/run), ram, rpram with rpram/hwapi, tmp, var/tmp/hwapi (a link to rpram/hwapi), opt/mox, and the control
/// files below sys/devices/platform. Tags, nodes and engine go to the store, R&D values to the node's word file.
/// @param directory  made when it does not exist; refused when anything is in it
/// @param text       board description, kept as board.json
/// @param fileName   of the description, for messages
/// @param[out] why   one line for a person; empty when the result is true
/// @return whether the run exists now; a run that could not be completed is removed again
bool createRun(const std::string& directory, std::string_view text, const std::string& fileName, std::string& why);

/// The nodes of a run, by ascending node id. A node that cannot be read is left out and logged.
std::vector<NodeDescription> readNodes(const Store& store);

/// One node; nothing when the run has no such node.
std::optional<NodeDescription> readNode(const Store& store, std::uint16_t nid);

/// What carries messages beyond this machine: "local" or "nats://host:port".
std::string readEngine(const Store& store);

} // namespace mox::host
