#pragma once
#include "EchoMessages.hpp"

#include <mox/Req.hpp>
#include <mox/ReqHandler.hpp>
#include <mox/kit/PayloadView.hpp>

#include <cstdint>

namespace mox::echo {

/// Keeps the requests that wait for another node's echo. Main EU only.
class ForwardReqHandler : public ps::hwapi::common::ReqHandler {
public:
    /// @param timeoutMs  how long the other node has to answer
    ForwardReqHandler(ps::hwapi::common::ERadHwapi feature, std::uint32_t timeoutMs)
        : ReqHandler(feature), m_timeoutMs(timeoutMs) {}

    /// Tells a request that its time is up, if one has the ticket. The address alone is not enough: a time-out may be
    /// under way while its request completes, and a later request may get the same address.
    /// @param msg  forwardTimeout, of whatever size and from whomever; not owned
    void handleTimeout(void* msg);

protected:
    ps::hwapi::common::Req* CreateReq(void* msg) override;

private:
    const std::uint32_t m_timeoutMs;
    std::uint32_t m_lastTicket = 0;
};

/// One request that this service cannot answer itself: it asks another node's echo and answers its client when that one
/// has answered or the time is up. The ticket in front of the forwarded bytes tells whose answer has come.
class ForwardReq : public ps::hwapi::common::Req {
public:
    ForwardReq(ps::hwapi::common::ReqHandler& handler, ps::hwapi::common::ERadHwapi feature, void* msg,
               std::uint32_t ticket, std::uint32_t timeoutMs);
    ~ForwardReq() override;

    void HandleReq() override;
    void HandleForwardedReqResp(void* msg) override;
    void HandleForwardedReqTimeout() override;

    std::uint32_t ticket() const { return m_ticket; }

private:
    bool forward(std::uint32_t target, const kit::PayloadView& request);
    bool startTimer();
    void answer(Outcome outcome, const std::uint8_t* data = nullptr, std::uint32_t size = 0) const;

    const std::uint32_t m_client;
    const std::uint32_t m_own;
    const std::uint32_t m_ticket;
    const std::uint32_t m_timeoutMs;
    std::uint32_t m_timerId = 0;
};

} // namespace mox::echo
