#include "Readiness.hpp"

#include "Failure.hpp"
#include "RunView.hpp"

#include <pal/AaSysCom.h>

#include <host/bus/SocketNames.hpp>
#include <host/run/Run.hpp>

namespace mox::tools {

Readiness::Readiness(const host::Run& run) : m_run(run) {
    if (AaSysComEuUserRegister(0) == 0) {
        throw Failure(ExitStatus::failed, "no address is left on node " + host::hex4(run.node()));
    }
}

void Readiness::ask(std::uint16_t node, std::uint32_t pid) {
    if (m_asked.count(pid) != 0) {
        return;
    }
    for (const std::uint16_t cpid : cpidsOf(endpointsOf(m_run, node), pid)) {
        void* request =
            AaSysComMsgCreate(AASYSCOM_ECHO_ROUTE_REQ_MSG, sizeof(SAaSysComEchoRoute), AaSysComSicadGet(cpid, node));
        if (AaSysComMsgSend(request) == EAaSysComRetVal_NoError) {
            m_asked.insert(pid);
        }
    }
}

void Readiness::listen(int timeoutMs) {
    constexpr int microseconds = 1000;
    void* answer = AaSysComMsgReceive(timeoutMs * microseconds, 0);
    if (answer == nullptr) {
        return;
    }
    if (AaSysComMsgGetId(answer) == AASYSCOM_ECHO_ROUTE_RESP_MSG) {
        const std::uint32_t sender = AaSysComMsgGetSender(answer);
        const int directory = host::nodeDirectory(m_run, AaSysComSicadGetNid(sender));
        const std::uint32_t owner = host::ownerOf(directory, AaSysComSicadGetCpid(sender));
        if (owner != 0) { // 0: it has gone since
            m_ready.insert(owner);
        }
    }
    AaSysComMsgDestroy(&answer);
}

} // namespace mox::tools
