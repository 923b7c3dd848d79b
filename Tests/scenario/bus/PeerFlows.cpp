#include "PeerFlows.hpp"

#include <pal/AaPro.h>
#include <pal/AaSysCom.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <map>
#include <sstream>
#include <thread>

namespace mox::testing {

namespace {

/// The byte at a place of a payload, so that the receiver sees what is missing.
std::uint8_t patternAt(std::uint32_t size, std::uint32_t place) {
    return static_cast<std::uint8_t>(size * 7 + place * 13 + 1);
}

bool patternHolds(const void* message) {
    const std::uint32_t size = AaSysComMsgGetPayloadSize(message);
    const auto* bytes = static_cast<const std::uint8_t*>(AaSysComMsgGetPayload(message));
    for (std::uint32_t i = 4; i < size; ++i)
        if (bytes[i] != patternAt(size, i))
            return false;
    return true;
}

/// What came, checked against what its senders must have sent.
class Sequences {
public:
    /// @return what is wrong; empty: nothing
    std::string take(const void* message) {
        std::uint32_t place = 0;
        if (AaSysComMsgGetPayloadSize(message) < sizeof(place))
            return "message without number";
        std::memcpy(&place, AaSysComMsgGetPayload(message), 4);
        std::uint32_t& next = m_next[AaSysComMsgGetSender(message)];
        std::ostringstream wrong;
        if (place != next)
            wrong << "sender " << AaSysComMsgGetSender(message) << ": expected " << next << ", got " << place;
        else if (!patternHolds(message))
            wrong << "payload damaged at " << place;
        ++next;
        return wrong.str();
    }

private:
    std::map<std::uint32_t, std::uint32_t> m_next;
};

/// An EU that answers every message for ever.
struct Server {
    std::uint16_t cpid;
    std::atomic<bool>* ready;
};

} // namespace

void* numbered(std::uint16_t id, std::uint32_t size, std::uint32_t receiver, std::uint32_t place) {
    void* message = AaSysComMsgCreate(id, size, receiver);
    auto* bytes = static_cast<std::uint8_t*>(AaSysComMsgGetPayload(message));
    for (std::uint32_t i = 4; i < size; ++i)
        bytes[i] = patternAt(size, i);
    if (size >= 4)
        std::memcpy(bytes, &place, 4);
    return message;
}

std::string sendMany(std::uint32_t to, std::uint16_t id, std::uint32_t size, std::uint32_t count, std::uint32_t first,
                     bool untilFailure) {
    const Stopwatch watch;
    std::uint32_t sent = 0;
    int result = 0;
    for (std::uint32_t i = 0; i < count && !(untilFailure && result != 0); ++i) {
        result = AaSysComMsgSend(numbered(id, size, to, first + sent));
        sent += result == 0 ? 1 : 0;
    }
    std::ostringstream text;
    text << sent << ' ' << result << ' ' << watch.ms();
    return text.str();
}

std::string describe(const void* message) {
    if (message == nullptr)
        return "none";
    std::ostringstream text;
    text << "id " << AaSysComMsgGetId(message) << " from " << AaSysComMsgGetSender(message) << " to "
         << AaSysComMsgGetReceiver(message) << " size " << AaSysComMsgGetPayloadSize(message) << " mef "
         << AaSysComMsgGetMef(message) << (patternHolds(message) ? " whole" : " damaged");
    if (const void* trailer = AaSysComMsgGetTrailer(message))
        text << " crc " << static_cast<const SAaSysComMsgTrailer*>(trailer)->crc;
    if (AaSysComMsgGetId(message) == AASYSCOM_LINK_IND_MSG) {
        const auto* link = static_cast<const SAaSysComLinkInd*>(AaSysComMsgGetPayload(message));
        return "link " + std::to_string(link->sicad) + (link->up != 0 ? " up" : " down");
    }
    return text.str();
}

std::string collect(std::uint32_t count, std::int32_t timeoutUs, std::uint32_t napAfter) {
    Sequences sequences;
    for (std::uint32_t i = 0; i < count; ++i) {
        void* message = AaSysComMsgReceive(timeoutUs, 0);
        if (message == nullptr)
            return "time-out after " + std::to_string(i);
        const std::string wrong = sequences.take(message);
        AaSysComMsgDestroy(&message);
        if (!wrong.empty())
            return wrong;
        if (napAfter != 0 && i % napAfter == napAfter - 1)
            std::this_thread::sleep_for(std::chrono::milliseconds(7));
    }
    return "all";
}

std::string startServer(std::uint16_t cpid) {
    static std::atomic<bool> ready{false};
    ready = false;
    const Server server{cpid, &ready};
    const TAaProEuEntry entry = [](void* argument) -> void* {
        const auto& mine = *static_cast<Server*>(argument);
        const bool registered = AaSysComEuUserRegister(mine.cpid) != 0;
        *mine.ready = true;
        while (registered) {
            void* request = AaSysComMsgReceive(-1, 0);
            AaSysComMsgSend(AaSysComMsgCreateReply(request, 2, 0));
            AaSysComMsgDestroy(&request);
        }
        return nullptr;
    };
    const auto result = AaSysComEuCreateAndStart(nullptr, "server", entry, 65536, 1, &server, sizeof(server));
    while (!ready)
        std::this_thread::yield();
    return std::to_string(result);
}

void sendInBursts(const Bursts& what) {
    for (std::uint32_t i = 0; i < what.count; ++i) {
        AaSysComMsgSend(numbered(1, 8, what.to, i));
        if (i % what.burst == what.burst - 1)
            std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

} // namespace mox::testing
