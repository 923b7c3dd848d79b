#include "TurnThread.hpp"

#include "Lifecycle.hpp"
#include "PlatformThread.hpp"

#include <future>
#include <utility>

namespace mox::host {

void TurnThread::post(std::function<void()> function) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!m_thread.joinable()) {
        m_thread = startPlatformThread(m_name.c_str(), [this] { work(); });
        m_id = m_thread.get_id();
        atPlatformEnd([this] { end(); });
    }
    m_queue.push_back(std::move(function));
    m_changed.notify_one();
}

bool TurnThread::isCaller() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_id == std::this_thread::get_id();
}

void TurnThread::run(const std::function<void()>& function) {
    if (isCaller()) {
        function();
        return;
    }
    std::promise<void> done;
    post([&] {
        function();
        done.set_value();
    });
    done.get_future().wait();
}

void TurnThread::work() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ending || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        const std::function<void()> next = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        next();
        lock.lock();
    }
}

void TurnThread::end() {
    std::thread thread;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_ending = true;
        m_changed.notify_one();
        thread = std::move(m_thread);
    }
    thread.join();
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_id = std::thread::id();
    m_ending = false;
}

} // namespace mox::host
