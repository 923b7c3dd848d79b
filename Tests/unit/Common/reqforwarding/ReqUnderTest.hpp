#pragma once
#include "unit/Common/ServicePlatform.hpp"

#include <mox/ReqHandler.hpp>

#include <gmock/gmock.h>

#include <cstdio>
#include <functional>
#include <list>
#include <string>

namespace mox::testing {

/// A pointer as a log line shows it.
inline std::string pointer(const void* address) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", address);
    return text;
}

/// A handler that creates what the test says.
class HandlerUnderTest : public ps::hwapi::common::ReqHandler {
public:
    using ReqHandler::m_reqs;
    using ReqHandler::ReqHandler;

    std::function<ps::hwapi::common::Req*(void*)> onCreate = [](void*) { return nullptr; };

protected:
    ps::hwapi::common::Req* CreateReq(void* msgHandle) override { return onCreate(msgHandle); }
};

/// A request that does what the test says and notes what it is told.
class TestReq : public ps::hwapi::common::Req {
public:
    TestReq(ServicePlatform& platform, ps::hwapi::common::ReqHandler& handler, ps::hwapi::common::ERadHwapi feature,
            const char* name)
        : Req(handler, feature, nullptr), m_platform(platform), m_name(name) {}
    ~TestReq() override { m_platform.note("~" + m_name); }

    void HandleReq() override {
        m_platform.note(m_name + " begins");
        onReq(*this);
    }
    void HandleForwardedReqResp(void* msgHandle) override {
        m_platform.note(m_name + " is offered " + pointer(msgHandle));
        onResp(*this);
    }
    void HandleForwardedReqTimeout() override {
        m_platform.note(m_name + " has timed out");
        onTimeout(*this);
    }
    void complete() { m_handler.ReqCompleted(this); }

    std::function<void(TestReq&)> onReq = [](TestReq&) {};
    std::function<void(TestReq&)> onResp = [](TestReq&) {};
    std::function<void(TestReq&)> onTimeout = [](TestReq&) {};

private:
    ServicePlatform& m_platform;
    std::string m_name;
};

class ReqForwarding : public ::testing::Test {
protected:
    static constexpr ps::hwapi::common::ERadHwapi feature = ps::hwapi::common::ERadHwapi_FIRM;

    std::string log(const std::string& text) const { return logLine(1, feature, text); }

    ServicePlatform platform;
    HandlerUnderTest handler{feature};
};

} // namespace mox::testing
