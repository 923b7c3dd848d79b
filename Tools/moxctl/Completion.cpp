#include "Boards.hpp"
#include "CommandLine.hpp"
#include "Failure.hpp"
#include "RadAccess.hpp"
#include "RunView.hpp"

#include <host/faults/Functions.hpp>
#include <host/faults/Plan.hpp>
#include <host/run/Run.hpp>

#include <array>
#include <memory>
#include <set>

namespace mox::tools {

namespace {

/// What can follow a word that help shows as `shown`: a shell command that prints the values.
struct ValueRow {
    const char* shown;
    const char* command;
};

constexpr std::array valueTable{
    ValueRow{placeholder::receiver, "_moxctl_values services"},
    ValueRow{placeholder::service, "_moxctl_values services"},
    ValueRow{placeholder::tag, "_moxctl_values tags"},
    ValueRow{"PREFIX", "_moxctl_values tags"},
    ValueRow{placeholder::parameter, "_moxctl_values parameters"},
    ValueRow{placeholder::node, "_moxctl_values nodes"},
    ValueRow{"FILE|NAME", "{ _moxctl_values boards; compgen -f -- \"$current\"; }"},
    ValueRow{placeholder::directory, "compgen -d -- \"$current\""},
    ValueRow{placeholder::file, "compgen -f -- \"$current\""},
    ValueRow{"PAYLOAD", "compgen -f -- \"$current\""},
    ValueRow{"COMPONENT", "echo uboot bmu fpga"},
    ValueRow{placeholder::function, "_moxctl_values functions"},
    ValueRow{placeholder::fault, "_moxctl_values faults"},
    ValueRow{"MODE", "echo stuck garbage"},
    ValueRow{"LEVEL", "echo debug info warning error"},
    ValueRow{"TYPE", "echo bytes text u8 u16 u32 u64"},
};

constexpr const char* scriptBegin = R"(# bash completion of moxctl: source <(moxctl completion bash)
_moxctl_values() {
    "${COMP_WORDS[0]}" "${globals[@]}" completion values "$1" 2>/dev/null
}

_moxctl() {
    local current=$2 previous=$3 level=moxctl words="" i
    local -a globals=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --run | --node) globals+=("${COMP_WORDS[i]}" "${COMP_WORDS[i + 1]}") ;;
        esac
        case "$level ${COMP_WORDS[i]}" in
)";

constexpr const char* scriptEnd = R"(    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _moxctl moxctl
)";

/// The command for the values of a word; empty: nothing is offered.
std::string valuesOf(const std::string& shown) {
    for (const ValueRow& row : valueTable) {
        if (shown == row.shown) {
            return row.command;
        }
    }
    return "";
}

struct Level {
    std::string path; ///< "moxctl msg send"
    const CLI::App* app;
};

void collect(std::vector<Level>& levels, const std::string& path, const CLI::App& app) {
    levels.push_back({path, &app});
    for (const CLI::App* below : app.get_subcommands(nullptr)) {
        if (!below->get_group().empty()) {
            collect(levels, path + " " + below->get_name(), *below);
        }
    }
}

/// Names of groups or verbs, and of options, as a reader would type them.
std::string wordsOf(const CLI::App& app) {
    std::string words;
    for (const CLI::App* below : app.get_subcommands(nullptr)) {
        words += below->get_group().empty() ? "" : below->get_name() + " ";
    }
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            words += "--" + name + " ";
        }
    }
    return words.substr(0, words.find_last_not_of(' ') + 1);
}

std::string caseOf(const std::string& pattern, const std::string& command) {
    return "    " + pattern + ") words=" + command + " ;;\n";
}

/// Options that take a value, over all levels; the same option takes the same everywhere.
std::string optionCases(const std::vector<Level>& levels) {
    std::set<std::string> seen;
    std::string cases;
    for (const Level& level : levels) {
        for (const CLI::Option* option : level.app->get_options()) {
            const std::string values = valuesOf(option->get_type_name());
            for (const std::string& name : option->get_lnames()) {
                if (!values.empty() && seen.insert(name).second) {
                    cases += caseOf("*:--" + name, "$(" + values + ")");
                }
            }
        }
    }
    return cases;
}

