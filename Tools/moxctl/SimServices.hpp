#pragma once
/// Starting and stopping the services of a run, for the verbs of the group "sim". The caller holds the RunLock.
#include "Launch.hpp"

#include <host/board/Description.hpp>
#include <host/run/Run.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mox::tools {

class Session;

/// "1011/Echo".
std::string serviceLabel(std::uint16_t node, const std::string& name);

/// How the services that run, or those that do not, are started; with `only` those of that node. Throws Failure when an
/// executable cannot be found.
enum class Which { running, down };
std::vector<LaunchRequest> requestsFor(Which which, const host::Run& run,
                                       const std::vector<std::string>& executableDirectories,
                                       std::optional<std::uint16_t> only);

/// Starts services and waits until they take messages; see bringUp. Throws Failure.
/// @return their labels
std::vector<std::string> startServices(Session& session, const std::vector<LaunchRequest>& requests, double seconds);

struct StoppedServices {
    std::vector<std::string> labels; ///< of those that ran
    unsigned killed = 0;             ///< those that did not end by themselves
};

/// Stops the services of the nodes, and removes the names that dead processes have left. Throws Failure.
/// @param seconds  how long they have for an end of their own
StoppedServices stopServices(Session& session, const std::vector<host::NodeDescription>& nodes, double seconds);

} // namespace mox::tools
