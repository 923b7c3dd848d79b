#include <mox/Service.hpp>
#include <pal/AaSysLog.h>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr unsigned int highestCommonState = 5;
constexpr unsigned int lowestOwnState = 7;
} // namespace constant
} // namespace

void Service::SetServiceStateRad(unsigned int state) {
    const bool isCommon = state <= constant::highestCommonState;
    // 6 lies between the two groups and is never written.
    if ((isCommon && m_useCommonServiceState.load(std::memory_order_relaxed)) || state >= constant::lowestOwnState) {
        SetFlagValue(m_stateRadId, state);
    }
}

unsigned int Service::GetServiceStateRad() {
    return AaConfigRadGetValue(m_stateRadId);
}

void Service::SetUseCommonServiceState(unsigned int use) {
    m_useCommonServiceState.store(use != 0, std::memory_order_relaxed);
}

void Service::SetFlagValue(unsigned int flag, unsigned int value) const {
    const int result = AaConfigRadSetValue(flag, value);
    if (result != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: failed to set flag %u to %u (reason %u)",
                       "SetFlagValue", flag, value, static_cast<unsigned int>(result));
    }
}

} // namespace ps::hwapi::common
