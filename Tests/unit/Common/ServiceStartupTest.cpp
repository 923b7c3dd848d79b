#include "unit/Common/ServiceUnderTest.hpp"

#include <memory>

namespace mox::testing {
namespace {

using ::testing::_;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::internal::CaptureStderr;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStderr;
using ::testing::internal::GetCapturedStdout;

const std::string euCreation =
    call("AaSysComEuCreateAndStartWithPolicy", "LedMain", "4096", "2", "10", "0", std::to_string(sizeof(void*)), "1");

class ServiceStartup : public ServiceOnPlatform {
protected:
    ServiceStartup() {
        sut.onInit = [this] { sut.Terminate(); };
        platform.receives(nullptr);
    }

    /// What a start prints is looked at where it is the subject.
    bool start(std::vector<std::string> words) {
        words.insert(words.begin(), "/opt/mox/MOXLedExe");
        CommandLine line(std::move(words));
        CaptureStderr();
        CaptureStdout();
        const bool result = sut.Startup(line.argc(), line.argv());
        standardOutput = GetCapturedStdout();
        standardError = GetCapturedStderr();
        return result;
    }

    std::string standardError;
    std::string standardOutput;
};

TEST_F(ServiceStartup, WithABadCommandLineSaysWhatAndStartsNothing) {
    EXPECT_FALSE(start({"--nope", "word"}));
    EXPECT_EQ(standardError, "Invalid arguments:  --nope word\nTry MOXLedExe with '-h' or '--help' arguments for usage "
                             "information\n");
    EXPECT_EQ(standardOutput, "");
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
}

TEST_F(ServiceStartup, WithABadCommandLineDoesNotGiveHelp) {
    EXPECT_FALSE(start({"-h", "word"}));
    EXPECT_THAT(standardError, StartsWith("Invalid arguments:  word\n"));
}

TEST_F(ServiceStartup, AskedForHelpPrintsTheUsageAndStartsNothing) {
    for (const char* option : {"-h", "--help"}) {
        sut.GetArgumentParser().SetArgumentInfo("");
        EXPECT_TRUE(start({option})) << option;
        EXPECT_EQ(standardError, "Usage:\nMOXLedExe [options]\n\n\t-h\n\t--help\n\t\t Print usage information\n");
        EXPECT_EQ(standardOutput, "");
        EXPECT_THAT(platform.takeTrace(), IsEmpty());
    }
}

/// A parser that only knows what it is asked.
class MockParser : public ps::hwapi::common::ArgParserBase {
public:
    MOCK_METHOD(void, SetArgumentInfo, (const std::string&), (override));
    MOCK_METHOD(std::string, Parse, (int, char**), (override));
    MOCK_METHOD(std::string, ReadArgument, (const std::string&), (override));
    MOCK_METHOD(std::string, GetHelp, (), (override));
};

class ServiceStartupWithOwnParser : public ::testing::Test {
protected:
    ServiceStartupWithOwnParser() {
        auto made = std::make_unique<::testing::StrictMock<MockParser>>();
        parser = made.get();
        sut = std::make_unique<ServiceUnderTest>(platform, ledCpid, std::move(made));
        platform.takeTrace();
    }

    bool start() {
        CommandLine line({"MOXLedExe", "-a"});
        EXPECT_CALL(*parser, Parse(2, line.argv())).WillOnce(::testing::Return(""));
        CaptureStderr();
        const bool result = sut->Startup(line.argc(), line.argv());
        standardError = GetCapturedStderr();
        return result;
    }

