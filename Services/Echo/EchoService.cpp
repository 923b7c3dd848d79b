#include "EchoService.hpp"

#include <mox/kit/MemberDelegate.hpp>
#include <pal/AaConfig.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

#include <cstdlib>
#include <cstring>

namespace mox::echo {

using kit::makeDelegate;
using ps::hwapi::common::ERadHwapi;
using ps::hwapi::common::ERadHwapiState;

namespace {

// The last index of each domain's room, which no hardware service uses.
constexpr auto debugFlag = static_cast<ERadHwapi>(0x20105);
constexpr auto stateParameter = static_cast<ERadHwapiState>(0x220034);

constexpr std::uint32_t defaultTimeoutMs = 1000;
constexpr std::uint32_t longestTimeoutMs = 3600 * 1000;

} // namespace

EchoService::EchoService() : Service("Echo", cpid, debugFlag, stateParameter) {
    GetArgumentParser().SetArgumentInfo("--timeout=MS How long another node has to answer, 1 to 3600000 (1000)\n");
}

void EchoService::Init() {
    AaConfigRadSetDefault(debugFlag, "ECHO", 0);
    AaConfigRadSetDefault(stateParameter, "EchoState", 0);
    m_forwards = std::make_unique<ForwardReqHandler>(debugFlag, timeoutMs());
    AddMsgDelegate(makeDelegate(echoRequest, *this, &EchoService::onEcho));
    AddMsgDelegate(makeDelegate(echoResponse, *this, &EchoService::onForwardedResponse));
    AddMsgDelegate(makeDelegate(forwardRequest, *this, &EchoService::onForward));
    AddMsgDelegate(makeDelegate(forwardTimeout, *this, &EchoService::onForwardTimeout));
}

void EchoService::Exit() {
    // Requests that still wait have timers, which end with the platform.
    m_forwards.reset();
    Service::Exit();
}

std::uint32_t EchoService::timeoutMs() {
    const std::string text = GetArgumentParser().ReadArgument("timeout");
    if (text == "arg off") {
        return defaultTimeoutMs;
    }
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 10);
    if (*end != '\0' || value == 0 || value > longestTimeoutMs) {
        throw InitFailedException("--timeout=" + text + ": expected milliseconds from 1 to 3600000",
                                  "Services/Echo/EchoService", __LINE__);
    }
    return static_cast<std::uint32_t>(value);
}

void EchoService::onEcho(void* msg) {
    const std::uint32_t size = AaSysComMsgGetPayloadSize(msg);
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, GetRadId(), "echo of %u bytes for 0x%08X", size,
                   AaSysComMsgGetSender(msg));
    void* const answer = AaSysComMsgCreateReply(msg, echoResponse, size);
    if (answer == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, GetRadId(), "no message for an echo of %u bytes", size);
        return;
    }
    if (size != 0) {
        std::memcpy(AaSysComMsgGetPayload(answer), AaSysComMsgGetPayload(msg), size);
    }
    AaSysComMsgSendS(answer, AaSysComMsgGetReceiver(msg));
}

void EchoService::onForward(void* msg) {
    m_forwards->HandleNewReq(msg);
}

void EchoService::onForwardedResponse(void* msg) {
    m_forwards->HandleForwardedReqResp(msg);
}

void EchoService::onForwardTimeout(void* msg) {
    m_forwards->handleTimeout(msg);
}

} // namespace mox::echo
