#include "Sandbox.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

extern char** environ;

namespace mox::host {
namespace {

/// Both ends of a pipe, closed with it.
class Pipe {
public:
    Pipe() {
        if (pipe2(m_ends.data(), O_CLOEXEC) != 0)
            m_ends = {-1, -1};
    }
    ~Pipe() {
        close(0);
        close(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    int end(std::size_t which) const { return m_ends[which]; }
    void close(std::size_t which) {
        if (m_ends[which] >= 0)
            ::close(m_ends[which]);
        m_ends[which] = -1;
    }

private:
    std::array<int, 2> m_ends{};
};

/// Where bubblewrap writes its child's process id to: clear of the descriptors that a caller redirects.
constexpr int informationFd = 101;

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    void put(int from, int to) {
        if (from >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, from, to);
    }
    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

/// A service begins with the signals as a shell would leave them, whatever the thread that starts it has blocked.
class Attributes {
public:
    explicit Attributes(bool newSession) {
        sigset_t none;
        sigemptyset(&none);
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &pipe);
        const int session = newSession ? POSIX_SPAWN_SETSID : 0;
        posix_spawnattr_setflags(&m_attributes,
                                 static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | session));
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

/// Reads what bubblewrap says of its child: { "child-pid": 123, ... }. @return -1 when it ended without a word
pid_t readChild(int fd) {
    std::string text;
    std::array<char, 256> part{};
    ssize_t got = 1;
    while (text.find('}') == std::string::npos && got != 0) {
        got = read(fd, part.data(), part.size());
        if (got < 0 && errno != EINTR)
            break;
        text.append(part.data(), static_cast<std::size_t>(got < 0 ? 0 : got));
    }
    const std::string key = "\"child-pid\":";
    const auto at = text.find(key);
    return at == std::string::npos ? -1 : static_cast<pid_t>(std::strtol(text.c_str() + at + key.size(), nullptr, 10));
}

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> all;
    all.reserve(words.size() + 1);
    for (std::string& word : words)
        all.push_back(word.data());
    all.push_back(nullptr);
    return all;
}

} // namespace

std::optional<Sandboxed> spawnInSandbox(const std::string& runPath, std::uint16_t node,
                                        const std::vector<std::string>& argv, const SandboxOptions& options,
                                        std::string& why) {
    std::vector<std::string> command = sandboxCommand(runPath, node, argv, options, why);
    if (command.empty())
        return std::nullopt;
    command.insert(command.begin() + 1, {"--info-fd", std::to_string(informationFd)});

    Pipe information;
    FileActions actions;
    actions.put(options.standardInput, STDIN_FILENO);
    actions.put(options.standardOutput, STDOUT_FILENO);
    actions.put(options.standardError, STDERR_FILENO);
    actions.put(information.end(1), informationFd);
    Sandboxed started;
    const int failure = posix_spawn(&started.sandbox, command[0].c_str(), actions.get(),
                                    Attributes(options.newSession).get(), pointers(command).data(), environ);
    if (failure != 0) {
        why = command[0] + ": " + std::strerror(failure);
        return std::nullopt;
    }
    information.close(1);
    started.process = readChild(information.end(0));
    if (started.process > 0)
        return started;
    int status = 0;
    waitpid(started.sandbox, &status, 0);
    why = "the sandbox could not be set up (bwrap, status " + std::to_string(WEXITSTATUS(status)) +
          "; its reason is on standard error)";
    return std::nullopt;
}

} // namespace mox::host
