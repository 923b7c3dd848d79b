#include "support/PlatformRecorder.hpp"

#include <ddal/ddal.h>
#include <ddal/ddal_alarms.h>
#include <ddal/ddal_bip.h>
#include <ddal/ddal_boot.h>
#include <ddal/ddal_cpri_axc.h>
#include <ddal/ddal_eth_switch.h>
#include <ddal/ddal_hotplug.h>
#include <ddal/ddal_power.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_rp3_str.h>
#include <ddal/ddal_sfp.h>
#include <ddal/ddal_syscom_route.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>
#include <pal/AaConfig.h>
#include <pal/AaFile.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <families/forEach.hpp>
#include <gtest/gtest.h>

#include <utility>

namespace mox::testing {
namespace {

PlatformRecorder* current = nullptr;

template <typename... Arguments>
std::uint64_t note(const char* function, Arguments... arguments) {
    if (current == nullptr) {
        ADD_FAILURE() << "a call that nobody expected: " << function;
        return 0;
    }
    return current->take({function, {bitsOf(arguments)...}});
}

} // namespace

PlatformRecorder::PlatformRecorder() {
    current = this;
}

PlatformRecorder::~PlatformRecorder() {
    current = nullptr;
}

std::vector<PlatformCall> PlatformRecorder::calls() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_calls;
}

std::uint64_t PlatformRecorder::take(PlatformCall call) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.push_back(std::move(call));
    const auto answer = m_answers.find(m_calls.back().function);
    return answer == m_answers.end() ? 0 : answer->second;
}

} // namespace mox::testing

using mox::testing::fromBits;
using mox::testing::note;

#define MOX_FUNCTION(result, name, types)                                                                              \
    result name(MOX_PARAMETERS(types)) {                                                                               \
        return fromBits<result>(note(#name, MOX_ARGUMENTS(types)));                                                    \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name() {                                                                                                    \
        return fromBits<result>(note(#name));                                                                          \
    }
#define MOX_PROCEDURE(name, types)                                                                                     \
    void name(MOX_PARAMETERS(types)) {                                                                                 \
        note(#name, MOX_ARGUMENTS(types));                                                                             \
    }
#define MOX_PROCEDURE0(name)                                                                                           \
    void name() {                                                                                                      \
        note(#name);                                                                                                   \
    }

#include <families/AaConfig.def>
#include <families/AaFile.def>
#include <families/AaMem.def>
#include <families/AaPro.def>
#include <families/AaSem.def>
#include <families/AaShell.def>
#include <families/AaStartup.def>
#include <families/AaSysCom.def>
#include <families/AaSysMb.def>
#include <families/AaSysTime.def>
#include <families/AaSysTimer.def>
#include <families/AaTrbl.def>
#include <families/ddal_alarms.def>
#include <families/ddal_bip.def>
#include <families/ddal_boot.def>
#include <families/ddal_cpri_axc.def>
#include <families/ddal_eth_switch.def>
#include <families/ddal_hotplug.def>
#include <families/ddal_power.def>
#include <families/ddal_rio.def>
#include <families/ddal_rp3_str.def>
#include <families/ddal_sfp.def>
#include <families/ddal_strerror.def>
#include <families/ddal_syscom_route.def>
#include <families/ddal_sysinfo.def>
#include <families/ddal_unit.def>
