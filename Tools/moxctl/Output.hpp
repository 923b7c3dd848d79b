#pragma once
/// Where a command's results go: data to standard output, everything else to standard error.
#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace mox::tools {

class Failure;
using Json = nlohmann::ordered_json;

/// A list as both people and programs get it.
struct Listing {
    /// One column of the table: its title, and which member of an item it shows.
    struct Column {
        const char* title;
        const char* member;
    };
    const char* schema; ///< such as "moxctl.processes.1"; the number grows when a member changes its meaning
    const char* member; ///< under which the items stand in the object
    std::vector<Column> columns;
};

/// First thread. Every line is written at once, so that a reader of a stream sees it.
class Output {
public:
    Output(bool json, bool quiet, bool verbose) : m_json(json), m_quiet(quiet), m_verbose(verbose) {}

    bool isJson() const { return m_json; }
    bool isQuiet() const { return m_quiet; }
    bool isVerbose() const { return m_verbose; }

    /// A table, or one object with "schema" and the items. Throws Failure when standard output takes no more.
    void list(const Listing& listing, const Json& items) const;
    /// One object on one line; only with --json, else nothing. Throws as list.
    void object(const Json& object) const;
    /// A line of data; only without --json, else nothing. Throws as list.
    void line(const std::string& text) const;
    /// Data as it stands, with and without --json. Throws as list.
    void raw(const std::string& text) const;
    /// Progress and remarks, unless --quiet was given.
    void note(const std::string& text) const;
    /// Remarks that only --verbose asks for.
    void detail(const std::string& text) const;
    /// What ended the command; nothing for a reader that has gone.
    void failure(const Failure& failure) const;

private:
    bool m_json;
    bool m_quiet;
    bool m_verbose;
};

/// A member's value as a table shows it: "-" for nothing, items of a list joined by commas.
std::string cellText(const Json& value);

} // namespace mox::tools
