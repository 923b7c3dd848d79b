#include "mock/src/DefaultFailures.hpp"

#include <ddal/ddal.h>
#include <pal/AaConfig.h>
#include <pal/AaFile.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <string>

namespace mox::mock {
namespace {

struct Row {
    const char* begin; ///< of the functions' names
    std::int64_t failure;
};

/// The first row that fits counts: single functions stand before the family that they belong to.
constexpr Row rows[] = {
    {"AaConfigTagIsSet", 0},
    {"AaFileExists", 0},
    {"AaFileDirExists", 0},
    {"AaFileReadLine", -1},
    {"AaFileRead", 0},
    {"AaFileWrite", 0},
    {"AaFileGetSize", -1},
    {"AaSysComControlHandleEchoRouteReq", 0},
    {"AaSysComEuUserRegister", 0},
    {"AaSysComUserRegister", 0},
    {"AaSysComGwAddRouteLpm", 0},
    {"AaConfig", EAaConfigRetVal_OutOfResources},
    {"AaFile", EAaFileRetVal_OutOfResources},
    {"AaShell", EAaShellRetVal_OutOfResources},
    {"AaStartup", EAaStartupRetVal_OutOfResources},
    {"AaSysLog", EAaSysLogRetVal_OutOfResources},
    {"AaSysMb", EAaSysMbRetVal_OutOfResources},
    {"AaSysTimer", EAaSysTimerRetVal_OutOfResources},
    {"AaSysTimeSleep", EAaSysTimeRetVal_InvalidValue},
    {"AaUtcTime", EAaSysTimeRetVal_InvalidValue},
    {"AaLocalTime", EAaSysTimeRetVal_InvalidValue},
    {"AaTrbl", EAaTrblRetVal_OutOfResources},
    {"ddal_", DDAL_IO_ERROR},
};
/// Enumerations of results call their general failure 1.
constexpr std::uint64_t failureOfEnumerations = 1;

/// Unsigned results are values (addresses, ids, counts): only functions of their own row have one that means failure.
std::optional<std::int64_t> numberFor(const std::string& name, bool isValue) {
    for (const Row& row : rows)
        if (isValue ? name == row.begin : name.rfind(row.begin, 0) == 0)
            return row.failure;
    return std::nullopt;
}

} // namespace

std::optional<FaultValue> defaultFailure(const FunctionRecord& record) {
    FaultValue value;
    value.kind = record.result.kind;
    value.type = record.result.type;
    if (value.kind == FaultValue::Kind::none)
        return std::nullopt;
    if (value.kind != FaultValue::Kind::number)
        return value; // null or false
    if (record.result.isEnum) {
        value.bits = failureOfEnumerations;
        return value;
    }
    const auto number = numberFor(record.name, !record.result.isSigned);
    if (!number)
        return std::nullopt;
    value.bits = static_cast<std::uint64_t>(*number);
    value.negative = *number < 0;
    return value;
}

} // namespace mox::mock
