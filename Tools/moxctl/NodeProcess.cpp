#include "NodeProcess.hpp"

#include "Failure.hpp"
#include "FileText.hpp"
#include "Interruption.hpp"
#include "ProcessFacts.hpp"
#include "Session.hpp"

#include <host/run/Run.hpp>
#include <host/run/Sandbox.hpp>
#include <host/run/SandboxPaths.hpp>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace mox::tools {

namespace {

namespace fs = std::filesystem;

bool isInSandbox() {
    const char* run = std::getenv("MOX_RUN");
    return run != nullptr && std::string(run) == host::sandboxRunPath;
}

/// The words that this process was started with, without those that name run and node: the sandbox names them.
std::vector<std::string> ownWords() {
    std::string text;
    readFileText("/proc/self/cmdline", text);
    std::vector<std::string> words;
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\0', begin) + 1) {
        words.emplace_back(text.c_str() + begin);
    }
    std::vector<std::string> kept{fs::read_symlink("/proc/self/exe").string()};
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool takesNext = words[i] == "--run" || words[i] == "--node";
        const bool isNaming = takesNext || words[i].rfind("--run=", 0) == 0 || words[i].rfind("--node=", 0) == 0;
        i += takesNext ? 1 : 0;
        if (!isNaming) {
            kept.push_back(words[i]);
        }
    }
    return kept;
}

/// A path of the workstation that is shown to the node, which has nothing of that name.
struct Shown {
    std::string path;
    std::string place; ///< in the node's own directories, where the sandbox puts an empty entry to show it on
};

std::vector<Shown> workstationPaths(const host::Run& run, const std::vector<std::string>& paths) {
    std::vector<Shown> shown;
    for (const std::string& path : paths) {
        if (path.empty()) {
            continue;
        }
        const std::string whole = host::absolutePath(path);
        const std::string place = run.nodePath() + "/fs" + whole;
        std::error_code ignored; // what cannot be looked at is not shown
        const bool isNodes = fs::exists(place, ignored) && !fs::is_empty(place, ignored);
        if (host::isHidden(whole) && !isNodes && fs::exists(whole, ignored)) {
            shown.push_back({whole, place});
        }
    }
    return shown;
}

/// Takes away the empty entries, and the directories that were made for them.
void removePlaces(const std::vector<Shown>& shown, const std::string& root) {
    for (const Shown& one : shown) {
        std::error_code ignored; // what is not empty is no such entry
        fs::path place = one.place;
        while (place.string().size() > root.size() && fs::is_empty(place, ignored) && fs::remove(place, ignored)) {
            place = place.parent_path();
            if (place.parent_path() == root) {
                break;
            }
        }
    }
}

/// moxctl has no such status but those of its own.
void throwIfKilled(int status, const std::string& node) {
    const bool isOwn =
        status == static_cast<int>(ExitStatus::interrupted) || status == static_cast<int>(ExitStatus::readerGone);
    const std::string signal = isOwn ? "" : signalName(status);
    if (!signal.empty()) {
        const char* hint = signal == "SIGKILL" ? " ('moxctl flash plan cut:N' does that)" : "";
        throw Failure(ExitStatus::failed, "the command was ended by " + signal + " on node " + node + hint);
    }
}

/// Waits for the process; the first signal is handed on to it, and it ends in its own time.
int waitFor(const host::Sandboxed& started) {
    const int process = static_cast<int>(syscall(SYS_pidfd_open, started.sandbox, 0));
    try {
        while (!interruption::wait(process, -1)) {
        }
    } catch (const Failure&) {
        kill(started.process, SIGINT);
    }
    close(process);
    int status = 0;
    while (waitpid(started.sandbox, &status, 0) < 0 && errno == EINTR) {
    }
    return exitStatusOf(status);
}

/// The files here are those of one node.
void refuseOtherNode(const Session& session) {
    const char* own = std::getenv("MOX_NODE");
    const auto named = session.namedNode();
    if (own != nullptr && named && host::hex4(*named) != own) {
        throw Failure(ExitStatus::usage,
                      std::string("expected node ") + own + ", in whose sandbox this is, got " + host::hex4(*named));
    }
}

} // namespace

void continueInNode(Session& session, const std::vector<std::string>& paths) {
    if (isInSandbox()) {
        refuseOtherNode(session);
        session.takePart();
        return;
    }
    const host::Run& run = session.run();
    host::SandboxOptions options;
    options.dieWithParent = true;
    options.newSession = true; // a terminal's signal would reach it twice, and a second one ends it at once
    const std::vector<Shown> shown = workstationPaths(run, paths);
    for (const Shown& one : shown) {
        options.reachable.push_back(one.path);
    }
    std::string why;
    const auto started = host::spawnInSandbox(run.path(), run.node(), ownWords(), options, why);
    if (!started) {
        throw Failure(ExitStatus::failed, why);
    }
    const int status = waitFor(*started);
    removePlaces(shown, run.nodePath() + "/fs");
    throwIfKilled(status, host::hex4(run.node()));
    throw DoneElsewhere{status};
}

} // namespace mox::tools
