#include "Eu.hpp"

#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "Inbox.hpp"
#include "Registry.hpp"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>

namespace mox::host {

namespace {

/// Below this the C library's own needs (printing, name look-ups) overrun a stack; sanitizers need more still.
constexpr std::size_t leastStackSize = std::size_t{512} << 10;
constexpr std::size_t longestShownName = 15;
constexpr std::uint32_t longestName = 63;
constexpr std::uint32_t largestArgument = 4096;
constexpr std::uint32_t highestPriority = 99;

std::uint32_t nextEuId() {
    static std::atomic<std::uint32_t> last{0};
    return ++last;
}

thread_local Eu* t_created = nullptr;

/// What a new thread needs until it runs; destroyed by the thread.
struct Start {
    EuRequest request;
    std::string name;
    std::unique_ptr<std::max_align_t[]> argument;
    std::uint32_t id;
};

void* runEu(void* context) {
    const std::unique_ptr<Start> start(static_cast<Start*>(context));
    pthread_setname_np(pthread_self(), start->name.substr(0, longestShownName).c_str());
    Eu eu(start->id);
    t_created = &eu;
    start->request.entry(start->argument.get());
    return nullptr;
}

bool isValid(const EuRequest& request) {
    return request.name != nullptr && *request.name != '\0' && std::strlen(request.name) <= longestName &&
           request.entry != nullptr && request.priority <= highestPriority && request.argumentSize <= largestArgument &&
           (request.argument != nullptr || request.argumentSize == 0);
}

/// The thread's attributes, released with the object.
class Attributes {
public:
    explicit Attributes(const EuRequest& request) {
        pthread_attr_init(&m_attributes);
        pthread_attr_setstacksize(&m_attributes, std::max<std::size_t>(request.stackSize, leastStackSize));
        if (!request.wait) {
            pthread_attr_setdetachstate(&m_attributes, PTHREAD_CREATE_DETACHED);
        }
    }
    ~Attributes() { pthread_attr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    void setRealTime(int policy, std::uint32_t priority) {
        const sched_param parameters{static_cast<int>(std::max<std::uint32_t>(priority, 1))};
        pthread_attr_setinheritsched(&m_attributes, PTHREAD_EXPLICIT_SCHED);
        pthread_attr_setschedpolicy(&m_attributes, policy);
        pthread_attr_setschedparam(&m_attributes, &parameters);
    }
    void setTimeSharing() {
        const sched_param none{};
        pthread_attr_setinheritsched(&m_attributes, PTHREAD_EXPLICIT_SCHED);
        pthread_attr_setschedpolicy(&m_attributes, SCHED_OTHER);
        pthread_attr_setschedparam(&m_attributes, &none);
    }
    const pthread_attr_t* get() const { return &m_attributes; }

private:
    pthread_attr_t m_attributes{};
};

int realTimePolicy(EAaProEuSchedulingPolicy policy) {
    switch (policy) {
    case EAaProEuSchedulingPolicy_RoundRobin:
        return SCHED_RR;
    case EAaProEuSchedulingPolicy_Fifo:
        return SCHED_FIFO;
    default:
        return SCHED_OTHER;
    }
}

void noteRefusedPolicyOnce(const char* name) {
    static std::atomic<bool> noted{false};
    if (!noted.exchange(true)) {
        logPlatform(2, "%s: this user may not have real-time scheduling; execution units share the time", name);
    }
}

int createThread(pthread_t& thread, const EuRequest& request, Start* start) {
    Attributes attributes(request);
    const int policy = realTimePolicy(request.policy);
    if (policy != SCHED_OTHER) {
        attributes.setRealTime(policy, request.priority);
        const int error = pthread_create(&thread, attributes.get(), runEu, start);
        if (error != EPERM) {
            return error;
        }
        noteRefusedPolicyOnce(request.name);
    }
    attributes.setTimeSharing();
    return pthread_create(&thread, attributes.get(), runEu, start);
}

std::unique_ptr<std::max_align_t[]> copyArgument(const EuRequest& request) {
    if (request.argumentSize == 0) {
        return nullptr;
    }
    const std::size_t units = (request.argumentSize + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t);
    auto copy = std::make_unique<std::max_align_t[]>(units);
    std::memcpy(copy.get(), request.argument, request.argumentSize);
    return copy;
}

} // namespace

Eu& Eu::current() {
    if (t_created != nullptr) {
        return *t_created;
    }
    thread_local Eu adopted(nextEuId());
    return adopted;
}

Eu::~Eu() {
    // The thread ends anyway: a cancellation that is still pending must not unwind out of what closes the files here.
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
    for (const std::uint16_t cpid : m_cpids) {
        Registry::instance().remove(cpid, m_inbox);
    }
    if (m_inbox != nullptr) {
        m_inbox->close();
    }
    t_created = nullptr;
}

Inbox& Eu::makeInbox() {
    if (m_inbox == nullptr) {
        m_inbox = Inbox::acquire();
        int policy = SCHED_OTHER;
        sched_param parameters{};
        if (pthread_getschedparam(pthread_self(), &policy, &parameters) == 0 && policy != SCHED_OTHER) {
            m_inbox->forbidStayingAwake();
        }
    }
    return *m_inbox;
}

void Eu::addRegistration(std::uint16_t cpid) {
    const auto hasEnded = [this, cpid](std::uint16_t known) {
        return known == cpid || Registry::instance().find(known) != m_inbox;
    };
    m_cpids.erase(std::remove_if(m_cpids.begin(), m_cpids.end(), hasEnded), m_cpids.end());
    m_cpids.push_back(cpid);
}

std::uint32_t Eu::address() const {
    for (const std::uint16_t cpid : m_cpids) {
        if (Registry::instance().find(cpid) == m_inbox) {
            return Registry::instance().addressOf(cpid);
        }
    }
    return 0;
}

EAaProEuRetVal createEu(std::uint32_t* euId, const EuRequest& request) {
    const NoCancellation wholeCall; // nobody else would join what it waits for
    if (!isValid(request)) {
        return EAaProEuRetVal_InvalidValue;
    }
    const std::uint32_t id = nextEuId();
    auto start = std::make_unique<Start>(Start{request, request.name, copyArgument(request), id});
    const std::uint32_t before = euId != nullptr ? *euId : 0;
    if (euId != nullptr) {
        *euId = id;
    }
    pthread_t thread{};
    const int error = createThread(thread, request, start.get());
    if (error != 0) {
        if (euId != nullptr) {
            *euId = before;
        }
        logPlatform(4, "cannot create execution unit %s: %s", request.name, std::strerror(error));
        return error == EAGAIN ? EAaProEuRetVal_OutOfResources : EAaProEuRetVal_Error;
    }
    static_cast<void>(start.release()); // the thread's own now
    if (request.wait) {
        pthread_join(thread, nullptr);
    }
    return EAaProEuRetVal_NoError;
}

} // namespace mox::host
