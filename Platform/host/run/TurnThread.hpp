#pragma once
/// A thread that runs functions one after the other.
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace mox::host {

/// Begins with the first function and ends with the platform (atPlatformEnd), after what was queued; may begin anew
/// then.
///
///     static auto& commands = *new TurnThread("aacommands");
///     commands.post([] { ... });
class TurnThread {
public:
    /// @param name  at most 15 characters
    explicit TurnThread(const char* name) : m_name(name) {}
    TurnThread(const TurnThread&) = delete;
    TurnThread& operator=(const TurnThread&) = delete;

    /// Queues a function. Any thread. Throws std::system_error when the thread cannot be started.
    void post(std::function<void()> function);
    /// Runs a function on the thread and returns when it has returned; at once when called there.
    void run(const std::function<void()>& function);

private:
    bool isCaller();
    void work();
    void end();

    const std::string m_name;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_queue;
    std::thread m_thread;
    std::thread::id m_id;
    bool m_ending = false;
};

} // namespace mox::host
