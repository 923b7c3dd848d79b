#include "mock/src/Call.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace mox::mock {
namespace {

std::uint64_t s_allCalls = 0; // guarded by bookMutex()
thread_local Call* t_innermost = nullptr;

/// Whether a rule fails this call. Counts the call.
bool isDue(FaultRule& rule, const FunctionRecord& record) {
    ++rule.seen;
    if (!rule.active || rule.seen < rule.first || rule.seen > rule.last)
        return false;
    ++rule.fired;
    rule.lastFailed = record.name;
    return true;
}

std::optional<FaultValue> dueFault(FunctionRecord& record) {
    std::optional<FaultValue> due;
    for (const auto& rule : record.faults)
        if (isDue(*rule, record) && !due)
            due = rule->value;
    if (record.failure)
        for (const auto& rule : faultsOfAny())
            if (isDue(*rule, record) && !due)
                due = record.failure;
    return due;
}

} // namespace

Call::Call(FunctionRecord& record, std::initializer_list<std::uint64_t> arguments)
    : m_record(record), m_outer(t_innermost) {
    {
        const std::lock_guard<std::mutex> guard(bookMutex());
        m_id = CallId{record.name, ++record.calls, ++s_allCalls};
        record.arguments.assign(arguments);
        m_fault = dueFault(record);
    }
    t_innermost = this;
}

Call::~Call() {
    t_innermost = m_outer;
}

void Call::noteCarriedOut(const char* function) {
    if (t_innermost != nullptr && std::strcmp(t_innermost->m_record.name, function) == 0)
        t_innermost->m_carriedOut = true;
}

const Call* Call::current() {
    return t_innermost;
}

std::uint64_t callCount() {
    const std::lock_guard<std::mutex> guard(bookMutex());
    return s_allCalls;
}

void awaitUnused(const std::atomic<int>& users) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (users.load() != 0) {
        if (std::chrono::steady_clock::now() > limit) {
            std::fputs("a mock ends while a call is still in it for 10 s: stop the execution units that wait in it "
                       "first\n",
                       stderr);
            std::abort();
        }
        std::this_thread::yield();
    }
}

void refuseSecondMock() {
    std::fputs("a second mock of one family is installed: one at a time\n", stderr);
    std::abort();
}

} // namespace mox::mock
