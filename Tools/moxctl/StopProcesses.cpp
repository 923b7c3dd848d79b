#include "StopProcesses.hpp"

#include "Deadline.hpp"
#include "Failure.hpp"

#include <dirent.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace mox::tools {

namespace {

constexpr double secondsAfterKill = 2;

/// A living process, held so that its number cannot become another's.
class Held {
public:
    explicit Held(std::uint32_t pid) : m_fd(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))) {
        if (m_fd < 0 && errno != ESRCH) {
            throw Failure(ExitStatus::failed, std::string("pidfd_open: ") + std::strerror(errno));
        }
    }
    ~Held() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    void signal(int number) const {
        if (m_fd >= 0) {
            syscall(SYS_pidfd_send_signal, m_fd, number, nullptr, 0);
        }
    }
    bool isGone(int timeoutMs) const {
        pollfd watched{m_fd, POLLIN, 0};
        return m_fd < 0 || (poll(&watched, 1, timeoutMs) > 0 && watched.revents != 0);
    }

private:
    int m_fd;
};

using Group = std::vector<std::unique_ptr<Held>>;

/// @return those that still live when the time is up
Group waitForEnd(Group group, double seconds) {
    const Deadline deadline(seconds);
    const auto isGone = [&deadline](const auto& held) { return held->isGone(deadline.leftMs(60'000)); };
    group.erase(std::remove_if(group.begin(), group.end(), isGone), group.end());
    return group;
}

void killAll(Group group) {
    for (const auto& held : group) {
        held->signal(SIGKILL);
    }
    if (!waitForEnd(std::move(group), secondsAfterKill).empty()) {
        throw Failure(ExitStatus::failed, "a process survives SIGKILL");
    }
}

/// Every process of the given sessions.
Group membersOf(const std::vector<std::uint32_t>& sessions) {
    Group members;
    DIR* processes = opendir("/proc");
    while (const dirent* entry = processes != nullptr ? readdir(processes) : nullptr) {
        const auto pid = static_cast<std::uint32_t>(std::strtoul(entry->d_name, nullptr, 10));
        const auto process = pid != 0 ? readProcess(pid) : std::nullopt;
        if (process && std::find(sessions.begin(), sessions.end(), process->session) != sessions.end()) {
            members.push_back(std::make_unique<Held>(pid));
        }
    }
    if (processes != nullptr) {
        closedir(processes);
    }
    return members;
}

} // namespace

unsigned stopProcesses(const std::vector<ProcessFacts>& processes, double seconds) {
    Group group;
    std::vector<std::uint32_t> sessions;
    const auto ownSession = static_cast<std::uint32_t>(getsid(0));
    for (const ProcessFacts& process : processes) {
        if (process.pid == 0) {
            continue; // had ended before it was looked at
        }
        group.push_back(std::make_unique<Held>(process.pid));
        const auto now = readProcess(process.pid);
        if (!now || now->startTicks != process.startTicks) {
            group.pop_back();
        } else if (now->session != ownSession) {
            sessions.push_back(now->session);
        }
    }
    for (const auto& held : group) {
        held->signal(SIGTERM);
    }
    group = waitForEnd(std::move(group), seconds);
    const auto killed = static_cast<unsigned>(group.size());
    killAll(std::move(group));
    killAll(membersOf(sessions));
    // Sandboxes that this process has started itself.
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    return killed;
}

} // namespace mox::tools
