#pragma once
#include <string>
#include <vector>

namespace mox::sweep {

struct RunnerOutcome {
    bool wasKilled = false;
    std::vector<int> results; ///< of the steps that came to their end
};

/// Runs steps on a component in a process of its own.
/// @param plan  MOX_FLASH_PLAN of the process; empty: none
RunnerOutcome runUpdate(const std::string& component, const std::vector<std::string>& steps,
                        const std::string& plan = "");

} // namespace mox::sweep
