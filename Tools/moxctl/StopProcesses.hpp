#pragma once
#include "ProcessFacts.hpp"

#include <vector>

namespace mox::tools {

/// Ends processes: SIGTERM, and SIGKILL for those that still live after a time; then SIGKILL for everything else in
/// their sessions, among it what they have started themselves.
/// @param seconds  how long they have for an end of their own
/// @return how many had to be killed
/// Blocks until all are gone, at most 2 s longer than `seconds`. Throws Failure when one survives even that.
unsigned stopProcesses(const std::vector<ProcessFacts>& processes, double seconds);

} // namespace mox::tools
