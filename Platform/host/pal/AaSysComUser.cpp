#include "../board/CreateRun.hpp"
#include "../core/Eu.hpp"
#include "../core/Registry.hpp"
#include "../core/Send.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/Run.hpp"
#include "AaPro.hpp"
#include "AaSysCom.hpp"

namespace mox::host {

namespace {

constexpr std::uint16_t lastStatic = AASYSCOM_FIRST_DYNAMIC_CPID - 1;

std::uint16_t registerForCaller(std::uint16_t cpid) {
    if (cpid > lastStatic) {
        return 0;
    }
    const NoCancellation wholeCall;
    Eu& eu = Eu::current();
    const std::uint16_t registered = Registry::instance().add(cpid, eu.makeInbox());
    if (registered != 0) {
        eu.addRegistration(registered);
    }
    return registered;
}

} // namespace

std::uint32_t AaSysComSicadGet(std::uint16_t cpid, std::uint16_t nid) {
    return static_cast<std::uint32_t>(nid) << 16U | cpid;
}

std::uint16_t AaSysComSicadGetCpid(std::uint32_t sicad) {
    return static_cast<std::uint16_t>(sicad);
}

std::uint16_t AaSysComSicadGetNid(std::uint32_t sicad) {
    return static_cast<std::uint16_t>(sicad >> 16U);
}

std::uint16_t AaSysComGetOwnNid() {
    const Run* run = Run::current();
    return run != nullptr ? run->node() : std::uint16_t{0};
}

std::uint16_t AaSysComNmapGetBoard(std::uint32_t sicad) {
    return static_cast<std::uint16_t>(sicad >> 24U);
}

std::uint16_t AaSysComNmapGetCpu(std::uint32_t sicad) {
    return static_cast<std::uint16_t>(sicad >> 20U & 0xFU);
}

std::uint32_t AaSysComNmapGetSicad(std::uint16_t board, std::uint16_t cpu, std::uint16_t cpid) {
    const Run* run = Run::current();
    if (run == nullptr) {
        return 0;
    }
    for (const NodeDescription& node : readNodes(run->store())) {
        const std::uint32_t sicad = host::AaSysComSicadGet(cpid, node.id);
        if (host::AaSysComNmapGetBoard(sicad) == board && host::AaSysComNmapGetCpu(sicad) == cpu) {
            return sicad;
        }
    }
    return 0;
}

EAaProEuRetVal AaSysComEuCreateAndStart(std::uint32_t* euId, const char* name, TAaProEuEntry entry,
                                        std::uint32_t stackSize, std::uint32_t priority, const void* argument,
                                        std::uint32_t argumentSize) {
    return host::AaProEuCreateAndStartJoinable(euId, name, entry, stackSize, priority, argument, argumentSize, 0);
}

EAaProEuRetVal AaSysComEuCreateAndStartWithPolicy(std::uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                  std::uint32_t stackSize, EAaProEuSchedulingPolicy policy,
                                                  std::uint32_t priority, std::uint32_t options, const void* argument,
                                                  std::uint32_t argumentSize, std::uint32_t wait) {
    static_cast<void>(options);
    if (policy < EAaProEuSchedulingPolicy_Default || policy > EAaProEuSchedulingPolicy_Other) {
        return EAaProEuRetVal_InvalidValue;
    }
    EAaProEuSchedulingPolicy chosen = policy;
    if (policy == EAaProEuSchedulingPolicy_Default) {
        host::AaProEeGetDefaultSchedulingPolicy(&chosen);
    }
    return createEu(euId, {name, entry, stackSize, chosen, priority, argument, argumentSize, wait != 0});
}

std::uint16_t AaSysComEuUserRegister(std::uint16_t cpid) {
    return registerForCaller(cpid);
}

std::uint16_t AaSysComUserRegister(std::uint16_t cpid) {
    return registerForCaller(cpid);
}

EAaSysComRetVal AaSysComUserDeregister(std::uint16_t cpid) {
    const NoCancellation wholeCall;
    return Registry::instance().remove(cpid) ? EAaSysComRetVal_NoError : EAaSysComRetVal_NotFound;
}

EAaSysComRetVal AaSysComHopRegister(std::uint16_t nid, std::uint32_t via) {
    if (nid == 0 || nid == localNode || nid == host::AaSysComGetOwnNid()) {
        return EAaSysComRetVal_InvalidValue;
    }
    setHop(nid, via);
    return EAaSysComRetVal_NoError;
}

} // namespace mox::host
