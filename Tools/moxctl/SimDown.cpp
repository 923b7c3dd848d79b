#include "RunLock.hpp"
#include "RunView.hpp"
#include "Session.hpp"
#include "Sim.hpp"
#include "SimServices.hpp"
#include "StopProcesses.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

namespace mox::tools {

StoppedServices stopServices(Session& session, const std::vector<host::NodeDescription>& nodes, double seconds) {
    const host::Run& run = session.run();
    StartedServices started(run);
    StoppedServices stopped;
    std::vector<ProcessFacts> processes;
    for (const host::NodeDescription& node : nodes) {
        for (const host::ServiceDescription& service : node.services) {
            if (const auto process = started.find(node.id, service.name)) {
                processes.push_back(*process);
                stopped.labels.push_back(serviceLabel(node.id, service.name));
            }
        }
    }
    stopped.killed = stopProcesses(processes, seconds);
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
    return stopped;
}

void takeDown(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const RunLock lock(run);
    const StoppedServices stopped = stopServices(session, nodesOf(run, session.namedNode()), options.seconds);
    session.output().object({{"stopped", stopped.labels}, {"killed", stopped.killed}});
    session.output().note(stopped.labels.empty() ? "nothing to do: no service runs"
                                                 : "stopped " + cellText(stopped.labels));
}

} // namespace mox::tools
