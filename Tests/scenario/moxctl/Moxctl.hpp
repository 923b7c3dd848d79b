#pragma once
/// Runs moxctl on runs of a test's own.
#include <nlohmann/json.hpp>
#include <support/CommandRun.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace mox::testing {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

/// The environment for moxctl: nothing that the test's caller has set for it, and the given changes.
CommandSetting settingFor(std::vector<std::pair<std::string, std::optional<std::string>>> changes);

/// Runs moxctl without a run.
CommandResult moxctlAlone(const Words& words);

/// The words that start moxctl.
Words moxctlWords(const Words& words);

/// A directory of its own, removed with the object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    const std::string& path() const { return m_path; }
    /// Writes a file below the directory. @return its path
    std::string write(const std::string& name, const std::string& text) const;

private:
    std::string m_path;
};

/// One service of a board, as a description has it.
struct ServiceRow {
    std::string name;
    std::string executable;
    Words arguments;
};

/// A description with one node of the id and the services, none with a CPID.
std::string boardWith(const std::vector<ServiceRow>& services, const std::string& node = "0x1011");

/// A run made by moxctl from a description (default: the pair of echo services), whose services end with the object.
class SimulatedRun {
public:
    SimulatedRun() : SimulatedRun("") {}
    /// @param board      text of a description; empty: the ready-made "echo-pair"
    /// @param directory  name of the run's directory
    explicit SimulatedRun(const std::string& board, const std::string& directory = "run");
    ~SimulatedRun();

    CommandResult moxctl(const Words& words) const { return runCommand(moxctlWords(words), setting()); }
    /// With --json; the answer must be one well-formed value on standard output, and the status 0.
    Json json(const Words& words) const;
    CommandSetting setting() const;
    /// Starts the services; fails the test otherwise.
    void up() const;

    const std::string& path() const { return m_path; }
    const TemporaryDirectory& directory() const { return m_directory; }
    /// The process of a node's service, by 'sim status'.
    pid_t pidOf(const std::string& node, const std::string& service) const;

private:
    TemporaryDirectory m_directory;
    std::string m_path;
};

/// Kills a process, and blocks until it has ended.
void killProcess(pid_t pid);

/// Each line as a value of its own. Throws on a line that is none.
std::vector<Json> jsonLines(const std::string& text);

} // namespace mox::testing
