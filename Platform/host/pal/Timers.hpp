#pragma once
/// The timers of a process: one thread that waits for the earliest deadline.
#include <pal/AaSysTimer.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <set>
#include <thread>
#include <unordered_map>
#include <utility>

namespace mox::host {

/// What a timer does and when.
struct Timer {
    std::uint64_t timeoutNs = 0;
    std::uint64_t periodNs = 0; ///< 0: one-shot
    void* message = nullptr;    ///< of a message timer, which owns it
    TAaSysTimerCb callback = nullptr;
    void* argument = nullptr;
    EAaSysTimePriority priority = EAaSysTimePriority_Normal;
    std::uint64_t deadlineNs = 0; ///< next expiry; kept by Timers
};

/// When a periodic timer expires after it has been served.
/// @param deadlineNs  for which it was served
/// @param nowNs       when it was served
std::uint64_t nextExpiry(std::uint64_t deadlineNs, std::uint64_t periodNs, std::uint64_t nowNs);

/// All timers. Any thread, call-backs included. Deadlines are absolute and a period is added to the deadline before, so
/// that nothing drifts. A periodic timer that is late catches up, unless it is more than a second late: then it goes on
/// with its next expiry to come.
class Timers {
public:
    /// The process's timers; never destroyed.
    static Timers& instance();

    enum class Add { done, full, noThread };
    /// Starts a timer. @param[out] id  set, when done, before the timer can expire
    Add add(const Timer& timer, std::uint32_t& id);

    enum class Kind { any, message };
    /// Takes a timer out. @param[out] removed  what it was; its message is the caller's now
    bool remove(std::uint32_t id, Kind kind, Timer& removed);

    /// Starts a timer's time anew.
    bool reset(std::uint32_t id);

    /// Deletes all timers with their messages and ends the thread. Not from a call-back.
    void end();

    std::size_t count();

private:
    Timers() = default;

    struct Expiry {
        std::uint32_t id = 0;
        Timer timer; ///< its message is what is to be sent
    };
    using Order = std::set<std::pair<std::uint64_t, std::uint32_t>>;

    bool start();
    void run();
    void sleep(std::unique_lock<std::mutex>& lock);
    bool takeDue(Expiry& expiry);
    static bool prepare(Expiry& expiry, const Timer& timer);
    void reschedule(std::uint32_t id, Timer& timer, std::uint64_t now);
    static void expire(const Expiry& expiry);
    void enter(std::uint32_t id, Timer& timer, std::uint64_t deadlineNs);
    void leave(std::uint32_t id, const Timer& timer);
    std::uint64_t nextDeadline() const;
    std::uint32_t freeId();
    void follow();

    Order& orderOf(EAaSysTimePriority priority) { return m_order[static_cast<std::size_t>(priority)]; }

    std::mutex m_startMutex; ///< held while the thread starts or ends; taken before m_mutex
    std::atomic<bool> m_started{false};
    int m_follower = 0;
    std::thread m_thread;

    std::mutex m_mutex;                ///< guards what follows
    std::condition_variable m_changed; ///< the thread has something to look at
    std::condition_variable m_settled; ///< nothing is due any more
    std::unordered_map<std::uint32_t, Timer> m_timers;
    std::array<Order, 3> m_order; ///< by priority
    std::uint32_t m_lastId = 0;
    bool m_poked = false;
    bool m_busy = false; ///< the thread runs an expiry
    bool m_ending = false;
};

} // namespace mox::host
