#include "Message.hpp"

#include "Failure.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"
#include "Session.hpp"

#include <pal/AaSysCom.h>

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <utility>

namespace mox::tools {

namespace {

constexpr const char* expectedAddress =
    "expected nid:cpid such as 1011:0600, a number such as 0x10110600, or a service";

/// One to four hexadecimal digits, with or without 0x.
std::uint16_t readHalf(const std::string& half, const std::string& whole) {
    char* end = nullptr;
    const unsigned long number = std::strtoul(half.c_str(), &end, 16);
    if (half.empty() || *end != '\0' || half.find_first_of("+- ") != std::string::npos || number > 0xFFFF) {
        throw Failure(ExitStatus::usage, std::string("address: ") + expectedAddress + ", got '" + whole + "'");
    }
    return static_cast<std::uint16_t>(number);
}

/// The CPID under which a service of the node takes messages.
std::uint16_t cpidOfService(const host::Run& run, const std::string& name) {
    const auto nodes = nodesOf(run, run.node());
    std::string known;
    for (const host::NodeDescription& node : nodes) {
        for (const host::ServiceDescription& service : node.services) {
            known += (known.empty() ? "" : ", ") + service.name;
            if (service.name != name) {
                continue;
            }
            if (service.cpid) {
                return *service.cpid;
            }
            const auto process = StartedServices(run).find(node.id, name);
            const auto cpids =
                process ? cpidsOf(endpointsOf(run, node.id), process->pid) : std::vector<std::uint16_t>();
            if (cpids.empty()) {
                throw Failure(ExitStatus::notFound,
                              "service '" + name + "' of node " + host::hex4(node.id) + " has registered no CPID");
            }
            return cpids.front();
        }
    }
    throw Failure(ExitStatus::notFound, "no service '" + name + "' on node " + host::hex4(run.node()) +
                                            (known.empty() ? "" : " (it has " + known + ")") + "; " + expectedAddress);
}

} // namespace

OwnedMessage::~OwnedMessage() {
    if (m_handle != nullptr) {
        AaSysComMsgDestroy(&m_handle);
    }
}

OwnedMessage::OwnedMessage(OwnedMessage&& other) noexcept : m_handle(other.release()) {}

void* OwnedMessage::release() {
    return std::exchange(m_handle, nullptr);
}

std::uint32_t readAddress(Session& session, const std::string& text) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos) {
        return AaSysComSicadGet(readHalf(text.substr(colon + 1), text), readHalf(text.substr(0, colon), text));
    }
    const host::Run& run = session.run();
    if (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        const auto sicad = static_cast<std::uint32_t>(readNumber(text, "address", UINT32_MAX));
        const bool hasNode = AaSysComSicadGetNid(sicad) != 0;
        return hasNode ? sicad : AaSysComSicadGet(AaSysComSicadGetCpid(sicad), run.node());
    }
    return AaSysComSicadGet(cpidOfService(run, text), run.node());
}

Json jsonOf(const OwnedMessage& message) {
    const void* handle = message.handle();
    const std::uint32_t size = AaSysComMsgGetPayloadSize(handle);
    return {{"id", showHex(AaSysComMsgGetId(handle), 4)},
            {"sender", showHex(AaSysComMsgGetSender(handle), 8)},
            {"receiver", showHex(AaSysComMsgGetReceiver(handle), 8)},
            {"size", size},
            {"payload", hexOf(AaSysComMsgGetPayload(handle), size)}};
}

std::string textOf(const OwnedMessage& message) {
    const void* handle = message.handle();
    const std::uint32_t size = AaSysComMsgGetPayloadSize(handle);
    std::string text = showHex(AaSysComMsgGetId(handle), 4) + " from " + showAddress(AaSysComMsgGetSender(handle)) +
                       " to " + showAddress(AaSysComMsgGetReceiver(handle)) + ", " + std::to_string(size) +
                       (size == 1 ? " byte" : " bytes");
    const std::string dump = hexDump(AaSysComMsgGetPayload(handle), size);
    return dump.empty() ? text : text + "\n" + dump.substr(0, dump.size() - 1);
}

void checkSent(int result, std::uint32_t receiver) {
    switch (result) {
    case EAaSysComRetVal_NoError:
        return;
    case EAaSysComRetVal_NoReceiver:
        throw Failure(ExitStatus::notFound, "nobody has registered " + showAddress(receiver));
    case EAaSysComRetVal_ReceiverFull:
        throw Failure(ExitStatus::failed, showAddress(receiver) + " is full and takes no messages");
    default:
        throw Failure(ExitStatus::failed,
                      "sending to " + showAddress(receiver) + " failed (" + std::to_string(result) + ")");
    }
}

} // namespace mox::tools
