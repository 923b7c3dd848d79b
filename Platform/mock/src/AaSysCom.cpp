#include "host/pal/AaSysCom.hpp"

#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"
#include "mock/src/ExecutionUnit.hpp"

#define MOX_FAMILY <families/AaSysCom.def>
#define MOX_FAMILY_NAME AaSysCom
#include "mock/declareCalls.hpp"

namespace mox::mock {
namespace {

/// Destroys the message in a variable.
class DestroysMessage {
public:
    DestroysMessage(Call& call, void** message)
        : m_taken(call, Kind::message, message == nullptr ? 0 : word(*message)) {}
    void finish(EAaSysComRetVal) { m_taken.close(); }

private:
    Taken m_taken;
};

/// May move the message in a variable, or take it: then the variable is null afterwards.
class ReplacesMessage {
public:
    ReplacesMessage(Call& call, void** message)
        : m_taken(call, Kind::message, message == nullptr ? 0 : word(*message)), m_message(message) {}
    template <typename Result>
    void finish(const Result&) {
        if (m_message != nullptr && *m_message != nullptr)
            m_taken.putBack(word(*m_message));
        else
            m_taken.close();
    }

private:
    Taken m_taken;
    void** m_message;
};

/// Registers the CPID that the call answers.
class RegistersCpid {
public:
    RegistersCpid(Call& call, std::uint16_t) : m_call(call) {}
    void finish(std::uint16_t cpid) {
        if (!m_call.faulted() && cpid != 0)
            enterName(m_call, Kind::registration, nameOf<0>(cpid));
    }

private:
    Call& m_call;
};

} // namespace

MOX_EFFECT(AaSysComMsgCreate, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgCreateCopy, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgCreateCopyTo, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgCreateReply, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgReceive, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgReceiveSelective, OpensResult<Kind::message, destroyMessage>)
MOX_EFFECT(AaSysComMsgDestroy, DestroysMessage)
MOX_EFFECT(AaSysComMsgAddTrailer, ReplacesMessage)
MOX_EFFECT(AaSysComControlHandleEchoRouteReq, ReplacesMessage)
MOX_EFFECT(AaSysComMsgSend, GivesMessage<0>)
MOX_EFFECT(AaSysComMsgSendS, GivesMessage<0>)
MOX_EFFECT(AaSysComMsgForward, GivesMessage<0>)
MOX_EFFECT(AaSysComMsgRelay, GivesMessage<0>)
MOX_EFFECT(AaSysComEuUserRegister, RegistersCpid)
MOX_EFFECT(AaSysComUserRegister, RegistersCpid)
MOX_EFFECT(AaSysComUserDeregister, Withdraws<Kind::registration, host::AaSysComUserDeregister, 0>)
MOX_EFFECT(AaSysComLinkRegister, Registers<Kind::subscription, 0, 1>)
MOX_EFFECT(AaSysComLinkDeregister, Withdraws<Kind::subscription, host::AaSysComLinkDeregister, 0, 1>)

} // namespace mox::mock

#define MOX_REAL_BY_HAND_AaSysComEuCreateAndStart
#define MOX_REAL_BY_HAND_AaSysComEuCreateAndStartWithPolicy
#include "mock/src/bindFamily.hpp"

EAaProEuRetVal mox::mock::real::AaSysComEuCreateAndStart(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                         uint32_t stackSize, uint32_t priority, const void* argument,
                                                         uint32_t argumentSize) {
    constexpr const char* self = "AaSysComEuCreateAndStart";
    Call::noteCarriedOut(self);
    return createWatched(self, name, entry, argument, argumentSize,
                         [=](TAaProEuEntry run, const void* block, std::uint32_t size) {
                             return host::AaSysComEuCreateAndStart(euId, name, run, stackSize, priority, block, size);
                         });
}

EAaProEuRetVal mox::mock::real::AaSysComEuCreateAndStartWithPolicy(uint32_t* euId, const char* name,
                                                                   TAaProEuEntry entry, uint32_t stackSize,
                                                                   EAaProEuSchedulingPolicy policy, uint32_t priority,
                                                                   uint32_t options, const void* argument,
                                                                   uint32_t argumentSize, uint32_t wait) {
    constexpr const char* self = "AaSysComEuCreateAndStartWithPolicy";
    Call::noteCarriedOut(self);
    return createWatched(self, name, entry, argument, argumentSize,
                         [=](TAaProEuEntry run, const void* block, std::uint32_t size) {
                             return host::AaSysComEuCreateAndStartWithPolicy(euId, name, run, stackSize, policy,
                                                                             priority, options, block, size, wait);
                         });
}
