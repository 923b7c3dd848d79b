#include "RunLock.hpp"
#include "RunView.hpp"
#include "Session.hpp"
#include "Sim.hpp"
#include "StopProcesses.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

namespace mox::tools {

void takeDown(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const RunLock lock(run);
    StartedServices started(run);
    std::vector<ProcessFacts> processes;
    Json names = Json::array();
    const auto nodes = nodesOf(run, session.namedNode());
    for (const host::NodeDescription& node : nodes) {
        for (const host::ServiceDescription& service : node.services) {
            if (const auto process = started.find(node.id, service.name)) {
                processes.push_back(*process);
                names.push_back(host::hex4(node.id) + "/" + service.name);
            }
        }
    }
    const unsigned killed = stopProcesses(processes, options.seconds);
    for (const host::NodeDescription& node : nodes) {
        for (const host::ServiceDescription& service : node.services) {
            started.forget(node.id, service.name);
        }
        removeDeadSockets(run, node.id);
        for (const std::uint32_t pid : joinedProcesses(run, node.id)) {
            session.output().note("process " + std::to_string(pid) + " of node " + host::hex4(node.id) +
                                  " goes on: it was not started by 'sim up'");
        }
    }
    session.output().object({{"stopped", names}, {"killed", killed}});
    session.output().note(names.empty() ? "nothing to do: no service runs" : "stopped " + cellText(names));
}

} // namespace mox::tools
