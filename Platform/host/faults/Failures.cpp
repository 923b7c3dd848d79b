#include "Result.hpp"

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

namespace mox::host::faults {
namespace {

struct Row {
    std::string_view begin; ///< of the functions' names
    std::int64_t failure;
    std::string_view enumeration; ///< of results given as int; empty: they are values
};

/// The first row that fits counts: single functions stand before the family that they belong to.
constexpr Row rows[] = {
    {"AaConfigTagIsSet", 0, ""},
    {"AaFileExists", 0, ""},
    {"AaFileDirExists", 0, ""},
    {"AaFileReadLine", -1, ""},
    {"AaFileRead", 0, ""},
    {"AaFileWrite", 0, ""},
    {"AaFileGetSize", -1, ""},
    {"AaSysComControlHandleEchoRouteReq", 0, ""},
    {"AaSysComEuUserRegister", 0, ""},
    {"AaSysComUserRegister", 0, ""},
    {"AaSysComGwAddRouteLpm", 0, ""},
    {"AaConfig", EAaConfigRetVal_OutOfResources, "EAaConfigRetVal"},
    {"AaFile", EAaFileRetVal_OutOfResources, "EAaFileRetVal"},
    {"AaShell", EAaShellRetVal_OutOfResources, "EAaShellRetVal"},
    {"AaStartup", EAaStartupRetVal_OutOfResources, "EAaStartupRetVal"},
    {"AaSysLog", EAaSysLogRetVal_OutOfResources, "EAaSysLogRetVal"},
    {"AaSysMb", EAaSysMbRetVal_OutOfResources, "EAaSysMbRetVal"},
    {"AaSysTimer", EAaSysTimerRetVal_OutOfResources, "EAaSysTimerRetVal"},
    {"AaSysTimeSleep", EAaSysTimeRetVal_InvalidValue, "EAaSysTimeRetVal"},
    {"AaUtcTime", EAaSysTimeRetVal_InvalidValue, "EAaSysTimeRetVal"},
    {"AaLocalTime", EAaSysTimeRetVal_InvalidValue, "EAaSysTimeRetVal"},
    {"AaTrbl", EAaTrblRetVal_OutOfResources, "EAaTrblRetVal"},
    {"ddal_", DDAL_IO_ERROR, "DDAL"},
};
/// Enumerations of results call their general failure 1.
constexpr std::int64_t failureOfEnumerations = 1;

/// @param isValue  only functions of their own row count
const Row* rowFor(std::string_view name, bool isValue) {
    for (const Row& row : rows)
        if (isValue ? name == row.begin : name.substr(0, row.begin.size()) == row.begin)
            return &row;
    return nullptr;
}

} // namespace

bool fits(std::uint64_t bits, bool negative, const ResultShape& shape) {
    if (shape.bytes >= sizeof(std::uint64_t) || shape.isEnum)
        return true;
    const auto top = std::int64_t{1} << (shape.bytes * 8U - (shape.isSigned ? 1U : 0U));
    const auto number = static_cast<std::int64_t>(bits);
    return negative ? shape.isSigned && number >= -top : bits < static_cast<std::uint64_t>(top);
}

std::optional<std::int64_t> generalFailure(std::string_view function, const ResultShape& shape) {
    if (shape.kind == ResultShape::Kind::none)
        return std::nullopt;
    if (shape.kind != ResultShape::Kind::number)
        return 0; // null or false
    if (shape.isEnum)
        return failureOfEnumerations;
    // Unsigned results are values (addresses, ids, counts): few have one that means failure.
    const Row* row = rowFor(function, !shape.isSigned);
    return row == nullptr ? std::nullopt : std::optional(row->failure);
}

std::string_view resultEnumeration(std::string_view function) {
    const Row* row = rowFor(function, false);
    return row == nullptr ? std::string_view() : row->enumeration;
}

} // namespace mox::host::faults
