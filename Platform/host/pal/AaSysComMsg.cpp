#include "../core/Message.hpp"
#include "AaSysCom.hpp"

#include <cstring>
#include <utility>

namespace mox::host {

namespace {

std::uint32_t bodyCapacity(std::uint32_t payloadSize, bool withTrailer) {
    return withTrailer ? static_cast<std::uint32_t>(Message::trailerOffset(payloadSize) + sizeof(SAaSysComMsgTrailer))
                       : payloadSize;
}

Message* create(std::uint16_t id, std::uint32_t payloadSize, std::uint32_t receiver, std::uint32_t sender) {
    if (payloadSize > AASYSCOM_MAX_PAYLOAD) {
        return nullptr;
    }
    Message* message = Message::allocate(payloadSize);
    if (message != nullptr) {
        message->header = {id, 0, receiver, sender, 0, static_cast<std::uint16_t>(payloadSize)};
        std::memset(message->payload(), 0, payloadSize);
    }
    return message;
}

Message* copy(const void* handle) {
    const Message* original = Message::of(handle);
    if (original == nullptr) {
        return nullptr;
    }
    const std::size_t body = Message::bodySize(original->header);
    Message* message = Message::allocate(static_cast<std::uint32_t>(body));
    if (message != nullptr) {
        std::memcpy(message->handle(), handle, sizeof(message->header) + body);
    }
    return message;
}

void* handleOf(Message* message) {
    return message != nullptr ? message->handle() : nullptr;
}

} // namespace

void* AaSysComMsgCreate(std::uint16_t id, std::uint32_t payloadSize, std::uint32_t receiver) {
    return handleOf(create(id, payloadSize, receiver, 0));
}

void* AaSysComMsgCreateCopy(const void* msg) {
    return handleOf(copy(msg));
}

void* AaSysComMsgCreateCopyTo(const void* msg, std::uint32_t receiver) {
    Message* message = copy(msg);
    if (message != nullptr) {
        message->header.receiver = receiver;
    }
    return handleOf(message);
}

void* AaSysComMsgCreateReply(const void* request, std::uint16_t id, std::uint32_t payloadSize) {
    const Message* message = Message::of(request);
    return message == nullptr ? nullptr
                              : handleOf(create(id, payloadSize, message->header.sender, message->header.receiver));
}

EAaSysComRetVal AaSysComMsgDestroy(void** msg) {
    Message* message = msg != nullptr ? Message::of(*msg) : nullptr;
    if (message == nullptr) {
        return EAaSysComRetVal_InvalidValue;
    }
    Message::release(message);
    *msg = nullptr;
    return EAaSysComRetVal_NoError;
}

void* AaSysComMsgTake(void** msg) {
    return msg != nullptr ? std::exchange(*msg, nullptr) : nullptr;
}

std::uint16_t AaSysComMsgGetId(const void* msg) {
    const Message* message = Message::of(msg);
    return message != nullptr ? message->header.id : std::uint16_t{0};
}

std::uint32_t AaSysComMsgGetSender(const void* msg) {
    const Message* message = Message::of(msg);
    return message != nullptr ? message->header.sender : 0;
}

std::uint32_t AaSysComMsgGetReceiver(const void* msg) {
    const Message* message = Message::of(msg);
    return message != nullptr ? message->header.receiver : 0;
}

EAaSysComRetVal AaSysComMsgSetSender(void* msg, std::uint32_t sender) {
    Message* message = Message::of(msg);
    if (message == nullptr) {
        return EAaSysComRetVal_InvalidValue;
    }
    message->header.sender = sender;
    return EAaSysComRetVal_NoError;
}

EAaSysComRetVal AaSysComMsgSetReceiver(void* msg, std::uint32_t receiver) {
    Message* message = Message::of(msg);
    if (message == nullptr) {
        return EAaSysComRetVal_InvalidValue;
    }
    message->header.receiver = receiver;
    return EAaSysComRetVal_NoError;
}

void* AaSysComMsgGetPayload(const void* msg) {
    Message* message = Message::of(msg);
    return message != nullptr && message->header.size != 0 ? message->payload() : nullptr;
}

std::uint32_t AaSysComMsgGetPayloadSize(const void* msg) {
    const Message* message = Message::of(msg);
    return message != nullptr ? message->header.size : 0;
}

std::uint32_t AaSysComMsgGetMef(const void* msg) {
    const Message* message = Message::of(msg);
    return message != nullptr ? message->header.flags & Message::formatMask : 0U;
}

void* AaSysComMsgGetTrailer(const void* msg) {
    Message* message = Message::of(msg);
    return message != nullptr && message->hasTrailer() ? message->trailer() : nullptr;
}

EAaSysComRetVal AaSysComMsgAddTrailer(void** msg) {
    Message* message = msg != nullptr ? Message::of(*msg) : nullptr;
    if (message == nullptr || message->hasTrailer()) {
        return EAaSysComRetVal_InvalidValue;
    }
    const std::uint32_t needed = bodyCapacity(message->header.size, true);
    if (message->capacity < needed) {
        Message* larger = Message::allocate(needed);
        if (larger == nullptr) {
            return EAaSysComRetVal_OutOfResources;
        }
        std::memcpy(larger->handle(), *msg, message->wireSize());
        Message::release(message);
        message = larger;
        *msg = message->handle();
    }
    message->header.flags = static_cast<std::uint16_t>(message->header.flags | Message::formatWithTrailer);
    *message->trailer() = {};
    return EAaSysComRetVal_NoError;
}

} // namespace mox::host
