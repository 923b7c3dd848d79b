#include "AaSysMb.hpp"

#include "../run/Environment.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/PlatformLog.hpp"
#include "AaSysCom.hpp"
#include "Mailboxes.hpp"

#include <cstring>
#include <exception>
#include <functional>
#include <mutex>
#include <new>

namespace mox::host {

namespace {

using mailbox::Mailbox;
using mailbox::Reach;
using mailbox::Subscription;

constexpr unsigned int allModes =
    EAaSysMbPublMode_Process | EAaSysMbPublMode_Node | EAaSysMbPublMode_Board | EAaSysMbPublMode_System;
constexpr std::size_t trailerSize = sizeof(SAaSysComMsgTrailer);

bool isMode(unsigned int mode) {
    return mode == EAaSysMbPublMode_Process || mode == EAaSysMbPublMode_Node || mode == EAaSysMbPublMode_Board ||
           mode == EAaSysMbPublMode_System;
}

std::uint16_t nodeOf(std::uint32_t sicad) {
    return static_cast<std::uint16_t>(sicad >> 16);
}

/// Runs what works on the tables; their failures become results.
int guarded(const char* function, const std::function<int()>& body) {
    if (!environmentRuns())
        return EAaSysMbRetVal_NotStarted;
    try {
        return body();
    } catch (const std::exception& failure) {
        logPlatform(4, "%s: %s", function, failure.what());
        return EAaSysMbRetVal_OutOfResources;
    }
}

/// Forgets what this process has in the tables.
void leave() {
    try {
        for (const Subscription& subscription : mailbox::allSubscriptions())
            if (subscription.process == ownProcess())
                mailbox::erase(subscription);
        for (const Mailbox& one : mailbox::allMailboxes())
            if (one.process == ownProcess())
                mailbox::erase(one);
    } catch (const std::exception& failure) {
        logPlatform(4, "mailboxes of this process stay behind: %s", failure.what());
    }
}

void leaveAtPlatformEnd() {
    static std::mutex mutex;
    static bool registered = false;
    const std::lock_guard<std::mutex> guard(mutex);
    if (registered)
        return;
    registered = true;
    atPlatformEnd([] {
        leave();
        const std::lock_guard<std::mutex> again(mutex);
        registered = false;
    });
}

/// What a message holds behind its header.
std::string bodyOf(const void* message, bool& hasTrailer) {
    const auto* payload = static_cast<const char*>(AaSysComMsgGetPayload(message));
    std::string body(payload ? payload : "", payload ? AaSysComMsgGetPayloadSize(message) : 0);
    const void* trailer = AaSysComMsgGetTrailer(message);
    hasTrailer = trailer != nullptr;
    if (trailer)
        body.append(static_cast<const char*>(trailer), trailerSize);
    return body;
}

/// The message that a mailbox keeps, made anew.
void* messageOf(const Mailbox& kept, std::uint32_t receiver) {
    const std::size_t trailer = kept.hasTrailer ? trailerSize : 0;
    if (kept.body.size() < trailer)
        return nullptr;
    const std::size_t payload = kept.body.size() - trailer;
    void* message = AaSysComMsgCreate(kept.messageId, static_cast<std::uint32_t>(payload), receiver);
    if (!message)
        return nullptr;
    if (payload != 0)
        std::memcpy(AaSysComMsgGetPayload(message), kept.body.data(), payload);
    if (trailer != 0 && host::AaSysComMsgAddTrailer(&message) == EAaSysComRetVal_NoError)
        std::memcpy(AaSysComMsgGetTrailer(message), kept.body.data() + payload, trailer);
    return message;
}

void sendKept(const Mailbox& kept, const Subscription& subscription) {
    if (void* message = messageOf(kept, subscription.receiver))
        AaSysComMsgSendS(message, kept.publisher);
    else
        logPlatform(4, "no memory for the kept publication 0x%04X to 0x%08X", kept.messageId, subscription.receiver);
}

void sendCopy(const void* message, const Subscription& subscription) {
    void* copy = AaSysComMsgCreateCopyTo(message, subscription.receiver);
    if (!copy)
        throw std::bad_alloc();
    if (AaSysComMsgSendS(copy, AaSysComMsgGetSender(message)) != EAaSysComRetVal_NoReceiver)
        return;
    // Nobody will ever take it back for a process that has died.
    mailbox::erase(subscription);
    logPlatform(2, "subscriber 0x%08X of message 0x%04X is gone and forgotten", subscription.receiver,
                subscription.messageId);
}

void keep(const void* message, unsigned int mode) {
    auto prepared = mailbox::find(AaSysComMsgGetId(message), AaSysComMsgGetSender(message));
    if (!prepared)
        return;
    prepared->mode = static_cast<std::uint8_t>(mode);
    prepared->body = bodyOf(message, prepared->hasTrailer);
    mailbox::put(*prepared);
}

int publish(const void* message, unsigned int mode) {
    keep(message, mode);
    const Reach reach{nodeOf(AaSysComMsgGetSender(message)), ownProcess(), mode};
    for (const Subscription& subscription : mailbox::subscriptionsTo(AaSysComMsgGetId(message)))
        if (mailbox::reaches(reach, subscription))
            sendCopy(message, subscription);
    return EAaSysMbRetVal_NoError;
}

} // namespace

int AaSysMbSubscribe(std::uint16_t messageId, std::uint32_t receiver, std::uint16_t publisher, unsigned int modes) {
    if (receiver == 0 || modes == 0 || modes > allModes)
        return EAaSysMbRetVal_InvalidValue;
    return guarded("AaSysMbSubscribe", [&]() -> int {
        leaveAtPlatformEnd();
        const Subscription subscription{messageId, receiver, publisher, static_cast<std::uint8_t>(modes), ownProcess()};
        mailbox::put(subscription);
        for (const Mailbox& kept : mailbox::mailboxesOf(messageId))
            if (mailbox::reaches({nodeOf(kept.publisher), kept.process, kept.mode}, subscription))
                sendKept(kept, subscription);
        return EAaSysMbRetVal_NoError;
    });
}

int AaSysMbUnsubscribe(std::uint16_t messageId, std::uint32_t receiver) {
    return guarded("AaSysMbUnsubscribe", [&]() -> int {
        bool any = false;
        for (const Subscription& subscription : mailbox::subscriptionsTo(messageId))
            if (subscription.receiver == receiver)
                any = mailbox::erase(subscription) || any;
        return any ? EAaSysMbRetVal_NoError : EAaSysMbRetVal_NotFound;
    });
}

int AaSysMbPrepare(std::uint16_t messageId, std::uint32_t publisher) {
    if (publisher == 0)
        return EAaSysMbRetVal_InvalidValue;
    return guarded("AaSysMbPrepare", [&]() -> int {
        leaveAtPlatformEnd();
        // What a process before this one has published under the address stays.
        Mailbox prepared = mailbox::find(messageId, publisher).value_or(Mailbox());
        prepared.messageId = messageId;
        prepared.publisher = publisher;
        prepared.process = ownProcess();
        mailbox::put(prepared);
        return EAaSysMbRetVal_NoError;
    });
}

int AaSysMbPublish(void* message, EAaSysMbPublMode mode) {
    if (!message)
        return EAaSysMbRetVal_InvalidValue;
    const int result = isMode(mode) ? guarded("AaSysMbPublish", [&] { return publish(message, mode); })
                                    : static_cast<int>(EAaSysMbRetVal_InvalidValue);
    AaSysComMsgDestroy(&message);
    return result;
}

int AaSysMbRecall(std::uint16_t messageId, std::uint32_t publisher) {
    return guarded("AaSysMbRecall", [&]() -> int {
        Mailbox prepared;
        prepared.messageId = messageId;
        prepared.publisher = publisher;
        return mailbox::erase(prepared) ? EAaSysMbRetVal_NoError : EAaSysMbRetVal_NotFound;
    });
}

} // namespace mox::host
