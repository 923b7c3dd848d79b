#pragma once
/// Runs programs as a person or script would: arguments, environment and standard input go in, both streams and the
/// exit status come out.
#include <sys/types.h>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace mox::testing {

struct CommandResult {
    int status = -1; ///< exit status, or 128 + signal
    std::string out;
    std::string err;
};

void PrintTo(const CommandResult& result, std::ostream* stream);

struct CommandSetting {
    /// Set (or, without a value, removed) for the program; everything else is as for the test.
    std::vector<std::pair<std::string, std::optional<std::string>>> environment;
    std::string input;
    /// The program is killed and std::runtime_error thrown when it takes longer.
    std::chrono::seconds limit{30};
};

/// A program that runs while the test does something else. Destroyed, it is killed if it has not ended.
class RunningCommand {
public:
    explicit RunningCommand(const std::vector<std::string>& argv, const CommandSetting& setting = {});
    ~RunningCommand();
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    /// Blocks until standard output (or error) holds a text. Throws std::runtime_error when the limit is reached or
    /// the program ends without.
    void waitForOut(const std::string& text) { waitFor(m_result.out, text); }
    void waitForErr(const std::string& text) { waitFor(m_result.err, text); }
    void signal(int number) const;
    pid_t pid() const { return m_pid; }
    /// Blocks until the program has ended, and everything that holds its streams. Throws std::runtime_error when the
    /// limit is reached.
    CommandResult finish();

private:
    void waitFor(const std::string& stream, const std::string& text);
    bool readSome();

    std::chrono::steady_clock::time_point m_deadline;
    pid_t m_pid = -1;
    int m_out = -1;
    int m_err = -1;
    CommandResult m_result;
    bool m_waited = false;
};

/// Runs a program to its end.
CommandResult runCommand(const std::vector<std::string>& argv, const CommandSetting& setting = {});

} // namespace mox::testing
