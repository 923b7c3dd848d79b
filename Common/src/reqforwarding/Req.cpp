#include <mox/MsgHandlingException.hpp>
#include <mox/Req.hpp>
#include <pal/AaSysLog.h>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr const char* sourcePath = "Common/src/reqforwarding/Req";
// Not the lines of this file: callers compare these numbers.
constexpr unsigned int handleReqLine = 40;
constexpr unsigned int handleForwardedReqRespLine = 51;
constexpr unsigned int handleForwardedReqTimeoutLine = 61;
} // namespace constant
} // namespace

Req::Req(ReqHandler& handler, ERadHwapi feature, void* msgHandle)
    : m_handler(handler), m_feature(feature), m_msgHandle(msgHandle) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "Req::Req");
}

Req::~Req() {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "Req::~Req this: '%p'", static_cast<void*>(this));
}

void Req::HandleReq() {
    throw MsgHandlingException("Req::HandleReq NOT IMPLEMENTED", constant::sourcePath, constant::handleReqLine);
}

void Req::HandleForwardedReqResp(void* /*msgHandle*/) {
    throw MsgHandlingException("Req::HandleForwardedReqResp NOT IMPLEMENTED", constant::sourcePath,
                               constant::handleForwardedReqRespLine);
}

void Req::HandleForwardedReqTimeout() {
    throw MsgHandlingException("Req::HandleForwardedReqTimeout NOT IMPLEMENTED", constant::sourcePath,
                               constant::handleForwardedReqTimeoutLine);
}

} // namespace ps::hwapi::common
