#pragma once
#include "mock/AaConfigMock.hpp"
#include "mock/AaProMock.hpp"
#include "mock/AaSemMock.hpp"
#include "mock/AaStartupMock.hpp"
#include "mock/AaSysComMock.hpp"
#include "mock/AaSysLogMock.hpp"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace mox::testing {

/// A message that only exists in the test.
struct TestMessage {
    std::uint16_t id = 0;
    std::uint32_t receiver = 0;
    std::uint32_t sender = 0;
    std::vector<unsigned char> payload{};
};

/// A platform that notes, in order, everything the service framework asks of it, and answers as the test wishes.
///
///     platform.receives(message);
///     sut.Run();
///     EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", ...));
///
/// A log line is noted as "log <level> <feature> <text>". Execution units run at once, on the thread that creates them.
class ServicePlatform {
public:
    ServicePlatform();
    /// Withdraws the registrations, as a platform does when an execution unit ends.
    ~ServicePlatform();
    ServicePlatform(const ServicePlatform&) = delete;
    ServicePlatform& operator=(const ServicePlatform&) = delete;

    /// Notes an event of the test itself.
    void note(const std::string& event) { m_trace.push_back(event); }

    /// @return what was noted since the last time
    std::vector<std::string> takeTrace();

    /// @return as takeTrace(), the log lines only
    std::vector<std::string> takeLog();

    /// @return as takeTrace(), calls of one function only
    std::vector<std::string> takeCalls(const std::string& function);

    /// Puts a message, or null, into the queue. An empty queue ends a service's loop with an exception.
    void receives(TestMessage* message) { m_queue.push_back(message); }

    /// What the functions answer.
    struct Answers {
        int earlyStartup = 0;
        int eeStartup = 0;
        int radSetValue = 0;
        unsigned int radValue = 0;
        int tagRegister = 0;
        int tagUnregister = 0;
        int registerLogBuffer = 0;
        std::map<unsigned int, int> registerDomain{};
        std::map<std::string, int> tagGetResult{};
        std::map<std::string, std::uint32_t> tagU32{};
        EAaProEuRetVal policyResult = EAaProEuRetVal_NoError;
        EAaProEuSchedulingPolicy policy = EAaProEuSchedulingPolicy_Fifo;
        EAaProEuRetVal euCreation = EAaProEuRetVal_NoError;
        bool euRuns = true;
        std::uint16_t ownNid = 0x0123;
        std::function<std::uint16_t(std::uint16_t)> userRegister = [](std::uint16_t cpid) { return cpid; };
        std::function<std::int32_t(void**)> echoRoute = [](void**) { return 0; };
    } answers;

    TAaProEuEntry euEntry = nullptr;
    mock::Use<mock::AaConfigMock> config;
    mock::Use<mock::AaProMock> pro;
    mock::Use<mock::AaSemMock> sem;
    mock::Use<mock::AaStartupMock> startup;
    mock::Use<mock::AaSysComMock> sysCom;
    mock::Use<mock::AaSysLogMock> sysLog;

private:
    void answerConfiguration();
    void answerRadParameters();
    void answerExecutionUnits();
    void answerMessages();
    void answerHeaders();
    void answerSemaphores();
    void answerLog();
    EAaProEuRetVal createEu(const char* name, TAaProEuEntry entry, std::uint32_t stackSize,
                            EAaProEuSchedulingPolicy policy, std::uint32_t priority, std::uint32_t options,
                            const void* argument, std::uint32_t argumentSize, std::uint32_t wait);
    void* receive();

    std::vector<std::string> m_trace;
    std::vector<std::uint16_t> m_registered;
    char m_mutex = 0; ///< its address is the handle of the one mutex
    std::deque<TestMessage*> m_queue;
};

/// A number as it is noted.
std::string hex(std::uint64_t number);

/// A call as it is noted.
template <typename... Texts>
std::string call(const char* function, const Texts&... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + std::string(arguments)), ...);
    return std::string(function) + "(" + text + ")";
}

/// A line as it is noted.
std::string logLine(int level, unsigned int feature, const std::string& text);

/// Writing a state parameter, as it is noted.
std::string stateWritten(unsigned int stateRadId, unsigned int state);

} // namespace mox::testing