    ServicePlatform platform;
    ::testing::StrictMock<MockParser>* parser = nullptr;
    std::unique_ptr<ServiceUnderTest> sut;
    std::string standardError;
};

TEST_F(ServiceStartupWithOwnParser, AsksForTheLongHelpOptionOnlyWhenTheShortOneIsOff) {
    EXPECT_CALL(*parser, ReadArgument("h")).WillOnce(::testing::Return("arg on"));
    EXPECT_CALL(*parser, GetHelp()).WillOnce(::testing::Return("the help"));
    EXPECT_TRUE(start());
    EXPECT_EQ(standardError, "Usage:\nMOXLedExe [options]\n\nthe help");
}

TEST_F(ServiceStartupWithOwnParser, GivesHelpForTheLongOptionAlone) {
    EXPECT_CALL(*parser, ReadArgument("h")).WillOnce(::testing::Return(""));
    EXPECT_CALL(*parser, ReadArgument("help")).WillOnce(::testing::Return("arg on"));
    EXPECT_CALL(*parser, GetHelp()).WillOnce(::testing::Return(""));
    EXPECT_TRUE(start());
    EXPECT_EQ(standardError, "Usage:\nMOXLedExe [options]\n\n");
}

TEST_F(ServiceStartupWithOwnParser, TakesAnyOtherValueOfTheHelpOptionsForNoRequest) {
    EXPECT_CALL(*parser, ReadArgument("h")).WillOnce(::testing::Return("arg off"));
    EXPECT_CALL(*parser, ReadArgument("help")).WillOnce(::testing::Return("3"));
    sut->onInit = [this] { sut->Terminate(); };
    platform.receives(nullptr);
    CaptureStdout();
    EXPECT_TRUE(start());
    GetCapturedStdout();
    EXPECT_THAT(platform.takeTrace(), Contains("PreStartup()"));
}

TEST_F(ServiceStartup, RunsEveryStepInOrder) {
    platform.answers.tagU32["pal.service.aasyslog.hwapi.startuplog.size"] = 4096;
    platform.answers.tagU32["pal.service.aasyslog.hwapi.runtimelog.size"] = 51200;
    EXPECT_TRUE(start({}));
    EXPECT_THAT(
        platform.takeTrace(),
        ElementsAre("PreStartup()", "AaConfigEarlyStartup()",
                    call("AaConfigTagSetString", "pal.service.aapro.eename", "Led"), "AaStartupEeStartup()",
                    call("AaConfigTagReadFile", "/opt/mox/mox.xml"), logLine(2, 0, "MOX, PAL EE initialization done"),
                    call("AaConfigTagGetU32", "pal.service.aasyslog.hwapi.startuplog.size", "0"),
                    call("AaConfigTagGetU32", "pal.service.aasyslog.hwapi.runtimelog.size", "0"),
                    logLine(2, 0, "HWAPI startup and runtime log size are 4096 bytes, 51200 bytes"),
                    call("AaSysLogRegisterDomainBuffer", "21", "HWAPI", "4096", "51200"),
                    call("AaSysLogSetLogDomain", "21"), call("AaConfigRadRegisterDomain", "2", "HWA"),
                    call("AaConfigRadRegisterDomain", "34", "HWAState"), state(1),
                    call("AaProEeGetDefaultSchedulingPolicy", "1"), euCreation, state(1),
                    call("AaSysComEuUserRegister", "0x1234"), "Init()", log(2, "Service initialized ( 0x01234 )"),
                    state(2), "AaSysComMsgReceive(-1, 0)", state(4)));
    EXPECT_EQ(standardOutput, "/opt/mox/MOXLedExe: EE Start...\n");
    EXPECT_EQ(standardError, "");
}

TEST_F(ServiceStartup, IgnoresTheResultOfPreStartup) {
    sut.preStartupResult = false;
    EXPECT_TRUE(start({}));
    EXPECT_THAT(platform.takeTrace(), Contains(euCreation));
}

TEST_F(ServiceStartup, WithoutExecutionEnvironmentThrowsAndCreatesNoMainEu) {
    platform.answers.eeStartup = 4;
    try {
        start({});
        FAIL() << "no exception";
    } catch (const Service::InitFailedException& failure) {
        GetCapturedStdout();
        GetCapturedStderr();
        EXPECT_STREQ(failure.what(), "Initialization failed");
        EXPECT_EQ(failure.getDescription(), "Failed to set initialize executable");
        EXPECT_EQ(failure.getFile(), "Common/src/Service");
        EXPECT_GT(failure.getLine(), 0U);
    }
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("PreStartup()", "AaConfigEarlyStartup()",
                            call("AaConfigTagSetString", "pal.service.aapro.eename", "Led"), "AaStartupEeStartup()"));
}

TEST_F(ServiceStartup, VerboseSetsTheDebugFlagBeforeState1) {
    sut.SetVerbose(2);
    EXPECT_TRUE(start({}));
    const std::vector<std::string> written = platform.takeCalls("AaConfigRadSetValue");
    ASSERT_GE(written.size(), 2U);
    EXPECT_EQ(written[0], call("AaConfigRadSetValue", "0x2002A", "1"));
    EXPECT_EQ(written[1], state(1));
}

TEST_F(ServiceStartup, GoesOnWhenParametersCannotBeWritten) {
    platform.answers.radSetValue = 5;
    sut.SetVerbose(1);
    EXPECT_TRUE(start({}));
    EXPECT_THAT(platform.takeLog(), IsSupersetOf({log(4, "SetFlagValue: failed to set flag 131114 to 1 (reason 5)"),
                                                  log(4, "SetFlagValue: failed to set flag 2228236 to 1 (reason 5)"),
                                                  log(4, "SetFlagValue: failed to set flag 2228236 to 4 (reason 5)")}));
}

TEST_F(ServiceStartup, VerboseCanBeTakenBack) {
    sut.SetVerbose(1);
    sut.SetVerbose(0);
    EXPECT_TRUE(start({}));
    EXPECT_THAT(platform.takeTrace(), Not(Contains(call("AaConfigRadSetValue", "0x2002A", "1"))));
}

class ServiceMainEuCreation : public ServiceOnPlatform {
protected:
    ServiceMainEuCreation() {
        sut.onInit = [this] { sut.Terminate(); };
        platform.receives(nullptr);
    }
};

TEST_F(ServiceMainEuCreation, TakesTheDefaultPolicy) {
    platform.answers.policy = EAaProEuSchedulingPolicy_Other;
    EXPECT_TRUE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeTrace(), Contains(call("AaSysComEuCreateAndStartWithPolicy", "LedMain", "4096", "3", "10",
                                                    "0", std::to_string(sizeof(void*)), "1")));
}

