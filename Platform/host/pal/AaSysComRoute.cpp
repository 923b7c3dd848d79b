#include "../core/Eu.hpp"
#include "../core/Links.hpp"
#include "../core/Send.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "AaSysCom.hpp"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string>

namespace mox::host {

namespace {

constexpr std::uint32_t hopLimit = sizeof(SAaSysComEchoRoute::hops) / sizeof(std::uint32_t);

bool readRequest(const void* msg, SAaSysComEchoRoute& route) {
    if (host::AaSysComMsgGetId(msg) != AASYSCOM_ECHO_ROUTE_REQ_MSG ||
        host::AaSysComMsgGetPayloadSize(msg) != sizeof(route)) {
        return false;
    }
    std::memcpy(&route, host::AaSysComMsgGetPayload(msg), sizeof(route));
    return route.hopCount <= hopLimit;
}

std::string gatewayKey(std::uint16_t node, std::uint32_t id) {
    return hex4(node) + "/gateway/" + std::to_string(id);
}

bool isRoute(const SAaSysComGwRoute& route) {
    return route.validBits <= 16 && route.remoteSicad != 0 &&
           std::memchr(route.remoteName, '\0', sizeof(route.remoteName)) != nullptr &&
           std::memchr(route.localName, '\0', sizeof(route.localName)) != nullptr;
}

} // namespace

int32_t AaSysComControlHandleEchoRouteReq(void** msg) {
    SAaSysComEchoRoute route{};
    if (msg == nullptr || !readRequest(*msg, route)) {
        return 0;
    }
    Message* message = Message::of(*msg);
    const std::uint32_t own = message->header.receiver;
    if (route.hopCount < hopLimit) {
        route.hops[route.hopCount++] = own;
    }
    std::memcpy(message->payload(), &route, sizeof(route));
    message->header.id = AASYSCOM_ECHO_ROUTE_RESP_MSG;
    message->header.receiver = route.requester != 0 ? route.requester : message->header.sender;
    message->header.sender = own;
    *msg = nullptr;
    sendMessage(message);
    return 1;
}

void AaSysComControlPrintRouteReq(const void* msg) {
    SAaSysComEchoRoute route{};
    if (!readRequest(msg, route)) {
        logPlatform(2, "echo-route request from 0x%08X: malformed", host::AaSysComMsgGetSender(msg));
        return;
    }
    std::string hops;
    for (std::uint32_t i = 0; i < route.hopCount; ++i) {
        char hop[16];
        std::snprintf(hop, sizeof(hop), " 0x%08X", route.hops[i]);
        hops += hop;
    }
    logPlatform(2, "echo-route request from 0x%08X to 0x%08X, %u hops:%s", host::AaSysComMsgGetSender(msg),
                host::AaSysComMsgGetReceiver(msg), route.hopCount, hops.c_str());
}

EAaSysComRetVal AaSysComLinkRegister(std::uint32_t sicad, std::uint32_t receiver) {
    if (Run::current() == nullptr) {
        return EAaSysComRetVal_NoRun;
    }
    const NoCancellation wholeCall;
    watchLink(sicad, receiver);
    return EAaSysComRetVal_NoError;
}

EAaSysComRetVal AaSysComLinkDeregister(std::uint32_t sicad, std::uint32_t receiver) {
    return unwatchLink(sicad, receiver) ? EAaSysComRetVal_NoError : EAaSysComRetVal_NotFound;
}

std::uint32_t AaSysComGwAddRouteLpm(const SAaSysComGwRoute* route) {
    const Run* run = Run::current();
    if (run == nullptr || route == nullptr || !isRoute(*route)) {
        return 0;
    }
    Store::Write write(run->store());
    std::uint32_t id = 1;
    while (write.get(Table::devices, gatewayKey(run->node(), id))) {
        ++id;
    }
    write.put(Table::devices, gatewayKey(run->node(), id), {reinterpret_cast<const char*>(route), sizeof(*route)});
    write.commit();
    return id;
}

EAaSysComRetVal AaSysComGwRemoveRoute(std::uint32_t routeId) {
    const Run* run = Run::current();
    const bool erased = run != nullptr && run->store().erase(Table::devices, gatewayKey(run->node(), routeId));
    return erased ? EAaSysComRetVal_NoError : EAaSysComRetVal_NotFound;
}

} // namespace mox::host
