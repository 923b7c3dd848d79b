#include "Send.hpp"

#include "../bus/Outbox.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "Inbox.hpp"
#include "Registry.hpp"

#include <atomic>
#include <map>
#include <mutex>

namespace mox::host {

namespace {

/// Next hops; hardly any process sets one, so senders look at a flag first.
class Hops {
public:
    void set(std::uint16_t node, std::uint32_t via) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (via == 0) {
            m_hops.erase(node);
        } else {
            m_hops[node] = via;
        }
        m_any.store(!m_hops.empty(), std::memory_order_release);
    }
    std::uint32_t of(std::uint16_t node) {
        if (!m_any.load(std::memory_order_acquire)) {
            return 0;
        }
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto hop = m_hops.find(node);
        return hop != m_hops.end() ? hop->second : 0;
    }

private:
    std::atomic<bool> m_any{false};
    std::mutex m_mutex;
    std::map<std::uint16_t, std::uint32_t> m_hops;
};

Hops& hops() {
    static auto* all = new Hops; // outlives every thread
    return *all;
}

EAaSysComRetVal resultOf(Delivery delivery) {
    switch (delivery) {
    case Delivery::done:
        return EAaSysComRetVal_NoError;
    case Delivery::gone:
        return EAaSysComRetVal_NoReceiver;
    case Delivery::full:
        return EAaSysComRetVal_ReceiverFull;
    default:
        return EAaSysComRetVal_OutOfResources;
    }
}

EAaSysComRetVal sendOutside(const Run& run, Message* message, std::uint16_t node, std::uint16_t cpid) {
    const Delivery delivery =
        deliverMessage(run, {SocketKey::Kind::endpoint, node, cpid}, message->handle(), message->wireSize());
    if (delivery == Delivery::full) {
        logPlatform(3, "message 0x%04X from 0x%08X: receiver 0x%08X is full", message->header.id,
                    message->header.sender, message->header.receiver);
    }
    Message::release(message);
    return resultOf(delivery);
}

EAaSysComRetVal dropped(Message* message, EAaSysComRetVal result) {
    Message::release(message);
    return result;
}

EAaSysComRetVal sendTo(const Run* run, Message* message, std::uint16_t node, std::uint16_t cpid) {
    const std::uint16_t own = run != nullptr ? run->node() : std::uint16_t{0};
    const bool isOwn = node == own || node == 0 || node == localNode;
    Inbox* inbox = isOwn ? Registry::instance().find(cpid) : nullptr;
    if (inbox != nullptr && inbox->push(message)) {
        return EAaSysComRetVal_NoError;
    }
    if (run == nullptr) {
        return dropped(message, isOwn ? EAaSysComRetVal_NoReceiver : EAaSysComRetVal_NoRun);
    }
    return sendOutside(*run, message, isOwn ? own : node, cpid);
}

} // namespace

void setHop(std::uint16_t node, std::uint32_t via) {
    hops().set(node, via);
}

EAaSysComRetVal sendMessage(Message* message) {
    const Run* run = Run::current();
    const auto node = static_cast<std::uint16_t>(message->header.receiver >> 16U);
    const auto cpid = static_cast<std::uint16_t>(message->header.receiver);
    message->from = Message::From::thisProcess;
    if (const std::uint32_t via = hops().of(node)) {
        return sendTo(run, message, static_cast<std::uint16_t>(via >> 16U), static_cast<std::uint16_t>(via));
    }
    return sendTo(run, message, node, cpid);
}

} // namespace mox::host
