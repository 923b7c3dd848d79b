#pragma once
/// The process's reader thread: takes over sockets whose owners are not reading. Idle unless it is needed.
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace mox::host {

class Endpoint;

/// One object, built on first use, never destroyed. Any thread.
class Reader {
public:
    static Reader& instance();

    /// Knows an endpoint from now on, without watching it yet. @return false with errno: the kernel refuses
    bool add(const std::shared_ptr<Endpoint>& endpoint);
    void remove(const Endpoint& endpoint);
    /// Begins or ends watching a known endpoint.
    void watch(const Endpoint& endpoint, bool on) const;
    /// The same of a descriptor that was added.
    void watch(int fd, bool on) const;

    /// Watches any other descriptor; `readable` runs on the reader thread and must not block.
    /// @return false with errno: the kernel refuses
    bool addDescriptor(int fd, std::function<void()> readable);
    /// Returns when `readable` is not running and will not run again; not to be called by it.
    void removeDescriptor(int fd);

    /// Runs `room` once on the reader thread when a connected socket has room; it must not block. One wait a socket.
    void awaitRoom(int fd, std::function<void()> room);
    /// Before the socket is closed.
    void forgetRoom(int fd);

private:
    Reader();
    void run();
    void serve(int fd);
    bool serveRoom(int fd);
    void startIfNeeded();

    const int m_epoll;
    std::mutex m_mutex; ///< guards all below
    std::unordered_map<int, std::shared_ptr<Endpoint>> m_endpoints;
    std::unordered_map<int, std::shared_ptr<std::function<void()>>> m_descriptors;
    std::unordered_map<int, std::function<void()>> m_rooms; ///< known to epoll; empty: not waited for just now
    bool m_started = false;
    std::mutex m_servingMutex; ///< held while a descriptor's function runs
};

} // namespace mox::host
