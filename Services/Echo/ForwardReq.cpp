#include "ForwardReq.hpp"

#include <mox/kit/PayloadView.hpp>
#include <mox/kit/PayloadWriter.hpp>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysTimer.h>

#include <algorithm>
#include <cstring>

namespace mox::echo {

using kit::ByteOrder;
using kit::PayloadView;
using kit::PayloadWriter;
using ps::hwapi::common::Req;
using ps::hwapi::common::ReqHandler;

namespace {

constexpr std::uint32_t wordSize = sizeof(std::uint32_t);

std::uint8_t* bytesOf(void* msg) {
    return static_cast<std::uint8_t*>(AaSysComMsgGetPayload(msg));
}

void append(void* msg, std::uint32_t offset, const void* data, std::uint32_t size) {
    if (size != 0) {
        std::memcpy(bytesOf(msg) + offset, data, size);
    }
}

} // namespace

Req* ForwardReqHandler::CreateReq(void* msg) {
    return new ForwardReq(*this, m_feature, msg, ++m_lastTicket, m_timeoutMs);
}

void ForwardReqHandler::handleTimeout(void* msg) {
    const auto ticket = PayloadView::of(msg).tryRead<std::uint32_t>(sizeof(void*));
    const auto hasTicket = [ticket](const Req* req) { return static_cast<const ForwardReq*>(req)->ticket() == ticket; };
    if (std::any_of(m_reqs.begin(), m_reqs.end(), hasTicket)) {
        HandleForwardedReqTimeout(msg);
    }
}

ForwardReq::ForwardReq(ReqHandler& handler, ps::hwapi::common::ERadHwapi feature, void* msg, std::uint32_t ticket,
                       std::uint32_t timeoutMs)
    : Req(handler, feature, msg),
      m_client(AaSysComMsgGetSender(msg)),
      m_own(AaSysComMsgGetReceiver(msg)),
      m_ticket(ticket),
      m_timeoutMs(timeoutMs) {}

ForwardReq::~ForwardReq() {
    if (m_timerId != 0) {
        AaSysTimerDelete(m_timerId);
    }
}

void ForwardReq::HandleReq() {
    const PayloadView request = PayloadView::of(m_msgHandle, ByteOrder::little);
    const auto target = request.tryRead<std::uint32_t>(0);
    Outcome failure = Outcome::malformed;
    if (target) {
        // The timer first: an answer must find the request complete.
        if (startTimer() && forward(*target, request)) {
            return;
        }
        failure = Outcome::notSent;
    }
    answer(failure);
    m_handler.ReqCompleted(this);
}

bool ForwardReq::forward(std::uint32_t target, const PayloadView& request) {
    const auto size = static_cast<std::uint32_t>(request.size()); // the ticket takes the place of the target
    void* const msg = AaSysComMsgCreate(echoRequest, size, target);
    if (msg == nullptr) {
        return false;
    }
    PayloadWriter::of(msg, ByteOrder::little).write<std::uint32_t>(0, m_ticket);
    append(msg, wordSize, bytesOf(m_msgHandle) + wordSize, size - wordSize);
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_feature, "forwarding request %u of 0x%08X to 0x%08X", m_ticket,
                   m_client, target);
    return AaSysComMsgSendS(msg, m_own) == EAaSysComRetVal_NoError;
}

bool ForwardReq::startTimer() {
    const Req* const self = this;
    void* msg = AaSysComMsgCreate(forwardTimeout, sizeof self + wordSize, m_own);
    if (msg == nullptr) {
        return false;
    }
    AaSysComMsgSetSender(msg, m_own);
    append(msg, 0, &self, sizeof self);
    append(msg, sizeof self, &m_ticket, wordSize);
    const bool started = AaSysTimermCreate(&m_timerId, m_timeoutMs, 0, msg) == EAaSysTimerRetVal_NoError;
    if (!started) {
        AaSysComMsgDestroy(&msg); // a timer that does not run leaves its message
    }
    return started;
}

void ForwardReq::HandleForwardedReqResp(void* msg) {
    const PayloadView response = PayloadView::of(msg, ByteOrder::little);
    const auto ticket = response.tryRead<std::uint32_t>(0);
    if (ticket != m_ticket) {
        return; // another request's
    }
    answer(Outcome::answered, bytesOf(msg) + wordSize, static_cast<std::uint32_t>(response.size()) - wordSize);
    m_handler.ReqCompleted(this);
}

void ForwardReq::HandleForwardedReqTimeout() {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, m_feature, "request %u of 0x%08X: no answer within %u ms", m_ticket,
                   m_client, m_timeoutMs);
    answer(Outcome::timedOut);
    m_handler.ReqCompleted(this);
}

void ForwardReq::answer(Outcome outcome, const std::uint8_t* data, std::uint32_t size) const {
    void* const msg = AaSysComMsgCreate(forwardResponse, wordSize + size, m_client);
    if (msg == nullptr) {
        return;
    }
    PayloadWriter::of(msg, ByteOrder::little).write<std::uint32_t>(0, static_cast<std::uint32_t>(outcome));
    append(msg, wordSize, data, size);
    AaSysComMsgSendS(msg, m_own);
}

} // namespace mox::echo
