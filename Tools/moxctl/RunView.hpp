#pragma once
/// What runs in a run: its nodes, the endpoints that are registered, the services that were started.
#include "ProcessFacts.hpp"

#include <host/board/Description.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mox::host {
class Run;
class Store;
} // namespace mox::host

namespace mox::tools {

/// The nodes of a run by ascending id; with `only`, that one alone (which exists: see Session::run).
std::vector<host::NodeDescription> nodesOf(const host::Run& run, std::optional<std::uint16_t> only);

/// An endpoint that a living process has registered.
struct RegisteredEndpoint {
    std::uint16_t cpid = 0;
    std::uint32_t pid = 0;
};

/// By ascending CPID.
std::vector<RegisteredEndpoint> endpointsOf(const host::Run& run, std::uint16_t node);
/// The CPIDs of one process, ascending.
std::vector<std::uint16_t> cpidsOf(const std::vector<RegisteredEndpoint>& endpoints, std::uint32_t pid);

/// "0x0600" of each.
std::vector<std::string> cpidTexts(const std::vector<std::uint16_t>& cpids);

/// Processes that have joined the node, by ascending id.
std::vector<std::uint32_t> joinedProcesses(const host::Run& run, std::uint16_t node);

/// Removes the names that dead processes have left in the node's directory.
/// @return how many
unsigned removeDeadSockets(const host::Run& run, std::uint16_t node);

/// The services that 'sim up' has started; the record stays when a service dies.
class StartedServices {
public:
    explicit StartedServices(const host::Run& run);

    /// The service's process, if it lives.
    std::optional<ProcessFacts> find(std::uint16_t node, const std::string& name) const;
    void remember(std::uint16_t node, const std::string& name, const ProcessFacts& process);
    void forget(std::uint16_t node, const std::string& name);

private:
    host::Store& m_store;
};

/// A service's state parameter as its process writes it: "not started", "starting", "waiting", "handling", "ended",
/// "failed", another value in hexadecimal; empty when the node has no state parameter for a service of that name.
/// The parameter is found by its name: the service's with "State" or "SState" behind it, as in "PowerState",
/// "IpSState".
std::string serviceState(const host::Run& run, std::uint16_t node, const std::string& service);

} // namespace mox::tools
