#include <mox/MsgHandlingException.hpp>
#include <mox/ReqHandler.hpp>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

#include <algorithm>
#include <cstring>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr const char* sourcePath = "Common/src/reqforwarding/ReqHandler";
// Not a line of this file: callers compare this number.
constexpr unsigned int missingPayloadLine = 133;
} // namespace constant

void* asPointer(Req* req) {
    return req;
}

/// @return the request that a time-out message names; never to be used before it was found among the kept ones
Req* requestOf(const void* msgHandle) {
    Req* request = nullptr;
    const void* const payload = AaSysComMsgGetPayload(msgHandle);
    if (payload == nullptr || AaSysComMsgGetPayloadSize(msgHandle) < sizeof request) {
        throw MsgHandlingException("ReqHandler::HandleForwardedReqTimeout Payload missing from API_FORWARD_TIMEOUT_OUT",
                                   constant::sourcePath, constant::missingPayloadLine);
    }
    std::memcpy(&request, payload, sizeof request);
    return request;
}

} // namespace

/// A response being offered to the requests. Offers nest when a request hands on another response meanwhile.
class ReqHandler::Walk {
public:
    explicit Walk(ReqHandler& handler) : m_handler(handler), m_outer(handler.m_walk) { handler.m_walk = this; }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() { m_handler.m_walk = m_outer; }

    void begin(const Req* req) { m_offered = req; }
    /// Whether the request just asked has completed. Its address alone does not tell: a request created since may have
    /// got the same one.
    bool hasLost() const { return m_offered == nullptr; }

    static void noteCompletion(Walk* innermost, const Req* req) {
        for (Walk* walk = innermost; walk != nullptr; walk = walk->m_outer) {
            if (walk->m_offered == req) {
                walk->m_offered = nullptr;
            }
        }
    }

private:
    ReqHandler& m_handler;
    Walk* const m_outer;
    const Req* m_offered = nullptr;
};

ReqHandler::ReqHandler(ERadHwapi feature) : m_feature(feature) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::ReqHandler");
}

ReqHandler::~ReqHandler() {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::~ReqHandler");
    while (!m_reqs.empty()) {
        Req* const req = m_reqs.front();
        // First: a request that asks to be completed while it goes must not be found again.
        m_reqs.pop_front();
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::~ReqHandler delete req '%p'",
                       asPointer(req));
        delete req;
    }
}

void ReqHandler::HandleNewReq(void* msgHandle) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::HandleNewReq msgHandle '%p'", msgHandle);
    HandleNewReq(CreateReq(msgHandle));
}

void ReqHandler::HandleNewReq(Req* req) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::HandleNewReq req '%p'", asPointer(req));
    if (req == nullptr) {
        throw MsgHandlingException("ReqHandler::HandleNewReq CreateReq returned no request", constant::sourcePath,
                                   __LINE__);
    }
    m_reqs.push_back(req);
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::HandleNewReq m_reqs.size '%zu' req '%p'",
                   m_reqs.size(), asPointer(req));
    req->HandleReq();
}

void ReqHandler::ReqCompleted(Req* req) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::ReqCompleted reqPointer '%p'", asPointer(req));
    const auto it = std::find(m_reqs.begin(), m_reqs.end(), req);
    if (it != m_reqs.end()) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::ReqCompleted delete req '%p'",
                       asPointer(req));
        m_reqs.erase(it);
        Walk::noteCompletion(m_walk, req);
        delete req;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::ReqCompleted m_reqs.size '%zu'",
                   m_reqs.size());
}

void ReqHandler::HandleForwardedReqResp(void* msgHandle) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature,
                   "ReqHandler::HandleForwardedReqResp msgHandle '%p' m_reqs.size '%zu'", msgHandle, m_reqs.size());
    Walk walk(*this);
    for (Req* const req : m_reqs) {
        const std::size_t sizeBefore = m_reqs.size();
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::HandleForwardedReqResp req '%p'",
                       asPointer(req));
        walk.begin(req);
        req->HandleForwardedReqResp(msgHandle);
        // A request that completes and adds another one keeps the size, yet the walk cannot go on from it.
        if (m_reqs.size() != sizeBefore || walk.hasLost()) {
            break;
        }
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "ReqHandler::HandleForwardedReqResp m_reqs.size '%zu'",
                   m_reqs.size());
}

void ReqHandler::HandleForwardedReqTimeout(void* msgHandle) {
    Req* const target = requestOf(msgHandle);
    for (Req* const req : m_reqs) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature,
                       "ReqHandler::HandleForwardedReqTimeout req'%p' (*it)'%p'", asPointer(target), asPointer(req));
        if (req == target) {
            target->HandleForwardedReqTimeout();
            return;
        }
    }
}

} // namespace ps::hwapi::common
