#include "sweep/RunnerProcess.hpp"

#include "support/CommandRun.hpp"

#include <csignal>
#include <sstream>
#include <stdexcept>

namespace mox::sweep {

RunnerOutcome runUpdate(const std::string& component, const std::vector<std::string>& steps, const std::string& plan) {
    std::vector<std::string> argv{MOX_UPDATE_RUNNER, component};
    argv.insert(argv.end(), steps.begin(), steps.end());
    testing::CommandSetting setting;
    setting.environment = {{"MOX_LOG", "off"}, {"MOX_FLASH_PLAN", plan}};
    const testing::CommandResult result = testing::runCommand(argv, setting);
    RunnerOutcome outcome;
    outcome.wasKilled = result.status == 128 + SIGKILL;
    if (!outcome.wasKilled && result.status != 0)
        throw std::runtime_error("the runner ended with status " + std::to_string(result.status) + ": " + result.err);
    std::istringstream lines(result.out);
    for (int number = 0; lines >> number;)
        outcome.results.push_back(number);
    return outcome;
}

} // namespace mox::sweep
