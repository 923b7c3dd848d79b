#pragma once
/// The command line: groups of verbs, each in a file of its own, below one set of global options.
#include "Session.hpp"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <functional>
#include <string>

namespace mox::tools {

using Command = std::function<void(Session&)>;

/// Built and parsed once.
class CommandLine {
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// A group of verbs, of which one must follow.
    CLI::App& addGroup(const char* name, const char* text);
    /// A group within a group.
    CLI::App& addGroup(CLI::App& above, const char* name, const char* text);
    /// A verb; the command runs after the whole line was found to be right.
    CLI::App& addVerb(CLI::App& group, const char* name, const char* text, Command command);

    CLI::App& app() { return m_app; }
    const GlobalOptions& globals() const { return m_globals; }
    /// What was asked for, after parsing.
    const Command& chosen() const { return m_chosen; }
    /// "moxctl msg send": the innermost level that was reached.
    std::string reachedLevel() const;
    /// What was wrong with a line that names no verb; empty when it names one.
    std::string missingVerb() const;

private:
    const CLI::App& innermost() const;

    GlobalOptions m_globals;
    CLI::App m_app;
    Command m_chosen;
};

/// A value that stands without an option before it. `name` is what help shows.
CLI::Option& addArgument(CLI::App& verb, const char* name, std::string& value, const std::string& text);

/// The option takes a whole number: decimal or 0x... Help shows it as N.
CLI::Option& takesNumber(CLI::Option& option, std::uint64_t least, std::uint64_t most);
/// The option takes a time in seconds, which may have a fraction.
CLI::Option& takesSeconds(CLI::Option& option);

/// The last line of help for verbs that do not take the first node where none is named.
constexpr const char* allNodesFooter = "For all nodes, or the one given by --node. Global options: see 'moxctl -h'.";

/// What a positional or option stands for, by the name that help shows: completion offers values for some of them.
namespace placeholder {
constexpr const char* receiver = "TO";
constexpr const char* service = "SERVICE";
constexpr const char* tag = "TAG";
constexpr const char* parameter = "PARAMETER";
constexpr const char* node = "NID";
constexpr const char* function = "FUNCTION";
constexpr const char* fault = "ID";
constexpr const char* directory = "DIR";
constexpr const char* file = "FILE";
} // namespace placeholder

// One file each.
void addSimVerbs(CommandLine& line);
void addPsVerbs(CommandLine& line);
void addMsgVerbs(CommandLine& line);
void addTagVerbs(CommandLine& line);
void addRadVerbs(CommandLine& line);
void addLogVerbs(CommandLine& line);
void addImageVerbs(CommandLine& line);
void addImageDiffVerb(CommandLine& line, CLI::App& group);
void addFwVerbs(CommandLine& line);
void addIdVerbs(CommandLine& line);
void addIdDecodeVerb(CommandLine& line, CLI::App& group);
void addDdalVerbs(CommandLine& line);
void addFlashVerbs(CommandLine& line);
void addCompletionVerbs(CommandLine& line);

} // namespace mox::tools
