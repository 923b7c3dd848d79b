#pragma once
/// A run in a directory of its own, and processes of that run that do what a test tells them.
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mox::testing {

constexpr std::uint16_t firstNode = 0x1011;
constexpr std::uint16_t secondNode = 0x1021;

/// Made for one test, removed at its end.
class TestRun {
public:
    /// @param padding  characters that the path gets beside the usual ones
    explicit TestRun(std::size_t padding = 0);
    ~TestRun();
    TestRun(const TestRun&) = delete;
    TestRun& operator=(const TestRun&) = delete;

    const std::string& path() const { return m_path; }
    std::string nodePath(std::uint16_t node = firstNode) const;
    /// File names in a node's directory that are sockets or lead to one.
    std::vector<std::string> sockets(std::uint16_t node = firstNode) const;
    /// Sends one datagram to a socket of the first node, as it stands.
    /// @return whether it was accepted within some seconds
    bool sendRaw(const std::string& socketName, std::string_view datagram) const;

    /// Sends nonsense to a socket of the first node until there is no room.
    void fillRaw(const std::string& socketName) const;

private:
    int connectRaw(const std::string& socketName) const;

    std::string m_path;
};

/// The text of an address for a command.
std::string address(std::uint16_t cpid, std::uint16_t node = firstNode);

/// One process of a run; see peer.cpp for its commands. The destructor kills it.
class Peer {
public:
    explicit Peer(const TestRun& run, std::uint16_t node = firstNode,
                  const std::map<std::string, std::string>& environment = {});
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// Gives a command and returns its answer.
    std::string ask(const std::string& command);
    /// Gives a command without waiting for the answer.
    void start(const std::string& command);
    /// The answer of the command that was started; a text with "no answer" after a while.
    std::string answer();

    void signal(int number) const;
    /// Kills the process, and waits until it is gone.
    void kill();
    /// Has the process shut down and end. @return its exit status, or -1
    int end();
    pid_t pid() const { return m_pid; }
    /// What the process has logged.
    std::string log() const;
    /// How many processes it has started that live.
    std::size_t children() const;

private:
    void reap(int& status);

    pid_t m_pid = -1;
    int m_toPeer = -1;
    int m_fromPeer = -1;
    std::string m_logFile;
    std::string m_pending;
};

} // namespace mox::testing
