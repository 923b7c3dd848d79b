#include "host/pal/AaSysTimer.hpp"

#include "host/run/Clock.hpp"
#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"

#include <pal/AaSysTimer.h>

#define MOX_FAMILY <families/AaSysTimer.def>
#define MOX_FAMILY_NAME AaSysTimer
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {

void deleteTimer(std::uint64_t handle) {
    host::AaSysTimerDelete(static_cast<std::uint32_t>(handle));
}

/// A one-shot timer closes itself when its time has come; its entry then simply counts no more.
class StartsTimer {
public:
    StartsTimer(Call& call, const std::uint32_t* id, std::uint64_t timeoutMs, std::uint64_t periodMs)
        : m_call(call), m_id(id), m_timeoutMs(timeoutMs), m_periodMs(periodMs) {}
    /// For the kinds of timers with further arguments.
    template <typename... Further>
    StartsTimer(Call& call, const std::uint32_t* id, std::uint64_t timeoutMs, std::uint64_t periodMs, const Further&...)
        : StartsTimer(call, id, timeoutMs, periodMs) {}

    void finish(int result) {
        if (m_call.faulted() || !isSuccess(result) || m_id == nullptr)
            return;
        Entry entry;
        entry.kind = Kind::timer;
        entry.handle = handleOf(*m_id);
        entry.opener = m_call.id();
        entry.real = m_call.carriedOut();
        entry.dispose = [id = *m_id] { deleteTimer(id); };
        if (m_periodMs == 0) {
            entry.lastsNs = m_timeoutMs * 1'000'000U;
            entry.expiresNs = host::deadlineIn(entry.lastsNs);
        }
        enter(std::move(entry));
    }

private:
    Call& m_call;
    const std::uint32_t* m_id;
    std::uint64_t m_timeoutMs;
    std::uint64_t m_periodMs;
};

/// A message timer takes its message only when it starts.
class StartsMessageTimer {
public:
    StartsMessageTimer(Call& call, const std::uint32_t* id, std::uint64_t timeoutMs, std::uint64_t periodMs,
                       void* message)
        : m_timer(call, id, timeoutMs, periodMs),
          m_message(call, Kind::message, word(message)),
          m_handle(word(message)) {}
    void finish(int result) {
        m_timer.finish(result);
        if (isSuccess(result))
            m_message.close();
        else
            m_message.putBack(m_handle);
    }

private:
    StartsTimer m_timer;
    Taken m_message;
    std::uint64_t m_handle;
};

/// Ends a timer and gives its message back.
class EndsMessageTimer {
public:
    EndsMessageTimer(Call& call, std::uint32_t id, void** message)
        : m_call(call), m_timer(call, Kind::timer, id), m_id(id), m_message(message) {}
    void finish(int result) {
        if (!isSuccess(result)) {
            m_timer.putBack(m_id);
            return;
        }
        m_timer.close();
        if (!m_call.faulted() && m_message != nullptr && *m_message != nullptr)
            enterHandle(m_call, Kind::message, word(*m_message), destroyMessage);
    }

private:
    Call& m_call;
    Taken m_timer;
    std::uint32_t m_id;
    void** m_message;
};

class RestartsTimer {
public:
    RestartsTimer(Call&, std::uint32_t id) : m_id(id) {}
    void finish(int result) const {
        if (isSuccess(result))
            restart(Kind::timer, handleOf(m_id));
    }

private:
    std::uint32_t m_id;
};

} // namespace

MOX_EFFECT(AaSysTimermCreate, StartsMessageTimer)
MOX_EFFECT(AaSysTimermCreateLong, StartsMessageTimer)
MOX_EFFECT(AaSysTimercCreate, StartsTimer)
MOX_EFFECT(AaSysTimerDelete, Closes<Kind::timer, 0>)
MOX_EFFECT(AaSysTimermDelete, EndsMessageTimer)
MOX_EFFECT(AaSysTimerReset, RestartsTimer)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
