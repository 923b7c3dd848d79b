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

Inbox* inboxOfCaller(const char* function) {
    Inbox* inbox = Eu::current().inbox();
    if (inbox == nullptr) {
        logPlatform(4, "%s: execution unit %u has no registration", function, Eu::current().id());
    }
    return inbox;
}

void* handleOf(Message* message) {
    return message != nullptr ? message->handle() : nullptr;
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
    Inbox* inbox = inboxOfCaller("AaSysComMsgReceive");
    return inbox != nullptr ? handleOf(inbox->take(timeoutUs)) : nullptr;
}

void* AaSysComMsgReceiveSelective(std::int32_t timeoutUs, const std::uint16_t* filter) {
    Inbox* inbox = inboxOfCaller("AaSysComMsgReceiveSelective");
    if (inbox == nullptr) {
        return nullptr;
    }
    if (filter == nullptr || filter[0] == 0) {
        return handleOf(inbox->take(timeoutUs));
    }
    return handleOf(inbox->takeSelective(timeoutUs, filter + 1, filter[0]));
}

} // namespace mox::host
