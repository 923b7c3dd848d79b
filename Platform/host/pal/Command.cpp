#include "Command.hpp"

#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace mox::host {

namespace {

/// A descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    void reset(int fd = -1) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }
    int get() const { return m_fd; }

private:
    int m_fd;
};

/// How the new process begins.
class Beginning {
public:
    Beginning(int outputFd, Streams streams) {
        posix_spawn_file_actions_init(&m_files);
        posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&m_files, outputFd, STDOUT_FILENO);
        if (streams == Streams::outputAndErrors)
            posix_spawn_file_actions_adddup2(&m_files, outputFd, STDERR_FILENO);
        sigset_t set{};
        posix_spawnattr_init(&m_attributes);
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&m_attributes, &set);
        sigfillset(&set);
        posix_spawnattr_setsigdefault(&m_attributes, &set);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Beginning() {
        posix_spawn_file_actions_destroy(&m_files);
        posix_spawnattr_destroy(&m_attributes);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    /// @return 0 or an errno value
    int spawn(const char* const* arguments, pid_t& pid) const {
        return posix_spawnp(&pid, arguments[0], &m_files, &m_attributes, const_cast<char* const*>(arguments), environ);
    }

private:
    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
};

/// @return false at the end of the output, or when there is nothing to read now
bool readPiece(int fd, const std::function<void(std::string_view)>& sink) {
    char piece[4096];
    const ssize_t got = ::read(fd, piece, sizeof piece);
    if (got > 0)
        sink({piece, static_cast<std::size_t>(got)});
    return got > 0 || (got < 0 && errno == EINTR);
}

/// Reads until nobody can write any more, or the process has ended and everything it printed is read.
void readOutput(int outputFd, pid_t pid, const std::function<void(std::string_view)>& sink) {
    const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    // Without the process's descriptor (an older kernel) the end of its output has to do.
    if (process.get() < 0)
        fcntl(outputFd, F_SETFL, 0);
    pollfd waits[] = {{outputFd, POLLIN, 0}, {process.get(), POLLIN, 0}};
    for (;;) {
        if (process.get() >= 0 && ::poll(waits, 2, -1) < 0)
            continue;
        const bool ended = (waits[1].revents & POLLIN) != 0;
        while (readPiece(outputFd, sink)) {
        }
        if (ended || process.get() < 0 || (waits[0].revents & POLLHUP) != 0)
            return;
    }
}

EAaProEuRetVal waitFor(pid_t pid, std::int32_t* exitStatus) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno == EINTR)
            continue;
        logPlatform(4, "the end of process %d cannot be awaited: %s", static_cast<int>(pid), std::strerror(errno));
        return EAaProEuRetVal_Error;
    }
    const bool exited = WIFEXITED(status);
    if (exitStatus)
        *exitStatus = exited ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    if (exited)
        return EAaProEuRetVal_NoError;
    return WCOREDUMP(status) ? EAaProEuRetVal_ChildCrashed : EAaProEuRetVal_ChildKilled;
}

} // namespace

EAaProEuRetVal runCommand(const char* const* arguments, Streams streams,
                          const std::function<void(std::string_view)>& sink, std::int32_t* exitStatus) {
    const NoCancellation untilTheProcessHasEnded;
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        logPlatform(4, "%s: no pipe: %s", arguments[0], std::strerror(errno));
        return EAaProEuRetVal_Error;
    }
    const Descriptor output(ends[0]);
    Descriptor childsEnd(ends[1]);
    fcntl(output.get(), F_SETFL, O_NONBLOCK);
    pid_t pid = -1;
    if (const int error = Beginning(childsEnd.get(), streams).spawn(arguments, pid); error != 0) {
        logPlatform(4, "%s cannot be run: %s", arguments[0], std::strerror(error));
        return EAaProEuRetVal_Error;
    }
    childsEnd.reset();
    readOutput(output.get(), pid, sink);
    return waitFor(pid, exitStatus);
}

} // namespace mox::host
