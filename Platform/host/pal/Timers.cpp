#include "Timers.hpp"

#include "../run/Clock.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/PlatformThread.hpp"
#include "AaSysCom.hpp"

#include <sys/prctl.h>

#include <algorithm>
#include <system_error>

namespace mox::host {

namespace {

constexpr std::size_t mostTimers = std::size_t{1} << 20;
constexpr std::uint64_t catchUpNs = 1'000'000'000;

} // namespace

std::uint64_t nextExpiry(std::uint64_t deadlineNs, std::uint64_t periodNs, std::uint64_t nowNs) {
    const std::uint64_t next = deadlineNs + periodNs;
    if (next + catchUpNs >= nowNs)
        return next;
    return next + (nowNs - next) / periodNs * periodNs + periodNs;
}

Timers& Timers::instance() {
    static auto& timers = *new Timers;
    return timers;
}

Timers::Add Timers::add(const Timer& timer, std::uint32_t& id) {
    if (!m_started.load(std::memory_order_acquire) && !start())
        return Add::noThread;
    const std::uint64_t deadline = deadlineIn(timer.timeoutNs);
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_timers.size() >= mostTimers)
        return Add::full;
    id = freeId();
    enter(id, m_timers.emplace(id, timer).first->second, deadline);
    return Add::done;
}

bool Timers::remove(std::uint32_t id, Kind kind, Timer& removed) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_timers.find(id);
    if (found == m_timers.end() || (kind == Kind::message && !found->second.message))
        return false;
    removed = found->second;
    leave(id, removed);
    m_timers.erase(found);
    return true;
}

bool Timers::reset(std::uint32_t id) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_timers.find(id);
    if (found == m_timers.end())
        return false;
    leave(id, found->second);
    enter(id, found->second, deadlineIn(found->second.timeoutNs));
    return true;
}

void Timers::end() {
    const std::lock_guard<std::mutex> starting(m_startMutex);
    if (!m_started)
        return;
    ManualClock::removeFollower(m_follower);
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_ending = true;
        m_changed.notify_all();
    }
    m_thread.join();
    const std::lock_guard<std::mutex> guard(m_mutex);
    for (auto& timer : m_timers)
        if (timer.second.message)
            AaSysComMsgDestroy(&timer.second.message);
    m_timers.clear();
    for (Order& order : m_order)
        order.clear();
    m_ending = false;
    m_started = false;
}

std::size_t Timers::count() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_timers.size();
}

bool Timers::start() {
    const std::lock_guard<std::mutex> starting(m_startMutex);
    if (m_started)
        return true;
    const auto deadline = [this] {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return nextDeadline();
    };
    // Known to the clock before the first timer is: a clock that moves next must stop there.
    m_follower = ManualClock::addFollower({deadline, [this] { follow(); }});
    try {
        m_thread = startPlatformThread("aatimers", [this] { run(); });
    } catch (const std::system_error& failure) {
        ManualClock::removeFollower(m_follower);
        logPlatform(4, "the timers' thread cannot be started: %s", failure.what());
        return false;
    }
    m_started = true;
    atPlatformEnd([this] { end(); });
    return true;
}

void Timers::run() {
    // The kernel would otherwise add up to 50 us to every wake-up.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_ending) {
        Expiry expiry;
        if (!takeDue(expiry)) {
            sleep(lock);
            continue;
        }
        m_busy = true;
        lock.unlock();
        expire(expiry);
        lock.lock();
        m_busy = false;
    }
}

void Timers::sleep(std::unique_lock<std::mutex>& lock) {
    m_settled.notify_all();
    const std::uint64_t next = nextDeadline();
    const auto woken = [this] { return m_poked || m_ending; };
    if (next == noDeadline || ManualClock::enabled())
        m_changed.wait(lock, woken);
    else
        m_changed.wait_until(lock, steadyTime(next), woken);
    m_poked = false;
}

bool Timers::takeDue(Expiry& expiry) {
    const std::uint64_t now = monotonicNs();
    for (auto order = m_order.rbegin(); order != m_order.rend(); ++order) {
        while (!order->empty() && order->begin()->first <= now) {
            expiry.id = order->begin()->second;
            const auto found = m_timers.find(expiry.id);
            expiry.timer = found->second;
            if (found->second.periodNs == 0) {
                order->erase(order->begin());
                m_timers.erase(found);
                return true;
            }
            reschedule(expiry.id, found->second, now);
            if (prepare(expiry, found->second))
                return true;
        }
    }
    return false;
}

bool Timers::prepare(Expiry& expiry, const Timer& timer) {
    if (!timer.message)
        return true;
    expiry.timer.message = AaSysComMsgCreateCopy(timer.message);
    if (!expiry.timer.message)
        logPlatform(4, "timer %u: no memory for its message", expiry.id);
    return expiry.timer.message != nullptr;
}

void Timers::reschedule(std::uint32_t id, Timer& timer, std::uint64_t now) {
    const std::uint64_t deadline = nextExpiry(timer.deadlineNs, timer.periodNs, now);
    leave(id, timer);
    timer.deadlineNs = deadline;
    orderOf(timer.priority).emplace(deadline, id);
}

void Timers::expire(const Expiry& expiry) {
    if (expiry.timer.message)
        AaSysComMsgSendS(expiry.timer.message, AaSysComMsgGetSender(expiry.timer.message));
    else
        expiry.timer.callback(expiry.id, expiry.timer.argument);
}

void Timers::enter(std::uint32_t id, Timer& timer, std::uint64_t deadlineNs) {
    const bool earliest = deadlineNs < nextDeadline();
    timer.deadlineNs = deadlineNs;
    orderOf(timer.priority).emplace(deadlineNs, id);
    if (earliest) {
        m_poked = true;
        m_changed.notify_one();
    }
}

void Timers::leave(std::uint32_t id, const Timer& timer) {
    orderOf(timer.priority).erase({timer.deadlineNs, id});
}

std::uint64_t Timers::nextDeadline() const {
    std::uint64_t next = noDeadline;
    for (const Order& order : m_order)
        if (!order.empty())
            next = std::min(next, order.begin()->first);
    return next;
}

std::uint32_t Timers::freeId() {
    do
        ++m_lastId;
    while (m_lastId == 0 || m_timers.count(m_lastId) != 0);
    return m_lastId;
}

void Timers::follow() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_poked = true;
    m_changed.notify_one();
    m_settled.wait(lock, [this] { return m_ending || (!m_busy && nextDeadline() > monotonicNs()); });
}

} // namespace mox::host
