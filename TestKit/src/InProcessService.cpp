#include "Poll.hpp"

#include <pal/AaSysCom.h>
#include <testkit/CapturedLog.hpp>
#include <testkit/InProcessService.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <future>
#include <thread>

namespace mox::testkit {
namespace {

using ps::hwapi::common::Service;

constexpr unsigned int waitingForMessage = 2;
constexpr unsigned int handlingMessage = 3;

/// Ends the service's loop from within, as any thread may ask for.
class StopDelegate : public ps::hwapi::common::MsgDelegateBase {
public:
    explicit StopDelegate(Service& service) : MsgDelegateBase(stopMessageId), m_service(service) {}
    void HandleMessage(void*) override { m_service.Terminate(); }

private:
    Service& m_service;
};

/// The command line as main() gets it.
class CommandLine {
public:
    CommandLine(const std::string& name, const std::vector<std::string>& arguments) : m_words(arguments) {
        m_words.insert(m_words.begin(), "MOX" + name + "Exe");
        for (std::string& word : m_words)
            m_pointers.push_back(word.data());
        m_pointers.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(m_words.size()); }
    char** argv() { return m_pointers.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char*> m_pointers;
};

/// The life of a service as main() leads it.
bool live(Service& service, CommandLine& line) {
    bool started = false;
    try {
        started = service.Startup(line.argc(), line.argv());
    } catch (const ps::hwapi::common::CHwapiException& failure) {
        ADD_FAILURE() << "the service failed: " << failure.what() << ": " << failure.getDescription();
    } catch (const std::exception& failure) {
        ADD_FAILURE() << "the service failed: " << failure.what();
    }
    service.Shutdown();
    return started;
}

} // namespace

struct InProcessService::State {
    State(Service& tested, const std::vector<std::string>& arguments)
        : service(tested), line(tested.GetName(), arguments) {}

    bool hasEnded(unsigned limitMs) {
        return end.wait_for(std::chrono::milliseconds(limitMs)) == std::future_status::ready;
    }

    Service& service;
    CommandLine line;
    std::future<bool> end;
    bool stopTried = false;
    bool joined = false;
    bool result = false;
};

InProcessService::InProcessService(Service& service, const std::vector<std::string>& arguments, unsigned limitMs)
    : m_state(std::make_unique<State>(service, arguments)) {
    service.AddMsgDelegate(std::make_unique<StopDelegate>(service));
    m_state->end =
        std::async(std::launch::async, [state = m_state.get()] { return live(state->service, state->line); });
    pollFor(limitMs, [this] { return m_state->hasEnded(0) || isRunning(); });
    if (m_state->hasEnded(0))
        ADD_FAILURE() << "service " << service.GetName() << " has ended instead of waiting for messages: state "
                      << service.GetServiceStateRad() << CapturedLog::newest();
    else if (!isRunning())
        ADD_FAILURE() << "service " << service.GetName() << " does not wait for messages after " << limitMs
                      << " ms: state " << service.GetServiceStateRad() << CapturedLog::newest();
}

InProcessService::~InProcessService() {
    if (!m_state->stopTried)
        stop();
    if (m_state->joined)
        return;
    std::fputs("a service is destroyed that still runs: the test's process ends here\n", stderr);
    std::abort();
}

bool InProcessService::isRunning() const {
    const unsigned int state = m_state->joined ? 0 : m_state->service.GetServiceStateRad();
    return (state == waitingForMessage || state == handlingMessage) && !m_state->hasEnded(0);
}

std::uint32_t InProcessService::address() const {
    return m_state->service.GetSicad();
}

bool InProcessService::stop(unsigned limitMs) {
    m_state->stopTried = true;
    if (!m_state->joined && !m_state->hasEnded(0))
        AaSysComMsgSend(AaSysComMsgCreate(stopMessageId, 0, address()));
    return awaitEnd(limitMs) && m_state->result;
}

bool InProcessService::awaitEnd(unsigned limitMs) {
    if (m_state->joined)
        return true;
    if (!m_state->hasEnded(limitMs)) {
        ADD_FAILURE() << "service " << m_state->service.GetName() << " has not ended within " << limitMs
                      << " ms: state " << m_state->service.GetServiceStateRad() << CapturedLog::newest();
        return false;
    }
    m_state->result = m_state->end.get();
    m_state->joined = true;
    return true;
}

} // namespace mox::testkit
