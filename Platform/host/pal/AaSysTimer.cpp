#include "AaSysTimer.hpp"

#include "../run/Environment.hpp"
#include "AaSysCom.hpp"
#include "Timers.hpp"

#include <algorithm>

namespace mox::host {

namespace {

constexpr std::uint64_t nsPerMs = 1'000'000;
constexpr std::uint64_t mostMs = std::uint64_t{1} << 53;

// 2^53 ms do not fit a 64-bit count of nanoseconds; 70 years outlive every run.
std::uint64_t toNs(std::uint64_t ms) {
    return std::min<std::uint64_t>(ms, INT64_MAX / nsPerMs / 4) * nsPerMs;
}

int add(std::uint32_t& timerId, const Timer& timer) {
    if (!environmentRuns())
        return EAaSysTimerRetVal_NotStarted;
    const Timers::Add result = Timers::instance().add(timer, timerId);
    return result == Timers::Add::done ? EAaSysTimerRetVal_NoError : EAaSysTimerRetVal_OutOfResources;
}

} // namespace

int AaSysTimermCreate(std::uint32_t* timerId, std::uint32_t timeoutMs, std::uint32_t periodMs, void* message) {
    return AaSysTimermCreateLong(timerId, timeoutMs, periodMs, message);
}

int AaSysTimermCreateLong(std::uint32_t* timerId, std::uint64_t timeoutMs, std::uint64_t periodMs, void* message) {
    if (!timerId || !message || timeoutMs > mostMs || periodMs > mostMs)
        return EAaSysTimerRetVal_InvalidValue;
    Timer timer;
    timer.timeoutNs = toNs(timeoutMs);
    timer.periodNs = toNs(periodMs);
    timer.message = message;
    return add(*timerId, timer);
}

int AaSysTimercCreate(std::uint32_t* timerId, std::uint32_t timeoutMs, std::uint32_t periodMs, TAaSysTimerCb callback,
                      void* argument, EAaSysTimePriority priority) {
    if (!timerId || !callback || priority < EAaSysTimePriority_Low || priority > EAaSysTimePriority_High)
        return EAaSysTimerRetVal_InvalidValue;
    Timer timer;
    timer.timeoutNs = toNs(timeoutMs);
    timer.periodNs = toNs(periodMs);
    timer.callback = callback;
    timer.argument = argument;
    timer.priority = priority;
    return add(*timerId, timer);
}

int AaSysTimerDelete(std::uint32_t timerId) {
    Timer removed;
    if (!Timers::instance().remove(timerId, Timers::Kind::any, removed))
        return EAaSysTimerRetVal_NotFound;
    if (removed.message)
        AaSysComMsgDestroy(&removed.message);
    return EAaSysTimerRetVal_NoError;
}

int AaSysTimermDelete(std::uint32_t timerId, void** message) {
    if (!message)
        return EAaSysTimerRetVal_InvalidValue;
    *message = nullptr;
    Timer removed;
    if (!Timers::instance().remove(timerId, Timers::Kind::message, removed))
        return EAaSysTimerRetVal_NotFound;
    *message = removed.message;
    return EAaSysTimerRetVal_NoError;
}

int AaSysTimerReset(std::uint32_t timerId) {
    return Timers::instance().reset(timerId) ? EAaSysTimerRetVal_NoError : EAaSysTimerRetVal_NotFound;
}

} // namespace mox::host
