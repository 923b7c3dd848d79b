#include "CommandRun.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <tuple>

extern char** environ;

namespace mox::testing {

namespace {

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("pipe2: ") + std::strerror(errno));
    }
    return ends;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> all;
    all.reserve(words.size() + 1);
    for (std::string& word : words) {
        all.push_back(word.data());
    }
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> environmentFor(const CommandSetting& setting) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string name = std::string(*entry).substr(0, std::strcspn(*entry, "="));
        const auto isChanged = [&name](const auto& change) { return change.first == name; };
        if (std::none_of(setting.environment.begin(), setting.environment.end(), isChanged)) {
            all.emplace_back(*entry);
        }
    }
    for (const auto& [name, value] : setting.environment) {
        if (value) {
            all.push_back(name + "=" + *value);
        }
    }
    return all;
}

/// What the program reads lies in a file without a name, so that nobody has to write while it runs.
int inputFile(const std::string& input) {
    const int fd = memfd_create("input", MFD_CLOEXEC);
    if (fd < 0 || write(fd, input.data(), input.size()) != static_cast<ssize_t>(input.size()) ||
        lseek(fd, 0, SEEK_SET) != 0) {
        throw std::runtime_error(std::string("input file: ") + std::strerror(errno));
    }
    return fd;
}

/// @return false at the end of the stream
bool append(int fd, std::string& text) {
    std::array<char, 65536> part{};
    const ssize_t got = read(fd, part.data(), part.size());
    if (got > 0) {
        text.append(part.data(), static_cast<std::size_t>(got));
    }
    return got > 0;
}

} // namespace

void PrintTo(const CommandResult& result, std::ostream* stream) {
    *stream << "status " << result.status << "\nstdout: " << result.out << "\nstderr: " << result.err;
}

RunningCommand::RunningCommand(const std::vector<std::string>& argv, const CommandSetting& setting)
    : m_deadline(std::chrono::steady_clock::now() + setting.limit) {
    const auto out = makePipe();
    const auto err = makePipe();
    const int input = inputFile(setting.input);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    auto words = argv;
    auto environment = environmentFor(setting);
    const int failure = posix_spawnp(&m_pid, words.front().c_str(), &actions, nullptr, pointers(words).data(),
                                     pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    for (const int fd : {out[1], err[1], input}) {
        close(fd);
    }
    m_out = out[0];
    m_err = err[0];
    if (failure != 0) {
        throw std::runtime_error(argv.front() + ": " + std::strerror(failure));
    }
}

RunningCommand::~RunningCommand() {
    if (!m_waited) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    for (const int fd : {m_out, m_err}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

void RunningCommand::signal(int number) const {
    kill(m_pid, number);
}

bool RunningCommand::readSome() {
    std::array<pollfd, 2> streams{pollfd{m_out, POLLIN, 0}, pollfd{m_err, POLLIN, 0}};
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(m_deadline - std::chrono::steady_clock::now()).count();
    if (left <= 0 || poll(streams.data(), streams.size(), static_cast<int>(left)) == 0) {
        throw std::runtime_error("time limit; stdout: " + m_result.out + " stderr: " + m_result.err);
    }
    for (const auto& [stream, fd, text] :
         {std::tuple(&streams[0], &m_out, &m_result.out), std::tuple(&streams[1], &m_err, &m_result.err)}) {
        if (stream->revents != 0 && !append(*fd, *text)) {
            close(*fd);
            *fd = -1; // poll() leaves it out from now on
        }
    }
    return m_out >= 0 || m_err >= 0;
}

void RunningCommand::waitFor(const std::string& stream, const std::string& text) {
    while (stream.find(text) == std::string::npos) {
        if (!readSome()) {
            throw std::runtime_error("ended without '" + text + "'; stdout: " + m_result.out +
                                     " stderr: " + m_result.err);
        }
    }
}

CommandResult RunningCommand::finish() {
    while ((m_out >= 0 || m_err >= 0) && readSome()) {
    }
    int status = 0;
    while (waitpid(m_pid, &status, WNOHANG) == 0) { // a program may close its streams and go on
        if (std::chrono::steady_clock::now() >= m_deadline) {
            throw std::runtime_error("time limit after the end of both streams; stdout: " + m_result.out +
                                     " stderr: " + m_result.err);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    m_waited = true;
    m_result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return m_result;
}

CommandResult runCommand(const std::vector<std::string>& argv, const CommandSetting& setting) {
    return RunningCommand(argv, setting).finish();
}

} // namespace mox::testing
