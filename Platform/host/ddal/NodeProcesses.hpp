#pragma once
/// The services of a node that the run has started.
#include <cstdint>

namespace mox::host {

class Run;

/// Kills every service that the run has started on the node, except this process, and waits until they are gone.
/// @return how many were killed
/// Any thread. Blocks up to 500 ms for each.
unsigned killServices(const Run& run, std::uint16_t node);

/// Whether this process is a service that the run has started on the node.
bool isService(const Run& run, std::uint16_t node);

} // namespace mox::host
