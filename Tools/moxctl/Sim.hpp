#pragma once
/// The verbs of the group "sim" that take more than a few lines; Sim.cpp puts them on the command line.
#include <optional>
#include <string>
#include <vector>

namespace mox::tools {

class Session;

struct SimOptions {
    std::string directory; ///< empty: as the global options say
    std::string board;
    bool listBoards = false;
    double seconds = 0; ///< see the verbs
    std::vector<std::string> executableDirectories;
};

/// Starts every service of the run that does not run, and waits until all have begun to take messages.
///
/// A service is ready when one of the endpoints that its process has registered answers an echo-route request. Each
/// service's loop does so, whatever its name, its CPID and its state parameter are, and not before it was initialised.
///
/// When one ends, or the time is up, those that this call has started are stopped again. Throws Failure.
void bringUp(Session& session, const SimOptions& options);

/// Stops every service that was started, and removes the names that dead processes have left. Throws Failure.
void takeDown(Session& session, const SimOptions& options);

/// Resets the devices of the run's nodes: what was written to flash is loaded. Services that run are stopped before and
/// started again behind it. Throws Failure; a service that does not come up again leaves all of them down.
void resetNodes(Session& session, const SimOptions& options);

} // namespace mox::tools
