#include "Failure.hpp"
#include "Numbers.hpp"
#include "RunLock.hpp"
#include "RunView.hpp"
#include "Session.hpp"
#include "Sim.hpp"
#include "SimServices.hpp"

#include <host/ddal/ActiveState.hpp>
#include <host/ddal/Reset.hpp>
#include <nlohmann/json.hpp>

#include <array>

namespace mox::tools {

namespace {

constexpr double secondsToStop = 5;

/// What the devices of a node run now.
Json devicesOf(const host::Run& run, const host::NodeDescription& node) {
    static constexpr std::array locations{"primary", "backup", "ram"};
    Json state{{"node", host::hex4(node.id)}};
    if (const auto& boot = node.devices.boot) {
        const host::RunningBoot running = host::runningBoot(run.store(), node.id, *boot);
        const bool isKnown = running.location < locations.size();
        state["boot"] = {{"location", isKnown ? locations[running.location] : "unknown"}, {"version", running.version}};
    }
    state["fpgas"] = Json::array();
    for (const host::FpgaDevice& fpga : node.devices.fpgas) {
        state["fpgas"].push_back(
            {{"id", showHex(fpga.id, 1)}, {"version", host::activeVersion(run.store(), node.id, fpga)}});
    }
    return state;
}

Json resetDevices(const host::Run& run, const std::vector<host::NodeDescription>& nodes) {
    Json states = Json::array();
    for (const host::NodeDescription& node : nodes) {
        if (!host::resetNode(run, node.id)) {
            throw Failure(ExitStatus::failed, "the devices of node " + host::hex4(node.id) + " cannot be reset");
        }
        states.push_back(devicesOf(run, node));
    }
    return states;
}

std::string namesOf(const std::vector<host::NodeDescription>& nodes) {
    Json names = Json::array();
    for (const host::NodeDescription& node : nodes) {
        names.push_back(host::hex4(node.id));
    }
    return cellText(names);
}

} // namespace

void resetNodes(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const RunLock lock(run);
    const auto nodes = nodesOf(run, session.namedNode());
    const auto requests = requestsFor(Which::running, run, options.executableDirectories, session.namedNode());
    const StoppedServices stopped = stopServices(session, nodes, secondsToStop);
    const Json states = resetDevices(run, nodes);
    const auto labels = startServices(session, requests, options.seconds);
    session.output().object(
        {{"schema", "moxctl.reset.1"}, {"reset", states}, {"started", labels}, {"killed", stopped.killed}});
    session.output().note("reset " + namesOf(nodes) + (labels.empty() ? "" : ", started " + cellText(labels)));
}

} // namespace mox::tools
