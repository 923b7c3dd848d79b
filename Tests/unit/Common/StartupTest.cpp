#include "unit/Common/ServicePlatform.hpp"

#include <mox/Startup.h>

#include <stdio_ext.h>

#include <array>
#include <cstdio>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Return;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

const char* const startupSizeTag = "pal.service.aasyslog.hwapi.startuplog.size";
const char* const runtimeSizeTag = "pal.service.aasyslog.hwapi.runtimelog.size";

class ExecutableStartup : public ::testing::Test {
protected:
    ExecutableStartup() { platform.answers.tagGetResult[startupSizeTag] = 1; }

    int start(char** argv) {
        CaptureStdout();
        const int result = ApiStartupInitializeExecutable(1, argv, "Led", 0x1234);
        output = GetCapturedStdout();
        return result;
    }

    ServicePlatform platform;
    char program[10] = "MOXLedExe";
    char* words[2] = {program, nullptr};
    std::string output;
    std::vector<std::string> beginning{"AaConfigEarlyStartup()",
                                       call("AaConfigTagSetString", "pal.service.aapro.eename", "Led"),
                                       "AaStartupEeStartup()"};
    std::vector<std::string> upToDomains{
        "AaConfigEarlyStartup()",
        call("AaConfigTagSetString", "pal.service.aapro.eename", "Led"),
        "AaStartupEeStartup()",
        call("AaConfigTagReadFile", "/opt/mox/mox.xml"),
        logLine(2, 0, "MOX, PAL EE initialization done"),
        call("AaConfigTagGetU32", startupSizeTag, "0"),
        call("AaConfigTagGetU32", runtimeSizeTag, "0"),
        logLine(2, 0, "Fail to get startup and runtime log size tag, errors are 1 , 0"),
        call("AaConfigRadRegisterDomain", "2", "HWA")};
};

TEST_F(ExecutableStartup, DoesEveryStepInOrder) {
    EXPECT_EQ(start(words), 1);
    EXPECT_EQ(output, "MOXLedExe: EE Start...\n");
    upToDomains.push_back(call("AaConfigRadRegisterDomain", "34", "HWAState"));
    EXPECT_EQ(platform.takeTrace(), upToDomains);
}

TEST_F(ExecutableStartup, RegistersTheInitialisersOfBothDomains) {
    EXPECT_CALL(platform.config,
                AaConfigRadRegisterDomain(2, ::testing::StrEq("HWA"), &ApiStartupInitializeRadParameters))
        .WillOnce(Return(0));
    EXPECT_CALL(platform.config,
                AaConfigRadRegisterDomain(34, ::testing::StrEq("HWAState"), &ApiStartupInitializeStateRadParameters))
        .WillOnce(Return(0));
    EXPECT_EQ(start(words), 1);
}

TEST_F(ExecutableStartup, MakesStandardOutputLineBuffered) {
    ASSERT_EQ(std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ), 0);
    ASSERT_EQ(__flbf(stdout), 0);
    EXPECT_EQ(start(words), 1);
    EXPECT_NE(__flbf(stdout), 0);
}

TEST_F(ExecutableStartup, WithoutWordsPrintsNoProgress) {
    EXPECT_EQ(start(nullptr), 1);
    EXPECT_EQ(output, "");
}

TEST_F(ExecutableStartup, WithAnEmptyVectorPrintsAnEmptyName) {
    char* none[] = {nullptr};
    EXPECT_EQ(start(none), 1);
    EXPECT_EQ(output, ": EE Start...\n");
}

TEST_F(ExecutableStartup, EndsWhenTheConfigurationFails) {
    platform.answers.earlyStartup = -3;
    EXPECT_EQ(start(words), 0);
    EXPECT_EQ(output, "MOXLedExe: EE Start...\nMOXLedExe: AaConfigEarlyStartup() failed -3\n");
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaConfigEarlyStartup()"));
}

TEST_F(ExecutableStartup, WithoutWordsReportsAFailedConfiguration) {
    platform.answers.earlyStartup = 6;
    EXPECT_EQ(start(nullptr), 0);
    EXPECT_EQ(output, "argv is null\n");
}

TEST_F(ExecutableStartup, EndsWhenTheEnvironmentFails) {
    platform.answers.eeStartup = 4;
    EXPECT_EQ(start(words), 0);
    EXPECT_EQ(output, "MOXLedExe: EE Start...\nMOXLedExe: AaStartupEeStartup() failed 4\n");
    EXPECT_EQ(platform.takeTrace(), beginning);
}

TEST_F(ExecutableStartup, WithoutWordsReportsAFailedEnvironment) {
    platform.answers.eeStartup = 4;
    EXPECT_EQ(start(nullptr), 0);
    EXPECT_EQ(output, "argv is null\n");
}

TEST_F(ExecutableStartup, EndsWhenTheFirstDomainCannotBeRegistered) {
    platform.answers.registerDomain[2] = 7;
    EXPECT_EQ(start(words), 0);
    upToDomains.push_back(logLine(3, 0, "MOX, R&D domain register failed 7"));
    EXPECT_EQ(platform.takeTrace(), upToDomains);
}

