#include "CommandLine.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <map>

namespace mox::tools {

namespace {

const Listing processListing{"moxctl.processes.1",
                             "processes",
                             {{"NODE", "node"},
                              {"PID", "pid"},
                              {"NAME", "name"},
                              {"KIND", "kind"},
                              {"STATE", "state"},
                              {"CPIDS", "cpids"},
                              {"RSS/KiB", "residentKib"}}};

/// Processes of a node: those that were started as its services, and all that have joined it on their own.
Json processesOf(const host::Run& run, const host::NodeDescription& node) {
    std::map<std::uint32_t, std::string> services;
    const StartedServices started(run);
    for (const host::ServiceDescription& service : node.services) {
        if (const auto process = started.find(node.id, service.name)) {
            services.emplace(process->pid, service.name);
        }
    }
    std::map<std::uint32_t, std::string> all = services;
    for (const std::uint32_t pid : joinedProcesses(run, node.id)) {
        all.emplace(pid, "");
    }
    const auto endpoints = endpointsOf(run, node.id);
    Json items = Json::array();
    for (const auto& [pid, service] : all) {
        const auto process = readProcess(pid);
        if (!process) {
            continue;
        }
        Json item{{"node", host::hex4(node.id)}, {"pid", pid}, {"name", service.empty() ? process->name : service}};
        item["kind"] = service.empty() ? "other" : "service";
        item["state"] = serviceState(run, node.id, item["name"]);
        item["cpids"] = cpidTexts(cpidsOf(endpoints, pid));
        item["residentKib"] = process->residentKib;
        items.push_back(std::move(item));
    }
    return items;
}

void listProcesses(Session& session) {
    const host::Run& run = session.run();
    Json items = Json::array();
    for (const host::NodeDescription& node : nodesOf(run, session.namedNode())) {
        for (Json& item : processesOf(run, node)) {
            items.push_back(std::move(item));
        }
    }
    session.output().list(processListing, items);
}

} // namespace

void addPsVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("ps", "Processes of the run");
    line.addVerb(group, "list", "Lists services, and other processes that have joined.", listProcesses)
        .footer(allNodesFooter);
}

} // namespace mox::tools
