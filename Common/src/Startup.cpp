#include <mox/RadParameters.hpp>
#include <mox/Startup.h>
#include <pal/AaConfig.h>
#include <pal/AaStartup.h>
#include <pal/AaSysLog.h>

#include <cstdio>

namespace {
namespace constant {
constexpr unsigned int hwaDomain = 2;
constexpr unsigned int hwaStateDomain = 34;
/// Domain in the upper half; the room in the lower half lies above the highest index in use, 176 and 51.
constexpr unsigned int hwaMaxTagCount = 0x20106;
constexpr unsigned int hwaStateMaxTagCount = 0x220035;

constexpr unsigned int logDomain = 21;
constexpr const char* logDomainName = "HWAPI";
constexpr const char* startupLogSizeTag = "pal.service.aasyslog.hwapi.startuplog.size";
constexpr const char* runtimeLogSizeTag = "pal.service.aasyslog.hwapi.runtimelog.size";
constexpr std::uint32_t smallestRuntimeLog = 51200;
constexpr int alreadyRegistered = 1;
} // namespace constant

const char* programName(char** argv) {
    return argv[0] != nullptr ? argv[0] : "";
}

/// For the time before there is a log.
/// @return whether there is a name to report a failure with; says so if there is none
bool hasProgramName(char** argv) {
    if (argv == nullptr) {
        std::puts("argv is null");
    }
    return argv != nullptr;
}

bool startEnvironment(char** argv, const char* eeName) {
    const int configResult = AaConfigEarlyStartup();
    if (configResult != 0) {
        if (hasProgramName(argv)) {
            std::printf("%s: AaConfigEarlyStartup() failed %d\n", programName(argv), configResult);
        }
        return false;
    }
    AaConfigTagSetString("pal.service.aapro.eename", eeName);
    const int startupResult = AaStartupEeStartup();
    if (startupResult != 0) {
        if (hasProgramName(argv)) {
            std::printf("%s: AaStartupEeStartup() failed %d\n", programName(argv), startupResult);
        }
        return false;
    }
    return true;
}

bool registerRadDomains() {
    const int hwaResult = AaConfigRadRegisterDomain(constant::hwaDomain, "HWA", ApiStartupInitializeRadParameters);
    if (hwaResult != 0) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Warning, "MOX, R&D domain register failed %d", hwaResult);
        return false;
    }
    const int stateResult =
        AaConfigRadRegisterDomain(constant::hwaStateDomain, "HWAState", ApiStartupInitializeStateRadParameters);
    if (stateResult != 0) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Warning, "HWAState, R&D domain register failed %d", stateResult);
        return false;
    }
    return true;
}

template <typename Parameters>
void setDefaults(const Parameters& parameters) {
    for (const ps::hwapi::common::RadParameter& parameter : parameters) {
        AaConfigRadSetDefault(parameter.id, parameter.name, parameter.defaultValue);
    }
}

void useLogDomain(std::uint32_t startupSize, std::uint32_t runtimeSize) {
    const int result =
        AaSysLogRegisterDomainBuffer(constant::logDomain, constant::logDomainName, startupSize, runtimeSize);
    if (result != 0 && result != constant::alreadyRegistered) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Error, "Fail from AaSysLogRegisterDomainBuffer, error is %d", result);
        return;
    }
    AaSysLogSetLogDomain(constant::logDomain);
}

} // namespace

int ApiStartupInitializeExecutable(int /*argc*/, char** argv, const char* eeName, std::uint16_t /*cpid*/) {
    setlinebuf(stdout);
    if (argv != nullptr) {
        std::printf("%s: EE Start...\n", programName(argv));
    }
    if (!startEnvironment(argv, eeName)) {
        return 0;
    }
    // The file may be missing.
    AaConfigTagReadFile("/opt/mox/mox.xml");
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "MOX, PAL EE initialization done");
    ApiRegisterSysLogBuffer();
    return registerRadDomains() ? 1 : 0;
}

void ApiRegisterSysLogBuffer() {
    std::uint32_t startupSize = 0;
    std::uint32_t runtimeSize = 0;
    const int startupResult = AaConfigTagGetU32(constant::startupLogSizeTag, &startupSize);
    const int runtimeResult = AaConfigTagGetU32(constant::runtimeLogSizeTag, &runtimeSize);
    if (startupResult != 0 || runtimeResult != 0) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Info, "Fail to get startup and runtime log size tag, errors are %d , %d",
                      startupResult, runtimeResult);
        return;
    }
    if (startupSize == 0 || runtimeSize < constant::smallestRuntimeLog) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Info,
                      "HWAPI startup and runtime log have not suitable size: %d bytes, %d bytes",
                      static_cast<int>(startupSize), static_cast<int>(runtimeSize));
        return;
    }
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "HWAPI startup and runtime log size are %d bytes, %d bytes",
                  static_cast<int>(startupSize), static_cast<int>(runtimeSize));
    useLogDomain(startupSize, runtimeSize);
}

void ApiStartupInitializeRadParameters() {
    AaConfigRadSetMaxTagCount(constant::hwaDomain, constant::hwaMaxTagCount);
    setDefaults(ps::hwapi::common::hwaParameters);
}

void ApiStartupInitializeStateRadParameters() {
    AaConfigRadSetMaxTagCount(constant::hwaStateDomain, constant::hwaStateMaxTagCount);
    setDefaults(ps::hwapi::common::hwaStateParameters);
}
