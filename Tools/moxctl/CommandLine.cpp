#include "CommandLine.hpp"

#include <host/pal/TypedValue.hpp>

#include <memory>
#include <utility>

namespace mox::tools {

namespace {

constexpr const char* description = "Runs simulated boards, and looks into them.";
constexpr const char* footer =
    "Data goes to standard output, everything else to standard error. Exit status: 0 done (also nothing to do),\n"
    "1 failed, 2 usage, 3 not found, 4 verification failed, 5 no run or engine unreachable, 124 time limit,\n"
    "130 interrupted.";

std::shared_ptr<CLI::Formatter> formatterFor(const char* whatFollows) {
    auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("SUBCOMMAND", whatFollows);
    formatter->label("Positionals", "Arguments");
    formatter->column_width(30);
    return formatter;
}

} // namespace

CLI::Option& addArgument(CLI::App& verb, const char* name, std::string& value, const std::string& text) {
    return *verb.add_option(name, value, text)->type_name("");
}

// The number is handed on in decimal, for the option's own conversion would take a leading zero for an octal number.
CLI::Option& takesNumber(CLI::Option& option, std::uint64_t least, std::uint64_t most) {
    const auto read = [least, most](std::string& text) -> std::string {
        const auto number = host::parseNumber(text);
        if (!number || *number < least || *number > most) {
            return "expected a number from " + std::to_string(least) + " to " + std::to_string(most) + ", got '" +
                   text + "'";
        }
        text = std::to_string(*number);
        return "";
    };
    return *option.type_name("N")->transform(CLI::Validator(read, ""));
}

CLI::Option& takesSeconds(CLI::Option& option) {
    const auto read = [](std::string& text) -> std::string {
        constexpr double most = 1e6;
        double seconds = -1;
        return CLI::detail::lexical_cast(text, seconds) && seconds >= 0 && seconds <= most
                   ? ""
                   : "expected seconds from 0 to 1000000, such as 2.5, got '" + text + "'";
    };
    return *option.type_name("SECONDS")->check(CLI::Validator(read, ""));
}

CommandLine::CommandLine() : m_app(description, "moxctl") {
    m_app.set_help_flag("-h,--help", "Print this help and end");
    m_app.set_version_flag("--version", "moxctl " MOXCTL_VERSION)->description("Print the version and end");
    m_app.formatter(formatterFor("GROUP VERB"));
    m_app.footer(footer);
    m_app.require_subcommand(1);
    // Global options may stand behind the verb, too.
    m_app.fallthrough();
    m_app.add_option("--run", m_globals.run, "The run's directory (default: MOX_RUN)")
        ->type_name(placeholder::directory);
    m_app.add_option("--node", m_globals.node, "Node id, hexadecimal (default: MOX_NODE, else the run's first node)")
        ->type_name(placeholder::node);
    m_app.add_flag("--json", m_globals.json, "Results and errors as JSON");
    m_app.add_flag("--quiet", m_globals.quiet, "No remarks on standard error");
    m_app.add_flag("-v,--verbose", m_globals.verbose, "More remarks on standard error");
}

CLI::App& CommandLine::addGroup(const char* name, const char* text) {
    return addGroup(m_app, name, text);
}

CLI::App& CommandLine::addGroup(CLI::App& above, const char* name, const char* text) {
    CLI::App* group = above.add_subcommand(name, text);
    group->group("Groups");
    group->formatter(formatterFor("VERB"));
    group->require_subcommand(1);
    group->footer("Global options: see 'moxctl -h'.");
    return *group;
}

CLI::App& CommandLine::addVerb(CLI::App& group, const char* name, const char* text, Command command) {
    CLI::App* verb = group.add_subcommand(name, text);
    verb->group("Verbs");
    verb->footer("Global options: see 'moxctl -h'.");
    verb->callback([this, command = std::move(command)] { m_chosen = command; });
    return *verb;
}

const CLI::App& CommandLine::innermost() const {
    const CLI::App* level = &m_app;
    while (!level->get_subcommands().empty()) {
        level = level->get_subcommands().front();
    }
    return *level;
}

std::string CommandLine::reachedLevel() const {
    std::string name;
    for (const CLI::App* level = &innermost(); level != nullptr; level = level->get_parent()) {
        name.insert(0, level->get_name() + (name.empty() ? "" : " "));
    }
    return name;
}

std::string CommandLine::missingVerb() const {
    std::string names;
    for (const CLI::App* below : innermost().get_subcommands(nullptr)) {
        if (!below->get_group().empty()) {
            names += (names.empty() ? "" : ", ") + below->get_name();
        }
    }
    if (names.empty()) {
        return "";
    }
    const std::vector<std::string> unknown = m_app.remaining(true);
    return "expected " + names + (unknown.empty() ? "" : ", got '" + unknown.front() + "'");
}

} // namespace mox::tools