std::string levelCases(const std::vector<Level>& levels) {
    std::string cases;
    for (const Level& level : levels) {
        std::string words = wordsOf(*level.app);
        for (const CLI::Option* option : level.app->get_options()) {
            const std::string values = option->get_positional() ? valuesOf(option->get_name(true, false)) : "";
            if (!values.empty()) {
                words += " $(" + values + ")";
                break;
            }
        }
        cases += caseOf("\"" + level.path + "\":*", "\"" + words + "\"");
    }
    return cases;
}

std::string bashScript(const CLI::App& app) {
    std::vector<Level> levels;
    collect(levels, app.get_name(), app);
    std::string paths;
    for (const Level& level : levels) {
        if (level.app != &app) {
            paths += (paths.empty() ? "        \"" : " | \\\n        \"") + level.path + "\"";
        }
    }
    return scriptBegin + paths + ") level+=\" ${COMP_WORDS[i]}\" ;;\n        esac\n    done\n" +
           "    case $level:$previous in\n" + optionCases(levels) + levelCases(levels) + scriptEnd;
}

std::set<std::string> serviceNames(Session& session) {
    std::set<std::string> names;
    const host::Run& run = session.run();
    for (const host::NodeDescription& node : nodesOf(run, run.node())) {
        for (const host::ServiceDescription& service : node.services) {
            names.insert(service.name);
        }
    }
    return names;
}

std::set<std::string> nodeNames(Session& session) {
    std::set<std::string> names;
    for (const host::NodeDescription& node : nodesOf(session.run(), std::nullopt)) {
        names.insert(host::hex4(node.id));
    }
    return names;
}

std::set<std::string> tagNames(Session& session) {
    std::set<std::string> names;
    for (const host::PublicTag& tag : host::listTags(session.run().store(), "")) {
        names.insert(tag.name);
    }
    return names;
}

/// Names with blanks would fall apart in the shell; those parameters have their numbers.
std::set<std::string> parameterNames(Session& session) {
    std::set<std::string> names;
    const host::Run& run = session.run();
    for (const host::RadParameter& parameter : openRad(run, run.node())->list()) {
        if (parameter.name.find(' ') == std::string::npos) {
            names.insert(parameter.name);
        }
    }
    return names;
}

std::set<std::string> boardNames(Session& /*session*/) {
    std::set<std::string> names;
    for (const Board& board : readyMadeBoards()) {
        names.insert(board.name);
    }
    return names;
}

std::set<std::string> functionNames(Session& /*session*/) {
    std::set<std::string> names;
    for (const auto& [name, function] : host::faults::functions()) {
        names.emplace(name);
    }
    return names;
}

std::set<std::string> faultIds(Session& session) {
    std::set<std::string> ids;
    std::string why; // whoever completes a line does not read it
    if (const auto plan = host::faults::Plan::open(session.run().path(), why)) {
        for (const host::faults::PlannedFault& fault : plan->list()) {
            ids.insert(std::to_string(fault.id));
        }
    }
    return ids;
}

struct Kind {
    const char* name;
    std::set<std::string> (*values)(Session&);
};

constexpr std::array kinds{Kind{"services", serviceNames}, Kind{"nodes", nodeNames},
                           Kind{"tags", tagNames},         Kind{"parameters", parameterNames},
                           Kind{"boards", boardNames},     Kind{"functions", functionNames},
                           Kind{"faults", faultIds}};

void printValues(Session& session, const std::string& name) {
    for (const Kind& kind : kinds) {
        if (name == kind.name) {
            for (const std::string& value : kind.values(session)) {
                session.output().raw(value + "\n");
            }
            return;
        }
    }
    throw Failure(ExitStatus::usage,
                  "expected services, nodes, tags, parameters, boards, functions or faults, got '" + name + "'");
}

} // namespace

void addCompletionVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("completion", "Completion of command lines in a shell");
    line.addVerb(group, "bash", "Prints a script for bash: source <(moxctl completion bash)",
                 [&line](Session& session) { session.output().raw(bashScript(line.app())); });
    const auto kind = std::make_shared<std::string>();
    CLI::App& values = line.addVerb(group, "values", "Prints what can stand in a place, for the script",
                                    [kind](Session& session) { printValues(session, *kind); });
    values.group(""); // not for people
    addArgument(values, "KIND", *kind, "services, nodes, tags, parameters, boards, functions or faults").required();
}

} // namespace mox::tools
