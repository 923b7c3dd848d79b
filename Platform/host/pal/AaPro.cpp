#include "AaPro.hpp"

#include "../core/Eu.hpp"
#include "AaConfig.hpp"

namespace mox::host {

namespace {

constexpr const char* policyTag = "pal.service.aapro.defaultpolicy";

} // namespace

EAaProEuRetVal AaProEuCreateAndStartJoinable(std::uint32_t* euId, const char* name, TAaProEuEntry entry,
                                             std::uint32_t stackSize, std::uint32_t priority, const void* argument,
                                             std::uint32_t argumentSize, std::uint32_t wait) {
    EAaProEuSchedulingPolicy policy = EAaProEuSchedulingPolicy_Other;
    host::AaProEeGetDefaultSchedulingPolicy(&policy);
    return createEu(euId, {name, entry, stackSize, policy, priority, argument, argumentSize, wait != 0});
}

std::uint32_t AaProEuCurrent() {
    return Eu::current().id();
}

EAaProEuRetVal AaProEeGetDefaultSchedulingPolicy(EAaProEuSchedulingPolicy* policy) {
    if (policy == nullptr) {
        return EAaProEuRetVal_InvalidValue;
    }
    unsigned int configured = 0;
    const bool isSet = host::AaConfigTagGetU32(policyTag, &configured) == 0;
    const bool isPolicy =
        configured >= EAaProEuSchedulingPolicy_RoundRobin && configured <= EAaProEuSchedulingPolicy_Other;
    *policy = isSet && isPolicy ? static_cast<EAaProEuSchedulingPolicy>(configured) : EAaProEuSchedulingPolicy_Other;
    return EAaProEuRetVal_NoError;
}

} // namespace mox::host
