#include "Launch.hpp"

#include "Failure.hpp"

#include <fcntl.h>
#include <host/run/Sandbox.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

extern char** environ;

namespace mox::tools {

namespace {

namespace fs = std::filesystem;

/// Where bubblewrap tells its child's process id.
constexpr int informationFd = 101;
constexpr std::size_t tailLines = 15;

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    void close() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
        m_fd = -1;
    }

private:
    int m_fd;
};

/// How the child begins: own session, signals as a shell would leave them, its output in a file.
class SpawnSetUp {
public:
    SpawnSetUp(int output, int information) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, information, informationFd);
        sigset_t none;
        sigemptyset(&none);
        sigset_t changed;
        sigemptyset(&changed);
        sigaddset(&changed, SIGPIPE);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &changed);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSetUp() {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnSetUp(const SpawnSetUp&) = delete;
    SpawnSetUp& operator=(const SpawnSetUp&) = delete;

    int spawn(pid_t& pid, std::vector<std::string>& command) const {
        std::vector<char*> words;
        words.reserve(command.size() + 1);
        for (std::string& word : command) {
            words.push_back(word.data());
        }
        words.push_back(nullptr);
        return posix_spawn(&pid, words.front(), &m_actions, &m_attributes, words.data(), environ);
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// Reads {"child-pid": 123, ...}. @return 0 when the sandbox ended without a word
std::uint32_t readChild(int fd) {
    std::string text;
    std::array<char, 256> part{};
    for (;;) {
        const ssize_t got = read(fd, part.data(), part.size());
        if (got > 0) {
            text.append(part.data(), static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    const std::string key = "\"child-pid\":";
    const std::size_t at = text.find(key);
    return at == std::string::npos
               ? 0
               : static_cast<std::uint32_t>(std::strtoul(text.c_str() + at + key.size(), nullptr, 10));
}

std::string labelOf(const LaunchRequest& request) {
    return "service '" + request.name + "'";
}

std::vector<std::string> splitPaths(const char* paths) {
    std::istringstream stream(paths != nullptr ? paths : "");
    std::vector<std::string> all;
    for (std::string path; std::getline(stream, path, ':');) {
        if (!path.empty()) {
            all.push_back(path);
        }
    }
    return all;
}

} // namespace

Launched launch(const LaunchRequest& request) {
    std::string why;
    std::vector<std::string> command = host::sandboxCommand(request.runPath, request.node, request.argv, {}, why);
    if (command.empty()) {
        throw Failure(ExitStatus::failed, labelOf(request) + ": " + why);
    }
    command.insert(command.begin() + 1, {"--info-fd", std::to_string(informationFd)});
    const Descriptor output(open(request.outputPath.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    std::array<int, 2> ends{-1, -1};
    if (output.get() < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(ExitStatus::failed, request.outputPath + ": " + std::strerror(errno));
    }
    const Descriptor information(ends[0]);
    Descriptor childsEnd(ends[1]);
    Launched launched{request.node, request.name, -1, {}, request.outputPath, lseek(output.get(), 0, SEEK_END)};
    const int failure = SpawnSetUp(output.get(), childsEnd.get()).spawn(launched.sandbox, command);
    if (failure != 0) {
        throw Failure(ExitStatus::failed, command.front() + ": " + std::strerror(failure));
    }
    childsEnd.close();
    const auto process = readProcess(readChild(information.get()));
    if (!process) {
        waitpid(launched.sandbox, nullptr, 0);
        throw Failure(ExitStatus::failed, labelOf(request) + " could not be started",
                      outputTail(launched.outputPath, launched.outputBegin));
    }
    launched.process = *process;
    return launched;
}

std::vector<std::string> outputTail(const std::string& path, std::int64_t begin) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(begin);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
        if (lines.size() > tailLines) {
            lines.erase(lines.begin());
        }
    }
    return lines;
}

std::string ownDirectory() {
    std::error_code ignored; // without /proc there is no such directory
    return fs::read_symlink("/proc/self/exe", ignored).parent_path().string();
}

std::string findExecutable(const std::string& name, const std::vector<std::string>& directories) {
    std::vector<std::string> candidates = directories;
    for (const std::vector<std::string>& more :
         {splitPaths(std::getenv("MOX_EXE_PATH")), {ownDirectory()}, splitPaths(std::getenv("PATH"))}) {
        candidates.insert(candidates.end(), more.begin(), more.end());
    }
    if (name.find('/') != std::string::npos) {
        candidates = {""};
    }
    std::string lookedAt;
    for (const std::string& directory : candidates) {
        const std::string path = directory.empty() ? name : directory + "/" + name;
        if (access(path.c_str(), X_OK) == 0 && !fs::is_directory(path)) {
            return fs::absolute(path).string();
        }
        lookedAt.append(lookedAt.empty() ? "" : ":").append(directory);
    }
    throw Failure(ExitStatus::notFound, "executable '" + name + "' not found" +
                                            (lookedAt.empty() ? "" : " in " + lookedAt) +
                                            " (see --exe-dir and MOX_EXE_PATH)");
}

} // namespace mox::tools
