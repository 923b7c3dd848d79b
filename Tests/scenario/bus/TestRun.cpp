#include "TestRun.hpp"

#include "host/store/Store.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

extern char** environ;

namespace mox::testing {

namespace {

constexpr int answerLimitMs = 100000;

std::string makeDirectory(std::size_t padding) {
    std::string path = "/tmp/moxrun.XXXXXX";
    if (mkdtemp(path.data()) == nullptr)
        throw std::runtime_error("no directory for a run");
    while (padding > 0) {
        const std::size_t part = std::min<std::size_t>(padding - 1, 100);
        path += "/" + std::string(part, 'p');
        padding -= part + 1;
        std::filesystem::create_directory(path);
    }
    return path;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry)
        if (std::strncmp(*entry, "MOX_", 4) != 0)
            result.emplace_back(*entry);
    for (const auto& [name, value] : added)
        result.push_back(name + "=" + value);
    return result;
}

} // namespace

TestRun::TestRun(std::size_t padding) : m_path(makeDirectory(padding)) {
    for (const std::uint16_t node : {firstNode, secondNode})
        std::filesystem::create_directories(nodePath(node));
    std::filesystem::create_directory(m_path + "/store");
    std::string why;
    if (!host::Store::open(m_path + "/store", true, why))
        throw std::runtime_error(why);
}

TestRun::~TestRun() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path.substr(0, m_path.find('/', 5)), ignored);
}

std::string TestRun::nodePath(std::uint16_t node) const {
    std::ostringstream name;
    name << m_path << "/nodes/" << std::hex << node;
    return name.str();
}

std::vector<std::string> TestRun::sockets(std::uint16_t node) const {
    std::vector<std::string> result;
    for (const auto& entry : std::filesystem::directory_iterator(nodePath(node)))
        if (entry.is_symlink() || entry.is_socket())
            result.push_back(entry.path().filename());
    return result;
}

int TestRun::connectRaw(const std::string& socketName) const {
    sockaddr_un to{};
    to.sun_family = AF_UNIX;
    const std::string path = nodePath() + "/" + socketName;
    if (path.size() >= sizeof(to.sun_path))
        throw std::runtime_error("path too long for a raw datagram");
    std::memcpy(to.sun_path, path.c_str(), path.size() + 1);
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (connect(fd, reinterpret_cast<sockaddr*>(&to), sizeof(to)) != 0)
        throw std::runtime_error(path + ": " + std::strerror(errno));
    return fd;
}

bool TestRun::sendRaw(const std::string& socketName, std::string_view datagram) const {
    const int fd = connectRaw(socketName);
    const timeval limit{10, 0};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
    const int room = 1 << 20;
    setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &room, sizeof(room));
    const ssize_t sent = send(fd, datagram.data(), datagram.size(), MSG_NOSIGNAL);
    close(fd);
    return sent == static_cast<ssize_t>(datagram.size());
}

void TestRun::fillRaw(const std::string& socketName) const {
    const int fd = connectRaw(socketName);
    while (send(fd, "x", 1, MSG_NOSIGNAL | MSG_DONTWAIT) == 1) {
    }
    close(fd);
}

std::string address(std::uint16_t cpid, std::uint16_t node) {
    return std::to_string((static_cast<std::uint32_t>(node) << 16U) | cpid);
}

Peer::Peer(const TestRun& run, std::uint16_t node, const std::map<std::string, std::string>& environment) {
    static std::atomic<int> number{0};
    m_logFile = run.path() + "/peer" + std::to_string(++number) + ".log";
    std::map<std::string, std::string> variables = environment;
    std::ostringstream nodeText;
    nodeText << std::hex << node;
    variables.insert({{"MOX_RUN", run.path()}, {"MOX_NODE", nodeText.str()}, {"MOX_LOG", "info"}});
    std::vector<std::string> texts = environmentWith(variables);
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, m_logFile.c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600);
    std::string program = MOX_BUS_PEER;
    std::array<char*, 2> arguments{program.data(), nullptr};
    // A group of its own: when a process ends while another of its group is stopped, the kernel may hang all of them
    // up.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    const int result = posix_spawn(&m_pid, program.c_str(), &actions, &attributes, arguments.data(), pointers.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    m_toPeer = in[1];
    m_fromPeer = out[0];
    if (result != 0)
        throw std::runtime_error(program + " does not start");
    if (const std::string started = answer(); started != "started")
        throw std::runtime_error("the process does not join its run: " + started + "\n" + log());
}

Peer::~Peer() {
    if (m_pid > 0)
        kill();
    if (::testing::Test::HasFailure())
        std::fprintf(stderr, "--- process log:\n%.4000s", log().c_str());
}

std::string Peer::ask(const std::string& command) {
    start(command);
    return answer();
}

void Peer::start(const std::string& command) {
    const std::string line = command + "\n";
    if (write(m_toPeer, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        ADD_FAILURE() << "the process takes no command: " << command;
}

std::string Peer::answer() {
    for (;;) {
        if (const std::size_t end = m_pending.find('\n'); end != std::string::npos) {
            std::string line = m_pending.substr(0, end);
            m_pending.erase(0, end + 1);
            return line;
        }
        pollfd ready{m_fromPeer, POLLIN, 0};
        if (poll(&ready, 1, answerLimitMs) <= 0)
            return "no answer in time";
        std::array<char, 4096> buffer;
        const ssize_t got = read(m_fromPeer, buffer.data(), buffer.size());
        if (got <= 0)
            return "no answer: the process has ended";
        m_pending.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

void Peer::signal(int number) const {
    ::kill(m_pid, number);
}

void Peer::kill() {
    int status = 0;
    signal(SIGKILL);
    reap(status);
}

int Peer::end() {
    int status = 0;
    start("end");
    const std::string last = answer();
    reap(status);
    EXPECT_EQ(last, "ended");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Peer::reap(int& status) {
    close(std::exchange(m_toPeer, -1));
    while (waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
    }
    m_pid = -1;
    close(std::exchange(m_fromPeer, -1));
}

std::string Peer::log() const {
    std::ifstream file(m_logFile);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::size_t Peer::children() const {
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/task/" + std::to_string(m_pid) + "/children");
    std::size_t count = 0;
    for (std::string child; file >> child;)
        ++count;
    return count;
}

} // namespace mox::testing
