#include "../core/Eu.hpp"
#include "../core/Inbox.hpp"
#include "../core/Send.hpp"
#include "../run/PlatformLog.hpp"
#include "AaSysCom.hpp"

namespace mox::host {

namespace {

EAaSysComRetVal sendFrom(void* msg, std::uint32_t sender) {
    Message* message = Message::of(msg);
    if (message == nullptr) {
        return EAaSysComRetVal_InvalidValue;
    }
    message->header.sender = sender;
    return sendMessage(message);
}

/// What `take` finds in the caller's queue within a time limit. An execution unit whose registrations have ended gets
/// what is queued, and then does not wait: nothing can come any more.
template <class Take>
void* receive(const char* function, std::int32_t timeoutUs, Take&& take) {
    const Eu& eu = Eu::current();
    const bool registered = eu.address() != 0;
    Message* message = eu.inbox() != nullptr ? take(*eu.inbox(), registered ? timeoutUs : 0) : nullptr;
    if (message == nullptr && !registered) {
        logPlatform(4, "%s: execution unit %u has no registration", function, eu.id());
    }
    return message != nullptr ? message->handle() : nullptr;
}

Message* takeAny(Inbox& inbox, std::int32_t timeoutUs) {
    return inbox.take(timeoutUs);
}

} // namespace

EAaSysComRetVal AaSysComMsgSend(void* msg) {
    return sendFrom(msg, Eu::current().address());
}

EAaSysComRetVal AaSysComMsgSendS(void* msg, std::uint32_t sender) {
    return sendFrom(msg, sender);
}

EAaSysComRetVal AaSysComMsgForward(void* msg, std::uint32_t receiver) {
    const EAaSysComRetVal result = host::AaSysComMsgSetReceiver(msg, receiver);
    return result == EAaSysComRetVal_NoError ? host::AaSysComMsgSend(msg) : result;
}

EAaSysComRetVal AaSysComMsgRelay(void* msg, std::uint32_t receiver) {
    Message* message = Message::of(msg);
    if (message == nullptr) {
        return EAaSysComRetVal_InvalidValue;
    }
    message->header.receiver = receiver;
    return sendMessage(message);
}

void* AaSysComMsgReceive(std::int32_t timeoutUs, std::uint32_t option) {
    static_cast<void>(option);
    return receive("AaSysComMsgReceive", timeoutUs, takeAny);
}

void* AaSysComMsgReceiveSelective(std::int32_t timeoutUs, const std::uint16_t* filter) {
    constexpr const char* self = "AaSysComMsgReceiveSelective";
    if (filter == nullptr || filter[0] == 0) {
        return receive(self, timeoutUs, takeAny);
    }
    return receive(self, timeoutUs, [filter](Inbox& inbox, std::int32_t limitUs) {
        return inbox.takeSelective(limitUs, filter + 1, filter[0]);
    });
}

} // namespace mox::host
