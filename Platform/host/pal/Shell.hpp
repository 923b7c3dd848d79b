#pragma once
/// Commands given to a process from outside.
///
/// A command and its answer are notices (Topic::shellCommand). Body: `Q`, a token of 4 bytes, and the words, each ended
/// by a null byte; or `A`, the token, the status in 4 bytes, and the text. Numbers are little-endian.
#include "../bus/Process.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mox::host::shell {

/// What a command has answered. Status 0 is success, 1 and above the command's own; the platform's are negative.
struct Answer {
    std::int32_t status = 0;
    std::string text;
};
constexpr std::int32_t unknownCommand = -1;
constexpr std::int32_t notOffered = -2; ///< AaShellApplicationStartup has not been called

/// Gives a command to a process of the run and waits for its answer. The calling process must have called
/// startProcess().
/// @return nothing: the process is gone, or has not answered within the time
/// Any thread but those that serve commands and notices.
std::optional<Answer> ask(ProcessAddress process, const std::vector<std::string>& words, std::uint32_t timeoutMs);

/// Commands that every process takes, whether or not it has called AaShellApplicationStartup: `@help` lists what there
/// is, others are added by parts of the platform. A command of the application of the same name comes first.
using Builtin = std::function<Answer(const std::vector<std::string>& words)>;
void addBuiltin(const std::string& name, const std::string& help, Builtin builtin);

/// Runs a function on the thread that runs all commands, and waits for it.
void onCommandThread(const std::function<void()>& function);

/// Has commands from outside reach this process; done by whoever has something to offer. Any thread, any number of
/// times.
void listen();

} // namespace mox::host::shell
