#include "Poll.hpp"
#include "host/run/Clock.hpp"

#include <pal/AaSysCom.h>
#include <testkit/BoardTest.hpp>
#include <testkit/Messages.hpp>

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <utility>
#include <vector>

namespace mox::testkit {
namespace {

std::string hex(std::uint32_t number, int digits) {
    std::ostringstream out;
    out << "0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << number;
    return out.str();
}

/// Copies a message and destroys it.
Message take(void* msg) {
    Message message;
    message.received = true;
    message.id = AaSysComMsgGetId(msg);
    message.sender = AaSysComMsgGetSender(msg);
    message.receiver = AaSysComMsgGetReceiver(msg);
    message.bytes.resize(AaSysComMsgGetPayloadSize(msg));
    if (!message.bytes.empty())
        std::memcpy(message.bytes.data(), AaSysComMsgGetPayload(msg), message.bytes.size());
    AaSysComMsgDestroy(&msg);
    return message;
}

/// The endpoints of a thread share its message queue: what one reads may be another's.
std::vector<Messages*>& endpointsOfThread() {
    thread_local std::vector<Messages*> endpoints;
    return endpoints;
}

std::uint64_t deadlineAfter(unsigned limitMs) {
    return host::realMonotonicNs() + std::uint64_t{limitMs} * 1'000'000U;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Message& message) {
    constexpr std::size_t mostShown = 32;
    if (!message.received)
        return out << "no message";
    out << "message " << hex(message.id, 4) << " from " << hex(message.sender, 8) << ", " << message.bytes.size()
        << " bytes" << (message.bytes.empty() ? "" : ":");
    std::ostringstream bytes;
    bytes << std::hex << std::uppercase << std::setfill('0');
    for (std::size_t i = 0; i < std::min(message.bytes.size(), mostShown); ++i)
        bytes << ' ' << std::setw(2) << unsigned{message.bytes[i]};
    return out << bytes.str() << (message.bytes.size() > mostShown ? " ..." : "");
}

Messages::Messages(std::uint16_t cpid) {
    startPlatform();
    m_cpid = AaSysComEuUserRegister(cpid);
    if (m_cpid == 0)
        ADD_FAILURE() << "the test's endpoint " << hex(cpid, 4) << " could not be registered";
    m_address = AaSysComSicadGet(m_cpid, AaSysComGetOwnNid());
    endpointsOfThread().push_back(this);
}

Messages::~Messages() {
    auto& endpoints = endpointsOfThread();
    endpoints.erase(std::remove(endpoints.begin(), endpoints.end(), this), endpoints.end());
    if (m_cpid != 0)
        AaSysComUserDeregister(m_cpid);
}

void Messages::send(std::uint32_t receiver, std::uint16_t id, const Bytes& bytes) const {
    void* msg = AaSysComMsgCreate(id, static_cast<std::uint32_t>(bytes.size()), receiver);
    if (msg == nullptr) {
        ADD_FAILURE() << "message " << hex(id, 4) << " with " << bytes.size() << " bytes could not be created";
        return;
    }
    if (!bytes.empty())
        std::memcpy(AaSysComMsgGetPayload(msg), bytes.data(), bytes.size());
    const EAaSysComRetVal result = AaSysComMsgSendS(msg, m_address);
    if (result != EAaSysComRetVal_NoError)
        ADD_FAILURE() << "message " << hex(id, 4) << " to " << hex(receiver, 8) << " was not sent: result "
                      << static_cast<int>(result)
                      << (result == EAaSysComRetVal_NoReceiver ? " (nobody has registered that address)" : "");
}

Message Messages::request(std::uint32_t receiver, std::uint16_t id, const Bytes& bytes, std::uint16_t answerId,
                          unsigned limitMs) {
    send(receiver, id, bytes);
    return await(answerId, limitMs);
}

Message Messages::await(std::uint16_t id, unsigned limitMs) {
    const std::uint64_t deadline = deadlineAfter(limitMs);
    do {
        const auto found =
            std::find_if(m_pending.begin(), m_pending.end(), [id](const Message& message) { return message.id == id; });
        if (found != m_pending.end()) {
            Message message = std::move(*found);
            m_pending.erase(found);
            return message;
        }
    } while (receive(deadline));
    ADD_FAILURE() << "no message " << hex(id, 4) << " within " << limitMs << " ms" << pendingText();
    return {};
}

void Messages::expectNone(unsigned forMs) {
    const std::uint64_t deadline = deadlineAfter(forMs);
    while (m_pending.empty() && receive(deadline)) {
    }
    if (!m_pending.empty())
        ADD_FAILURE() << "no message was expected" << pendingText();
    m_pending.clear();
}

/// @return false when the deadline has come
bool Messages::receive(std::uint64_t deadlineNs) {
    for (;;) {
        const std::uint64_t now = host::realMonotonicNs();
        const std::uint64_t left = deadlineNs > now ? deadlineNs - now : 0;
        // a standing clock would keep the platform's own time limit from coming
        const bool standing = host::ManualClock::enabled();
        constexpr std::uint64_t longestUs = 1'000'000'000U;
        const auto limitUs = standing ? 0 : static_cast<std::int32_t>(std::min(left / 1000U, longestUs));
        if (void* msg = AaSysComMsgReceive(limitUs, 0)) {
            keep(take(msg));
            return true;
        }
        if (left == 0)
            return false;
        if (standing)
            std::this_thread::sleep_for(pollInterval);
    }
}

/// Gives a message to the endpoint that it was sent to.
void Messages::keep(Message message) {
    const auto& endpoints = endpointsOfThread();
    const auto owner = std::find_if(endpoints.begin(), endpoints.end(), [&message](const Messages* endpoint) {
        return AaSysComSicadGetCpid(endpoint->m_address) == AaSysComSicadGetCpid(message.receiver);
    });
    (owner != endpoints.end() ? **owner : *this).m_pending.push_back(std::move(message));
}

std::string Messages::pendingText() const {
    if (m_pending.empty())
        return "; none came";
    std::ostringstream out;
    out << "; came:";
    for (const Message& message : m_pending)
        out << "\n  " << message;
    return out.str();
}

} // namespace mox::testkit
