#pragma once
/// The mount namespace of a process of a node. In it /ffs, /ram, /rpram, /var/tmp/hwapi (which is /rpram/hwapi), /tmp,
/// /opt/mox and /sys/devices/platform are the node's own, the rest of the workstation is read-only, and the run lies at
/// /run/mox, whatever the length of its path outside.
///
///     std::string why;
///     const auto service = spawnInSandbox(runPath, 0x1011, {"build/bin/MOXFanExe"}, {}, why);
///     if (!service)
///         return fail(why);
///     kill(service->process, SIGTERM);
///     waitpid(service->sandbox, &status, 0);
///
/// Needs bubblewrap and no privileges; works inside another sandbox too. The executable, what MOX_EMULATOR names, and
/// the working directory stay reachable under their paths, also below a directory that the node has of its own. Two
/// lists of directories, separated by colons, name what else is to stay: MOX_SANDBOX_READABLE, such as libraries that
/// the executable needs, and MOX_SANDBOX_WRITABLE, such as a build tree whose programs write coverage counters.
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mox::host {

/// Where the run lies inside.
constexpr const char* sandboxRunPath = "/run/mox";

struct SandboxOptions {
    /// Kill the process when the thread that starts it, or its process, ends.
    bool dieWithParent = false;
    /// Begin a session of its own, out of reach of the caller's terminal and of signals to its process group.
    bool newSession = false;
    /// Files and directories of the workstation that stay reachable, read-only, under their paths.
    std::vector<std::string> reachable;
    /// As `reachable`, and writable.
    std::vector<std::string> writable;
    /// Further variables of the environment. MOX_RUN, MOX_NODE and TMPDIR are set in any case.
    std::vector<std::pair<std::string, std::string>> environment;
    /// Descriptors that become standard input, output and error; -1: as the caller's.
    int standardInput = -1;
    int standardOutput = -1;
    int standardError = -1;
};

/// A process in its sandbox.
struct Sandboxed {
    pid_t sandbox =
        -1; ///< child of the caller, to be waited for; its exit status is that of the process, or 128 + signal
    pid_t process = -1; ///< the process itself, for signals; valid until `sandbox` has been waited for
};

/// The command that runs a program in the sandbox of a node, for exec or for a person. Makes the directories that the
/// node is to have of its own and does not yet have.
/// @param runPath  directory of the run
/// @param argv     program (a path, or a name that is looked up in PATH) and arguments. A program for another machine
///                 than this one is run by the emulator that the environment names (MOX_EMULATOR="qemu-arm -L DIR")
/// @param[out] why one line for a person; empty unless the result is empty
/// @return the command's words; empty when the program or the node's directory does not exist. Any thread.
std::vector<std::string> sandboxCommand(const std::string& runPath, std::uint16_t node,
                                        const std::vector<std::string>& argv, const SandboxOptions& options,
                                        std::string& why);

/// Starts a program in the sandbox of a node.
/// @param[out] why  one line for a person; empty when there is a result
/// @return nothing when it could not be started. Any thread. Blocks until the sandbox stands.
std::optional<Sandboxed> spawnInSandbox(const std::string& runPath, std::uint16_t node,
                                        const std::vector<std::string>& argv, const SandboxOptions& options,
                                        std::string& why);

} // namespace mox::host
