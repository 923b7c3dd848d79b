// The library's main() under another name: this executable has one of its own.
#define main serviceMain
// NOLINTNEXTLINE(bugprone-suspicious-include): the file holds nothing but main().
#include "Common/src/ServiceMain.cpp"
#undef main

#include "unit/Common/ServiceUnderTest.hpp"

#include <cstdlib>
#include <stdexcept>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

/// A service whose start-up does what the test says.
class StartingService : public Service {
public:
    explicit StartingService(ServicePlatform& platform)
        : Service("Led", ledCpid, ERadHwapi_LED, ERadHwapiState_LedState), m_platform(platform) {}
    bool Startup(int argc, char** argv) override {
        m_platform.note("Startup(" + std::to_string(argc) + ", " + argv[0] + ")");
        return onStartup();
    }
    void Shutdown() override { m_platform.note("Shutdown()"); }

    std::function<bool()> onStartup;

private:
    ServicePlatform& m_platform;
};

class ServiceMain : public ::testing::Test {
protected:
    int run(std::function<bool()> onStartup) {
        sut.onStartup = std::move(onStartup);
        platform.takeTrace();
        CommandLine line({"MOXLedExe", "-x"});
        CaptureStderr();
        const int exitStatus = serviceMain(line.argc(), line.argv());
        standardError = GetCapturedStderr();
        return exitStatus;
    }

    ServicePlatform platform;
    StartingService sut{platform};
    std::string standardError;
};

TEST_F(ServiceMain, EndsWithStatus0AfterANormalEnd) {
    EXPECT_EQ(run([] { return true; }), 0);
    EXPECT_EQ(standardError, "");
    EXPECT_THAT(platform.takeTrace(), ElementsAre("Startup(2, MOXLedExe)", "Shutdown()"));
}

TEST_F(ServiceMain, EndsWithStatus1AfterAFailureAndStillShutsDown) {
    EXPECT_EQ(run([] { return false; }), 1);
    EXPECT_EQ(standardError, "");
    EXPECT_THAT(platform.takeTrace(), ElementsAre("Startup(2, MOXLedExe)", "Shutdown()"));
}

TEST_F(ServiceMain, PrintsAFailedInitialisationAndStillShutsDown) {
    EXPECT_EQ(run([]() -> bool { throw Service::InitFailedException("no fans", "Led/src/Led", 17); }), 1);
    EXPECT_EQ(standardError, "Exception -> Initialization failed: no fans (file: Led/src/Led, line: 17)\n");
    EXPECT_THAT(platform.takeTrace(), ElementsAre("Startup(2, MOXLedExe)", "Shutdown()"));
}

TEST_F(ServiceMain, LetsEveryOtherExceptionEndTheProcess) {
    EXPECT_THROW(run([]() -> bool { throw Service::RuntimeException("x", "f", 1); }), Service::RuntimeException);
    GetCapturedStderr();
    EXPECT_THROW(run([]() -> bool { throw std::logic_error("x"); }), std::logic_error);
    GetCapturedStderr();
    EXPECT_THAT(platform.takeTrace(), ElementsAre("Startup(2, MOXLedExe)"));
}

TEST(ServiceMainWithoutService, SaysSoAndEndsWithStatus1) {
    // In a process of its own, in which no other test has built a service.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CommandLine line({"MOXLedExe"});
    EXPECT_EXIT(std::exit(serviceMain(line.argc(), line.argv())), ::testing::ExitedWithCode(1),
                "^No service: define one object of a class derived from Service\n$");
}

TEST(ServiceMainAndService, ShutDownAfterAHelpRequest) {
    ServicePlatform platform;
    ServiceUnderTest sut(platform);
    platform.takeTrace();
    CommandLine line({"MOXLedExe", "--help"});
    CaptureStderr();
    EXPECT_EQ(serviceMain(line.argc(), line.argv()), 0);
    EXPECT_THAT(GetCapturedStderr(), ::testing::StartsWith("Usage:\nMOXLedExe [options]\n\n"));
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("Exit()", call("AaSysComUserDeregister", "0x0"), "AaStartupEeShutdown()"));
}

TEST(ServiceMainAndService, EndWithStatus1AfterABadCommandLine) {
    ServicePlatform platform;
    ServiceUnderTest sut(platform);
    CommandLine line({"MOXLedExe", "word"});
    CaptureStderr();
    EXPECT_EQ(serviceMain(line.argc(), line.argv()), 1);
    EXPECT_THAT(GetCapturedStderr(), ::testing::StartsWith("Invalid arguments:  word\n"));
}

TEST(ServiceMainAndService, PrintAnEnvironmentThatCannotStart) {
    ServicePlatform platform;
    platform.answers.earlyStartup = 4;
    ServiceUnderTest sut(platform);
    CommandLine line({"MOXLedExe"});
    CaptureStderr();
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(serviceMain(line.argc(), line.argv()), 1);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "MOXLedExe: EE Start...\nMOXLedExe: AaConfigEarlyStartup() failed 4\n");
    EXPECT_THAT(GetCapturedStderr(),
                ::testing::MatchesRegex("Exception -> Initialization failed: Failed to set initialize executable "
                                        "\\(file: Common/src/Service, line: [0-9]+\\)\n"));
}

} // namespace
} // namespace mox::testing
