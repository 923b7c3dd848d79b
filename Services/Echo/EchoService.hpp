#pragma once
#include "EchoMessages.hpp"
#include "ForwardReq.hpp"

#include <mox/Service.hpp>

#include <cstdint>
#include <memory>

namespace mox::echo {

/// Answers messages with what they hold, and has other nodes' echo services answer what is meant for them.
class EchoService : public ps::hwapi::common::Service {
public:
    EchoService();
    void Init() override;
    void Exit() override;

private:
    void onEcho(void* msg);
    void onForward(void* msg);
    void onForwardedResponse(void* msg);
    void onForwardTimeout(void* msg);
    std::uint32_t timeoutMs();

    std::unique_ptr<ForwardReqHandler> m_forwards;
};

} // namespace mox::echo
