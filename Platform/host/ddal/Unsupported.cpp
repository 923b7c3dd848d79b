#include "host/ddal/Unsupported.hpp"

#include "host/ddal/Ddal.hpp"
#include "host/run/PlatformLog.hpp"

#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace mox::host {

namespace {

struct Calls {
    std::mutex mutex;
    std::map<std::string, std::uint64_t, std::less<>> counts;
};

Calls& calls() {
    // Never destroyed: services may call the devices while the process ends.
    static auto* const instance = new Calls;
    return *instance;
}

bool isFirst(const char* function) {
    const std::lock_guard lock(calls().mutex);
    return ++calls().counts[function] == 1;
}

} // namespace

void reportUnsupported(const char* function) {
    if (isFirst(function))
        logPlatform(3, "%s: not available on this workstation", function);
}

std::uint64_t unsupportedCalls(const char* function) {
    const std::lock_guard lock(calls().mutex);
    const auto found = calls().counts.find(function);
    return found == calls().counts.end() ? 0 : found->second;
}

#define MOX_FUNCTION(result, name, types)                                                                              \
    result name(MOX_TYPES(types)) {                                                                                    \
        reportUnsupported(#name);                                                                                      \
        return DDAL_NOT_SUPPORTED;                                                                                     \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name() {                                                                                                    \
        reportUnsupported(#name);                                                                                      \
        return DDAL_NOT_SUPPORTED;                                                                                     \
    }
// A family, or the part of one, that is defined elsewhere loses its line here.
#include <families/ddal_alarms.def>
#include <families/ddal_bip.def>
#include <families/ddal_cpri_axc.def>
#include <families/ddal_eth_switch.def>
#include <families/ddal_ffs.def>
#include <families/ddal_hotplug.def>
#include <families/ddal_power.def>
#include <families/ddal_rio_fabric.def>
#include <families/ddal_rp3_str.def>
#include <families/ddal_sfp.def>
#include <families/ddal_syscom_route.def>
#undef MOX_FUNCTION0
#undef MOX_FUNCTION

} // namespace mox::host
