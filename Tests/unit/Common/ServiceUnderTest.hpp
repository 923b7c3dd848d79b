#pragma once
#include "unit/Common/ServicePlatform.hpp"

#include <mox/ArgParser.hpp>
#include <mox/Service.hpp>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mox::testing {

using ps::hwapi::common::ERadHwapi;
using ps::hwapi::common::ERadHwapi_LED;
using ps::hwapi::common::ERadHwapiState;
using ps::hwapi::common::ERadHwapiState_LedState;
using ps::hwapi::common::Service;

constexpr unsigned int ledFeature = 0x2002A;
constexpr unsigned int ledState = 0x22000C;
constexpr std::uint16_t ledCpid = 0x1234;

/// A service whose hooks the test fills in and whose inner operations it can call.
class ServiceUnderTest : public Service {
public:
    explicit ServiceUnderTest(ServicePlatform& platform, std::uint16_t cpid = ledCpid,
                              std::unique_ptr<ps::hwapi::common::ArgParserBase> parser = nullptr)
        : Service("Led", cpid, ERadHwapi_LED, ERadHwapiState_LedState, std::move(parser)), m_platform(platform) {}

    using Service::CreateAndStartEu;
    using Service::HandleMessages;

    bool PreStartup() override {
        m_platform.note("PreStartup()");
        return preStartupResult;
    }
    void Init() override {
        m_platform.note("Init()");
        onInit();
    }
    void Exit() override {
        m_platform.note("Exit()");
        Service::Exit();
    }

    std::function<void()> onInit = [] {};
    bool preStartupResult = true;

private:
    ServicePlatform& m_platform;
};

/// A delegate that does what the test says and notes its own end.
class TestDelegate : public ps::hwapi::common::MsgDelegateBase {
public:
    TestDelegate(
        ServicePlatform& platform, std::uint16_t msgId, std::function<void(void*)> handler = [](void*) {})
        : MsgDelegateBase(msgId), m_platform(platform), m_handler(std::move(handler)) {}
    ~TestDelegate() override { m_platform.note("~TestDelegate(" + hex(GetMsgId()) + ")"); }

    void HandleMessage(void* msg) override {
        m_platform.note("HandleMessage(" + hex(static_cast<const TestMessage*>(msg)->id) + ")");
        m_handler(msg);
    }

private:
    ServicePlatform& m_platform;
    std::function<void(void*)> m_handler;
};

/// A command line as main() gets it.
class CommandLine {
public:
    explicit CommandLine(std::vector<std::string> words) : m_words(std::move(words)) {
        for (std::string& word : m_words) {
            m_argv.push_back(word.data());
        }
        m_argv.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(m_words.size()); }
    char** argv() { return m_argv.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char*> m_argv;
};

/// The service on a platform that notes everything; what its construction notes is dropped.
class ServiceOnPlatform : public ::testing::Test {
protected:
    ServiceOnPlatform() { platform.takeTrace(); }

    std::string state(unsigned int value) const { return stateWritten(ledState, value); }
    std::string log(int level, const std::string& text) const { return logLine(level, ledFeature, text); }

    ServicePlatform platform;
    ServiceUnderTest sut{platform};
};

} // namespace mox::testing
