#include "Sim.hpp"

#include "Boards.hpp"
#include "CommandLine.hpp"
#include "Failure.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <host/board/CreateRun.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <iterator>
#include <memory>

namespace mox::tools {

namespace {

const Listing boardListing{
    "moxctl.boards.1", "boards", {{"NAME", "name"}, {"NODES", "nodes"}, {"SERVICES", "services"}, {"TEXT", "text"}}};

const Listing serviceListing{"moxctl.services.1",
                             "services",
                             {{"NODE", "node"},
                              {"SERVICE", "name"},
                              {"PID", "pid"},
                              {"STATE", "state"},
                              {"CPIDS", "cpids"},
                              {"UP SINCE", "upSince"}}};

host::Description parse(const Board& board) {
    host::DescriptionError error;
    auto description = host::parseDescription(board.text, board.file, error);
    if (!description) {
        throw Failure(ExitStatus::usage, error.message());
    }
    return std::move(*description);
}

void listBoards(const Output& output) {
    Json items = Json::array();
    for (const Board& board : readyMadeBoards()) {
        const host::Description description = parse(board);
        Json nodes = Json::array();
        Json services = Json::array();
        for (const host::NodeDescription& node : description.nodes) {
            nodes.push_back(host::hex4(node.id));
            for (const host::ServiceDescription& service : node.services) {
                services.push_back(service.name);
            }
        }
        items.push_back({{"name", board.name},
                         {"text", description.name},
                         {"nodes", nodes},
                         {"services", services},
                         {"file", board.file}});
    }
    output.list(boardListing, items);
}

void makeRun(Session& session, const SimOptions& options) {
    if (options.listBoards) {
        listBoards(session.output());
        return;
    }
    if (options.directory.empty()) {
        throw Failure(ExitStatus::usage, "expected the DIR to make (see 'moxctl sim new -h')");
    }
    const Board board = readBoard(options.board.empty() ? defaultBoard : options.board);
    const host::Description description = parse(board);
    std::string why;
    if (!host::createRun(options.directory, board.text, board.file, why)) {
        throw Failure(ExitStatus::failed, why);
    }
    session.output().object({{"run", options.directory}, {"board", board.name}, {"nodes", description.nodes.size()}});
    session.output().note("made " + options.directory + " from " + board.file);
}

Json statusOf(const host::Run& run, const host::NodeDescription& node) {
    const StartedServices started(run);
    const auto endpoints = endpointsOf(run, node.id);
    Json items = Json::array();
    for (const host::ServiceDescription& service : node.services) {
        Json item{{"node", host::hex4(node.id)}, {"name", service.name}, {"executable", service.executable}};
        const auto process = started.find(node.id, service.name);
        const std::string state = process ? serviceState(run, node.id, service.name) : "down";
        item["state"] = state.empty() ? "running" : state;
        item["pid"] = process ? Json(process->pid) : Json();
        item["cpids"] = process ? Json(cpidTexts(cpidsOf(endpoints, process->pid))) : Json::array();
        item["upSince"] = process ? Json(showTime(startTime(*process))) : Json();
        items.push_back(std::move(item));
    }
    return items;
}

void showStatus(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const std::string engine = host::readEngine(run.store());
    Json nodes = Json::array();
    Json services = Json::array();
    for (const host::NodeDescription& node : nodesOf(run, session.namedNode())) {
        Json items = statusOf(run, node);
        services.insert(services.end(), items.begin(), items.end());
        nodes.push_back({{"node", host::hex4(node.id)}, {"name", node.name}, {"unit", node.unit.id}});
    }
    session.output().object({{"schema", "moxctl.status.1"},
                             {"run", run.path()},
                             {"engine", engine},
                             {"nodes", nodes},
                             {"services", services}});
    if (!session.output().isJson()) {
        session.output().line("run " + run.path() + ", " + std::to_string(nodes.size()) +
                              (nodes.size() == 1 ? " node" : " nodes") + ", engine " + engine);
        session.output().list(serviceListing, services);
    }
}

using Shared = std::shared_ptr<SimOptions>;

void addDirectory(CLI::App& verb, const Shared& options) {
    addArgument(verb, "DIR", options->directory, "The run (default: --run, else MOX_RUN)");
    verb.footer(allNodesFooter);
}

void addNew(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "new", "Makes a run from a board description.",
                                  [options](Session& session) { makeRun(session, *options); });
    addArgument(verb, "DIR", options->directory, "Directory to make; one that exists must be empty");
    verb.add_option("--board", options->board,
                    std::string("A description's file, or the name of a ready-made one (default: ") + defaultBoard +
                        ")")
        ->type_name("FILE|NAME");
    verb.add_flag("--list", options->listBoards, "List the ready-made descriptions and end");
}

void addStartOptions(CLI::App& verb, const Shared& options) {
    takesSeconds(*verb.add_option("--wait", options->seconds, "Limit of the wait; status 124 when it is reached"))
        .default_val(30);
    verb.add_option("--exe-dir", options->executableDirectories,
                    "Where executables are; may be repeated. Then come MOX_EXE_PATH, moxctl's directory and PATH")
        ->type_name(placeholder::directory)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addUp(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb =
        line.addVerb(group, "up", "Starts the services that do not run, and waits until they take messages.",
                     [options](Session& session) { bringUp(session, *options); });
    addDirectory(verb, options);
    addStartOptions(verb, options);
}

void addDown(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "down", "Stops the services that were started.",
                                  [options](Session& session) { takeDown(session, *options); });
    addDirectory(verb, options);
    takesSeconds(
        *verb.add_option("--wait", options->seconds, "How long services may take to end before they are killed"))
        .default_val(5);
}

void addReset(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "reset",
                                  "Resets the devices: what was written to flash is loaded. Services that run are "
                                  "stopped and started again.",
                                  [options](Session& session) { resetNodes(session, *options); });
    addDirectory(verb, options);
    addStartOptions(verb, options);
}

} // namespace

void addSimVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("sim", "Simulated boards: make, start, stop, look");
    addNew(line, group, std::make_shared<SimOptions>());
    addUp(line, group, std::make_shared<SimOptions>());
    addDown(line, group, std::make_shared<SimOptions>());
    addReset(line, group, std::make_shared<SimOptions>());
    const auto options = std::make_shared<SimOptions>();
    CLI::App& status =
        line.addVerb(group, "status", "Shows nodes and services: process, state, registered CPIDs, since when.",
                     [options](Session& session) { showStatus(session, *options); });
    addDirectory(status, options);
}

} // namespace mox::tools
