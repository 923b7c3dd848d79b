#include "PeerProcess.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace mox::testing {
namespace {

constexpr int patienceMs = 30000;

struct Pipe {
    int ends[2]{};
    Pipe() {
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
    }
};

[[noreturn]] void become(const std::string& run, const std::string& node, const Pipe& in, const Pipe& out,
                         const Pipe& error) {
    ::dup2(in.ends[0], 0);
    ::dup2(out.ends[1], 1);
    ::dup2(error.ends[1], 2);
    ::setenv("MOX_RUN", run.c_str(), 1);
    ::setenv("MOX_NODE", node.c_str(), 1);
    ::execl(MOX_CONFIG_PEER, MOX_CONFIG_PEER, nullptr);
    ::_exit(127);
}

} // namespace

PeerProcess::PeerProcess(const std::string& run, const std::string& node) {
    std::signal(SIGPIPE, SIG_IGN);
    const Pipe in;
    const Pipe out;
    const Pipe error;
    m_pid = ::fork();
    if (m_pid == 0) {
        become(run, node, in, out, error);
    }
    ::close(in.ends[0]);
    ::close(out.ends[1]);
    ::close(error.ends[1]);
    m_in = in.ends[1];
    m_out = out.ends[0];
    m_error = error.ends[0];
}

PeerProcess::~PeerProcess() {
    kill();
    for (const int fd : {m_in, m_out, m_error}) {
        ::close(fd);
    }
}

void PeerProcess::kill() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }
}

bool PeerProcess::readLine(std::string& line) {
    for (;;) {
        const auto end = m_buffer.find('\n');
        if (end != std::string::npos) {
            line = m_buffer.substr(0, end);
            m_buffer.erase(0, end + 1);
            return true;
        }
        pollfd wait{m_out, POLLIN, 0};
        char bytes[4096];
        const ssize_t got = ::poll(&wait, 1, patienceMs) == 1 ? ::read(m_out, bytes, sizeof bytes) : 0;
        if (got <= 0) {
            return false;
        }
        m_buffer.append(bytes, static_cast<std::size_t>(got));
    }
}

std::string PeerProcess::operator()(const std::string& command) {
    const std::string text = command + "\n";
    std::string line;
    if (::write(m_in, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        return "";
    }
    while (readLine(line)) {
        if (line.rfind("told ", 0) != 0) {
            return line;
        }
        m_told.push_back(line.substr(5));
    }
    return "";
}

std::vector<std::string> PeerProcess::told(std::size_t count) {
    std::string line;
    while (m_told.size() < count && readLine(line)) {
        m_told.push_back(line.rfind("told ", 0) == 0 ? line.substr(5) : "not told: " + line);
    }
    const auto end = m_told.begin() + static_cast<std::ptrdiff_t>(std::min(count, m_told.size()));
    std::vector<std::string> result(m_told.begin(), end);
    m_told.erase(m_told.begin(), end);
    return result;
}

std::string PeerProcess::errors() {
    kill();
    std::string text;
    char bytes[4096];
    for (ssize_t got = 0; (got = ::read(m_error, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(got));
    }
    return text;
}

} // namespace mox::testing
