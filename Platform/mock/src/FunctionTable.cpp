#include "mock/FunctionTable.hpp"

#include "host/faults/Functions.hpp"
#include "mock/src/DefaultFailures.hpp"
#include "mock/src/FunctionRecord.hpp"

#include <ddal/ddal.h>
#include <ddal/ddal_alarms.h>
#include <ddal/ddal_bip.h>
#include <ddal/ddal_boot.h>
#include <ddal/ddal_cpri_axc.h>
#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_eth_switch.h>
#include <ddal/ddal_ffs.h>
#include <ddal/ddal_fpga.h>
#include <ddal/ddal_hotplug.h>
#include <ddal/ddal_power.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_rp3_str.h>
#include <ddal/ddal_sfp.h>
#include <ddal/ddal_syscom_route.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>
#include <ddal/ddal_watchdog.h>
#include <pal/AaConfig.h>
#include <pal/AaCpuBit.h>
#include <pal/AaError.h>
#include <pal/AaFile.h>
#include <pal/AaGpuXml.hpp>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <algorithm>
#include <stdexcept>

namespace mox::mock {
namespace {

template <typename Result>
ResultType resultType() {
    ResultType type;
    if constexpr (!std::is_void_v<Result>) {
        type.type = typeid(Result);
        type.isEnum = std::is_enum_v<Result>;
        type.isSigned = std::is_signed_v<Result>;
        type.bytes = sizeof(Result);
        type.kind = std::is_pointer_v<Result>      ? FaultValue::Kind::pointer
                    : std::is_same_v<Result, bool> ? FaultValue::Kind::boolean
                                                   : FaultValue::Kind::number;
    }
    return type;
}

template <typename Result>
void add(std::map<std::string, FunctionRecord>& table, const char* name) {
    FunctionRecord& record = table[name];
    record.name = name;
    record.result = resultType<Result>();
    record.failure = defaultFailure(record);
}

std::map<std::string, FunctionRecord> makeTable() {
    std::map<std::string, FunctionRecord> table;
#define MOX_FUNCTION(result, name, types) add<result>(table, #name);
#define MOX_FUNCTION0(result, name) add<result>(table, #name);
#define MOX_PROCEDURE(name, types) add<void>(table, #name);
#define MOX_PROCEDURE0(name) add<void>(table, #name);
#include <families/ddal.def>
#include <families/pal.def>
    add<int>(table, "AaSysLogPrint");
    add<int>(table, "AaSysLogPrintE");
    add<AaGpuXmlNode*>(table, "AaGpuXmlParse");
    return table;
}

std::string nearestName(const std::string& name) {
    const auto& table = functionRecords();
    const auto distance = host::faults::editDistance;
    return std::min_element(
               table.begin(), table.end(),
               [&](const auto& a, const auto& b) { return distance(name, a.first) < distance(name, b.first); })
        ->first;
}

} // namespace

std::mutex& bookMutex() {
    static std::mutex mutex;
    return mutex;
}

std::map<std::string, FunctionRecord>& functionRecords() {
    // never destroyed: execution units may still call while the process ends
    static auto* table = new std::map<std::string, FunctionRecord>(makeTable());
    return *table;
}

FunctionRecord& functionRecord(const std::string& name) {
    auto& table = functionRecords();
    const auto found = table.find(name);
    if (found == table.end())
        throw std::invalid_argument("the platform has no function \"" + name + "\"; did you mean \"" +
                                    nearestName(name) + "\"?");
    return found->second;
}

std::uint64_t callCount(const std::string& function) {
    const FunctionRecord& record = functionRecord(function);
    const std::lock_guard<std::mutex> guard(bookMutex());
    return record.calls;
}

std::vector<std::uint64_t> lastCall(const std::string& function) {
    const FunctionRecord& record = functionRecord(function);
    const std::lock_guard<std::mutex> guard(bookMutex());
    return record.arguments;
}

std::vector<std::shared_ptr<FaultRule>>& faultsOfAny() {
    static auto* faults = new std::vector<std::shared_ptr<FaultRule>>;
    return *faults;
}

std::vector<std::string> functionNames() {
    std::vector<std::string> names;
    for (const auto& [name, record] : functionRecords())
        names.push_back(name);
    return names;
}

} // namespace mox::mock
