#pragma once
#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace mox::testing {

/// A process that runs Peer.cpp on a node of a run. Waits at most 30 s for each line.
class PeerProcess {
public:
    /// @param node  node id in hexadecimal
    PeerProcess(const std::string& run, const std::string& node);
    /// Ends the process if it still runs.
    ~PeerProcess();
    PeerProcess(const PeerProcess&) = delete;
    PeerProcess& operator=(const PeerProcess&) = delete;

    /// Sends a command. @return its answer; "" when the process has ended
    std::string operator()(const std::string& command);
    /// The next `count` lines of its call-backs, without "told "; fewer when they do not come in time.
    std::vector<std::string> told(std::size_t count);
    /// What it has written to standard error until its end; ends it.
    std::string errors();
    /// SIGKILL, and waits until it is gone.
    void kill();
    pid_t pid() const { return m_pid; }

private:
    bool readLine(std::string& line);

    pid_t m_pid = -1;
    int m_in = -1;
    int m_out = -1;
    int m_error = -1;
    std::string m_buffer;
    std::deque<std::string> m_told;
};

} // namespace mox::testing