TEST_F(ExecutableStartup, EndsWhenTheSecondDomainCannotBeRegistered) {
    platform.answers.registerDomain[34] = -1;
    EXPECT_EQ(start(words), 0);
    upToDomains.push_back(call("AaConfigRadRegisterDomain", "34", "HWAState"));
    upToDomains.push_back(logLine(3, 0, "HWAState, R&D domain register failed -1"));
    EXPECT_EQ(platform.takeTrace(), upToDomains);
}

struct LogSizeRow {
    int startupResult;
    int runtimeResult;
    std::uint32_t startupSize;
    std::uint32_t runtimeSize;
    bool registers;
    const char* logged;
};

void PrintTo(const LogSizeRow& row, std::ostream* out) {
    *out << row.startupSize << " and " << row.runtimeSize << ", results " << row.startupResult << " and "
         << row.runtimeResult;
}

class LogDomainSizes : public ::testing::TestWithParam<LogSizeRow> {};

TEST_P(LogDomainSizes, DecideWhetherBuffersAreRegistered) {
    const LogSizeRow& row = GetParam();
    ServicePlatform platform;
    platform.answers.tagGetResult = {{startupSizeTag, row.startupResult}, {runtimeSizeTag, row.runtimeResult}};
    platform.answers.tagU32 = {{startupSizeTag, row.startupSize}, {runtimeSizeTag, row.runtimeSize}};
    ApiRegisterSysLogBuffer();
    std::vector<std::string> expected{call("AaConfigTagGetU32", startupSizeTag, "0"),
                                      call("AaConfigTagGetU32", runtimeSizeTag, "0"), logLine(2, 0, row.logged)};
    if (row.registers) {
        expected.push_back(call("AaSysLogRegisterDomainBuffer", "21", "HWAPI", std::to_string(row.startupSize),
                                std::to_string(row.runtimeSize)));
        expected.push_back(call("AaSysLogSetLogDomain", "21"));
    }
    EXPECT_EQ(platform.takeTrace(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LogDomainSizes,
    ::testing::Values(
        LogSizeRow{0, 0, 1, 51200, true, "HWAPI startup and runtime log size are 1 bytes, 51200 bytes"},
        LogSizeRow{0, 0, 65536, 2147483647, true,
                   "HWAPI startup and runtime log size are 65536 bytes, 2147483647 bytes"},
        LogSizeRow{0, 0, 1, 0xFFFFFFFF, true, "HWAPI startup and runtime log size are 1 bytes, -1 bytes"},
        LogSizeRow{0, 0, 1, 51199, false, "HWAPI startup and runtime log have not suitable size: 1 bytes, 51199 bytes"},
        LogSizeRow{0, 0, 0, 51200, false, "HWAPI startup and runtime log have not suitable size: 0 bytes, 51200 bytes"},
        LogSizeRow{0, 0, 0, 0, false, "HWAPI startup and runtime log have not suitable size: 0 bytes, 0 bytes"},
        LogSizeRow{1, 0, 1, 51200, false, "Fail to get startup and runtime log size tag, errors are 1 , 0"},
        LogSizeRow{0, 3, 1, 51200, false, "Fail to get startup and runtime log size tag, errors are 0 , 3"},
        LogSizeRow{5, 5, 0, 0, false, "Fail to get startup and runtime log size tag, errors are 5 , 5"}));

class LogDomainRegistration : public ::testing::Test {
protected:
    LogDomainRegistration() { platform.answers.tagU32 = {{startupSizeTag, 4096}, {runtimeSizeTag, 102400}}; }

    /// @return what was done after the sizes were read
    std::vector<std::string> registerWith(int result) {
        platform.answers.registerLogBuffer = result;
        ApiRegisterSysLogBuffer();
        std::vector<std::string> trace = platform.takeTrace();
        trace.erase(trace.begin(), trace.begin() + 3);
        return trace;
    }

    ServicePlatform platform;
    const std::string registration = call("AaSysLogRegisterDomainBuffer", "21", "HWAPI", "4096", "102400");
};

TEST_F(LogDomainRegistration, ThatSucceedsSetsTheDomain) {
    EXPECT_THAT(registerWith(0), ElementsAre(registration, call("AaSysLogSetLogDomain", "21")));
}

TEST_F(LogDomainRegistration, ThatFindsTheDomainSetsItToo) {
    EXPECT_THAT(registerWith(1), ElementsAre(registration, call("AaSysLogSetLogDomain", "21")));
}

TEST_F(LogDomainRegistration, ThatFailsIsLoggedAndSetsNothing) {
    EXPECT_THAT(registerWith(2),
                ElementsAre(registration, logLine(4, 0, "Fail from AaSysLogRegisterDomainBuffer, error is 2")));
}

TEST_F(LogDomainRegistration, ThatFailsWithANegativeResultIsLoggedToo) {
    EXPECT_THAT(registerWith(-1),
                ElementsAre(registration, logLine(4, 0, "Fail from AaSysLogRegisterDomainBuffer, error is -1")));
}

} // namespace
} // namespace mox::testing
