#pragma once
/// Execution units: threads with an id, a name and, once they have registered, a message queue.
#include "pal/AaPro.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mox::host {

class Inbox;

/// What the platform knows about a thread. Built and destroyed on that thread; other threads never see it.
class Eu {
public:
    /// The calling thread's; made on the first call by a thread that the platform did not create.
    static Eu& current();

    explicit Eu(std::uint32_t id) : m_id(id) {}
    /// Ends the thread's registrations and its message queue.
    ~Eu();
    Eu(const Eu&) = delete;
    Eu& operator=(const Eu&) = delete;

    std::uint32_t id() const { return m_id; }
    /// The message queue, or null before the first registration.
    Inbox* inbox() const { return m_inbox; }
    /// The message queue, made on the first call.
    Inbox& makeInbox();
    /// Address of the first registration that still stands, 0 for none: the sender of what this thread sends.
    std::uint32_t address() const;
    /// Notes the newest registration.
    void addRegistration(std::uint16_t cpid);

private:
    const std::uint32_t m_id;
    Inbox* m_inbox = nullptr;
    std::vector<std::uint16_t> m_cpids; ///< in order of registration; some may have ended
};

/// What an execution unit is made with.
struct EuRequest {
    const char* name;
    TAaProEuEntry entry;
    std::uint32_t stackSize;
    EAaProEuSchedulingPolicy policy;
    std::uint32_t priority;
    const void* argument;
    std::uint32_t argumentSize;
    bool wait;
};

/// Creates and starts an execution unit. @param[out] euId  stored before it runs; may be null
EAaProEuRetVal createEu(std::uint32_t* euId, const EuRequest& request);

} // namespace mox::host
