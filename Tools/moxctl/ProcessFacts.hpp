#pragma once
/// What the operating system tells about a process.
#include <cstdint>
#include <optional>
#include <string>

namespace mox::tools {

struct ProcessFacts {
    std::uint32_t pid = 0;
    std::uint32_t parent = 0;
    std::uint32_t session = 0;
    std::string name;              ///< file name of what it was started as
    std::uint64_t startTicks = 0;  ///< since the machine's start; with the pid it names one process for good
    std::uint64_t residentKib = 0; ///< resident memory
};

/// @return nothing for a process that has ended, also while its parent has not asked for its status
std::optional<ProcessFacts> readProcess(std::uint32_t pid);

/// A wait status as a shell has it: the exit status, or 128 + the signal. The sandbox reports its process so, too.
int exitStatusOf(int waitStatus);
/// The signal of such a status, such as "SIGKILL"; empty when it is none.
std::string signalName(int exitStatus);

/// Seconds since 1970 of a process's start.
std::int64_t startTime(const ProcessFacts& process);

/// "2026-01-31T12:00:00Z" of seconds since 1970.
std::string showTime(std::int64_t secondsUtc);

} // namespace mox::tools
