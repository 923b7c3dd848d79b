#include "Result.hpp"

#include <ddal/ddal.h>
#include <pal/AaConfig.h>
#include <pal/AaFile.h>
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

namespace mox::host::faults {
namespace {

#define MOX_NAMED(enumerator)                                                                                          \
    ResultName {                                                                                                       \
#enumerator, enumerator                                                                                        \
    }

/// Of each enumeration in the order of its header, so that of two names for a value the first is shown.
constexpr ResultName names[] = {
    MOX_NAMED(EAaConfigRetVal_NoError),
    MOX_NAMED(EAaConfigRetVal_NotFound),
    MOX_NAMED(EAaConfigRetVal_InvalidValue),
    MOX_NAMED(EAaConfigRetVal_WrongSize),
    MOX_NAMED(EAaConfigRetVal_OutOfResources),
    MOX_NAMED(EAaConfigRetVal_NotStarted),
    MOX_NAMED(EAaConfigRetVal_FileError),
    MOX_NAMED(EAaFileRetVal_NoError),
    MOX_NAMED(EAaFileRetVal_NotFound),
    MOX_NAMED(EAaFileRetVal_InvalidValue),
    MOX_NAMED(EAaFileRetVal_AlreadyExists),
    MOX_NAMED(EAaFileRetVal_PermissionDenied),
    MOX_NAMED(EAaFileRetVal_OutOfResources),
    MOX_NAMED(EAaFileRetVal_Error),
    MOX_NAMED(EAaProEuRetVal_NoError),
    MOX_NAMED(EAaProEuRetVal_Error),
    MOX_NAMED(EAaProEuRetVal_InvalidValue),
    MOX_NAMED(EAaProEuRetVal_OutOfResources),
    MOX_NAMED(EAaProEuRetVal_PermissionDenied),
    MOX_NAMED(EAaProEuRetVal_ChildKilled),
    MOX_NAMED(EAaProEuRetVal_ChildCrashed),
    MOX_NAMED(EAaProEuRetVal_NotSupported),
    MOX_NAMED(EAaProEuRetVal_NonRootUser),
    MOX_NAMED(EAaProEuRetVal_NumOfRetVals),
    MOX_NAMED(EAaSemRetVal_NoError),
    MOX_NAMED(EAaSemRetVal_Error),
    MOX_NAMED(EAaSemRetVal_InvalidValue),
    MOX_NAMED(EAaSemRetVal_OutOfResources),
    MOX_NAMED(EAaSemRetVal_NotFound),
    MOX_NAMED(EAaSemRetVal_NotOwner),
    MOX_NAMED(EAaShellRetVal_NoError),
    MOX_NAMED(EAaShellRetVal_AlreadyExists),
    MOX_NAMED(EAaShellRetVal_NotFound),
    MOX_NAMED(EAaShellRetVal_InvalidValue),
    MOX_NAMED(EAaShellRetVal_OutOfResources),
    MOX_NAMED(EAaShellRetVal_NotStarted),
    MOX_NAMED(EAaStartupRetVal_NoError),
    MOX_NAMED(EAaStartupRetVal_NotStarted),
    MOX_NAMED(EAaStartupRetVal_AlreadyStarted),
    MOX_NAMED(EAaStartupRetVal_InvalidValue),
    MOX_NAMED(EAaStartupRetVal_OutOfResources),
    MOX_NAMED(EAaStartupRetVal_NoConfig),
    MOX_NAMED(EAaSysComRetVal_NoError),
    MOX_NAMED(EAaSysComRetVal_Error),
    MOX_NAMED(EAaSysComRetVal_InvalidValue),
    MOX_NAMED(EAaSysComRetVal_OutOfResources),
    MOX_NAMED(EAaSysComRetVal_NoReceiver),
    MOX_NAMED(EAaSysComRetVal_ReceiverFull),
    MOX_NAMED(EAaSysComRetVal_NotFound),
    MOX_NAMED(EAaSysComRetVal_NoRun),
    MOX_NAMED(EAaSysLogRetVal_NoError),
    MOX_NAMED(EAaSysLogRetVal_AlreadyRegistered),
    MOX_NAMED(EAaSysLogRetVal_InvalidValue),
    MOX_NAMED(EAaSysLogRetVal_NotFound),
    MOX_NAMED(EAaSysLogRetVal_OutOfResources),
    MOX_NAMED(EAaSysLogRetVal_FileError),
    MOX_NAMED(EAaSysMbRetVal_NoError),
    MOX_NAMED(EAaSysMbRetVal_NotFound),
    MOX_NAMED(EAaSysMbRetVal_InvalidValue),
    MOX_NAMED(EAaSysMbRetVal_OutOfResources),
    MOX_NAMED(EAaSysMbRetVal_NotStarted),
    MOX_NAMED(EAaSysTimeRetVal_NoError),
    MOX_NAMED(EAaSysTimeRetVal_InvalidValue),
    MOX_NAMED(EAaSysTimeRetVal_PermissionDenied),
    MOX_NAMED(EAaSysTimeRetVal_Error),
    MOX_NAMED(EAaSysTimerRetVal_NoError),
    MOX_NAMED(EAaSysTimerRetVal_NotFound),
    MOX_NAMED(EAaSysTimerRetVal_InvalidValue),
    MOX_NAMED(EAaSysTimerRetVal_OutOfResources),
    MOX_NAMED(EAaSysTimerRetVal_NotStarted),
    MOX_NAMED(EAaTrblRetVal_NoError),
    MOX_NAMED(EAaTrblRetVal_AlreadyExists),
    MOX_NAMED(EAaTrblRetVal_NotFound),
    MOX_NAMED(EAaTrblRetVal_InvalidValue),
    MOX_NAMED(EAaTrblRetVal_OutOfResources),
    MOX_NAMED(EAaTrblRetVal_NotStarted),
    MOX_NAMED(DDAL_OK),
    MOX_NAMED(DDAL_NOT_FOUND),
    MOX_NAMED(DDAL_IO_ERROR),
    MOX_NAMED(DDAL_BAD_HANDLE),
    MOX_NAMED(DDAL_NO_RESOURCE),
    MOX_NAMED(DDAL_BUSY),
    MOX_NAMED(DDAL_ALREADY_EXISTS),
    MOX_NAMED(DDAL_NO_DEVICE),
    MOX_NAMED(DDAL_INVALID_PARAMETER),
    MOX_NAMED(DDAL_NO_SPACE),
    MOX_NAMED(DDAL_NOT_SUPPORTED),
    MOX_NAMED(DDAL_TIMEOUT),
};

#undef MOX_NAMED

bool isOf(std::string_view enumeration, const ResultName& row) {
    return !enumeration.empty() && row.name.size() > enumeration.size() &&
           row.name.substr(0, enumeration.size()) == enumeration && row.name[enumeration.size()] == '_';
}

} // namespace

const ResultName* findResultName(std::string_view enumeration, std::string_view name) {
    for (const ResultName& row : names)
        if (row.name == name && isOf(enumeration, row))
            return &row;
    return nullptr;
}

const ResultName* findResultName(std::string_view enumeration, std::int64_t value) {
    for (const ResultName& row : names)
        if (row.value == value && isOf(enumeration, row))
            return &row;
    return nullptr;
}

} // namespace mox::host::faults
