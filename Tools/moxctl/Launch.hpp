#pragma once
/// Starting a service so that it outlives moxctl.
#include "ProcessFacts.hpp"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace mox::tools {

/// A service that this process has started.
struct Launched {
    std::uint16_t node = 0;
    std::string name;
    pid_t sandbox = -1;   ///< child of this process; ends with the service, with its status or 128 + signal
    ProcessFacts process; ///< the service itself; with process id 0 when it had ended at once
    std::string outputPath;
    std::int64_t outputBegin = 0; ///< size of the output file before the start
};

/// What to start.
struct LaunchRequest {
    std::string runPath;
    std::uint16_t node = 0;
    std::string name;
    std::vector<std::string> argv; ///< the executable's path, and arguments
    std::string outputPath;        ///< gets standard output and error, at its end
};

/// Starts a service in its node's sandbox, in a session of its own. Blocks until the sandbox stands.
/// Throws Failure, with what was printed meanwhile.
Launched launch(const LaunchRequest& request);

/// The last lines that a service has printed since it was started; at most 15.
std::vector<std::string> outputTail(const std::string& path, std::int64_t begin);

/// Finds a service's executable: an absolute path as it is, a name in `directories`, in MOX_EXE_PATH (separated by
/// colons), beside moxctl, and in PATH. Throws Failure (notFound) with the places that were looked at.
std::string findExecutable(const std::string& name, const std::vector<std::string>& directories);

/// The directory of this program.
std::string ownDirectory();

} // namespace mox::tools