TEST_F(ServiceMainEuCreation, WithoutDefaultPolicyLogsAndGoesOnWithRoundRobin) {
    platform.answers.policyResult = EAaProEuRetVal_NotSupported;
    EXPECT_TRUE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeTrace(), IsSupersetOf({log(4, "AaProEeGetDefaultSchedulingPolicy failed 7"),
                                                    call("AaSysComEuCreateAndStartWithPolicy", "LedMain", "4096", "1",
                                                         "10", "0", std::to_string(sizeof(void*)), "1")}));
}

TEST_F(ServiceMainEuCreation, WithoutDefaultPolicyTakesNothingThatTheFailedCallLeft) {
    EXPECT_CALL(platform.pro, AaProEeGetDefaultSchedulingPolicy(_)).WillOnce([](EAaProEuSchedulingPolicy* policy) {
        *policy = EAaProEuSchedulingPolicy_Other;
        return EAaProEuRetVal_Error;
    });
    EXPECT_TRUE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeTrace(), IsSupersetOf({log(4, "AaProEeGetDefaultSchedulingPolicy failed 1"),
                                                    call("AaSysComEuCreateAndStartWithPolicy", "LedMain", "4096", "1",
                                                         "10", "0", std::to_string(sizeof(void*)), "1")}));
}

TEST_F(ServiceMainEuCreation, ThatFailsIsLoggedWithTheServicesName) {
    platform.answers.euCreation = EAaProEuRetVal_OutOfResources;
    EXPECT_FALSE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeLog(), ElementsAre(log(4, "Led main EU creation failed 3")));
}

TEST_F(ServiceMainEuCreation, WhoseFunctionNeverRanCountsAsADeath) {
    platform.answers.euRuns = false;
    EXPECT_FALSE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeLog(), ElementsAre(log(4, "Led main EU died unexpectedly")));
}

TEST_F(ServiceMainEuCreation, HandsOverAPointerToASuccessFlagThatIs0) {
    platform.answers.euRuns = false;
    int seen = -1;
    EXPECT_CALL(platform.sysCom, AaSysComEuCreateAndStartWithPolicy(_, _, _, _, _, _, _, _, sizeof(void*), _))
        .WillOnce([&seen](auto, auto, auto, auto, auto, auto, auto, const void* argument, auto, auto) {
            int* const flag = *static_cast<int* const*>(argument);
            seen = *flag;
            *flag = 1;
            return EAaProEuRetVal_NoError;
        });
    EXPECT_TRUE(sut.CreateAndStartEu());
    EXPECT_EQ(seen, 0);
}

TEST_F(ServiceMainEuCreation, TakesAnyFlagButOneForADeath) {
    EXPECT_CALL(platform.sysCom, AaSysComEuCreateAndStartWithPolicy(_, _, _, _, _, _, _, _, _, _))
        .WillOnce([](auto, auto, auto, auto, auto, auto, auto, const void* argument, auto, auto) {
            **static_cast<int* const*>(argument) = 2;
            return EAaProEuRetVal_NoError;
        });
    EXPECT_FALSE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeLog(), ElementsAre(log(4, "Led main EU died unexpectedly")));
}

class ServiceShutdown : public ServiceOnPlatform {};

TEST_F(ServiceShutdown, ExitsThenShutsTheEnvironmentDown) {
    sut.Shutdown();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("Exit()", call("AaSysComUserDeregister", "0x0"), "AaStartupEeShutdown()"));
}

TEST_F(ServiceShutdown, DeregistersTheAssignedCpid) {
    sut.InitEu();
    platform.takeTrace();
    sut.Shutdown();
    EXPECT_THAT(platform.takeTrace(), Contains(call("AaSysComUserDeregister", "0x1234")));
}

} // namespace
} // namespace mox::testing
