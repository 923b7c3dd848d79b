#include "support/CommandRun.hpp"

#include <testkit/BoardTest.hpp>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using mox::testing::CommandResult;

/// Runs tests that fail on purpose; their runs lie in this test's own /tmp.
CommandResult runFailing(const std::string& filter, const std::vector<std::string>& furtherArguments = {}) {
    std::vector<std::string> words{MOX_FAILING_TESTS, "--gtest_filter=" + filter};
    words.insert(words.end(), furtherArguments.begin(), furtherArguments.end());
    mox::testing::CommandSetting setting;
    setting.environment = {{"MOX_TESTKIT_INSIDE", std::nullopt}};
    return mox::testing::runCommand(words, setting);
}

bool isARunLeft() {
    for (const auto& entry : std::filesystem::directory_iterator("/tmp"))
        if (entry.path().filename().string().rfind("mox-test-", 0) == 0)
            return true;
    return false;
}

TEST(TestThatCrashes, IsReportedAndItsRunRemoved) {
    const CommandResult outcome = runFailing("Failing.Crashes");
    EXPECT_EQ(outcome.status, 128 + SIGKILL);
    EXPECT_THAT(outcome.out, HasSubstr("[  FAILED  ] Failing.Crashes: ended by signal 9"));
    EXPECT_FALSE(isARunLeft());
}

TEST(TestThatCrashes, DoesNotKeepTheNextFromRunning) {
    const CommandResult outcome = runFailing("Failing.Crashes:NotFailing.*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("[       OK ] NotFailing.Passes"), HasSubstr("[  PASSED  ] 1 tests."),
                                   HasSubstr("[  FAILED  ] Failing.Crashes\n")));
}

/// The main() of tests that is interrupted while its test hangs.
class Interrupted : public testing::Test {
protected:
    /// Starts the test that hangs and waits until it does.
    Interrupted() {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe(ends.data()), 0);
        m_main = fork();
        if (m_main == 0) {
            dup2(ends[1], STDOUT_FILENO);
            unsetenv("MOX_TESTKIT_INSIDE");
            execl(MOX_FAILING_TESTS, MOX_FAILING_TESTS, "--gtest_filter=Failing.HangsForEver", nullptr);
            _exit(127);
        }
        close(ends[1]);
        m_output = fdopen(ends[0], "r");
        const std::string announced = "hanging as process ";
        std::array<char, 1024> line{};
        while (m_test == 0 && fgets(line.data(), line.size(), m_output) != nullptr)
            if (std::string(line.data()).rfind(announced, 0) == 0)
                m_test = std::strtol(line.data() + announced.size(), nullptr, 10);
    }
    ~Interrupted() override { fclose(m_output); }

    int endBy(int signal) const {
        kill(m_main, signal);
        int status = 0;
        waitpid(m_main, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    /// Whether the output has come to its end: the processes that held it are gone.
    bool isOver() {
        while (fgetc(m_output) != EOF) {
        }
        return feof(m_output) != 0;
    }

    pid_t m_main = 0;
    long m_test = 0;
    FILE* m_output = nullptr;
};

TEST_F(Interrupted, EndsItsTestAndRemovesTheRun) {
    ASSERT_GT(m_test, 0);
    EXPECT_TRUE(isARunLeft());
    EXPECT_EQ(endBy(SIGTERM), 128 + SIGKILL);
    EXPECT_TRUE(isOver());
    EXPECT_FALSE(isARunLeft());
}

TEST_F(Interrupted, TakesItsTestAlongWhenItIsKilled) {
    ASSERT_GT(m_test, 0);
    EXPECT_EQ(endBy(SIGKILL), 128 + SIGKILL);
    EXPECT_TRUE(isOver());
}

TEST(TestThatPasses, GivesStatusZeroAndLeavesNoRun) {
    const CommandResult outcome = runFailing("NotFailing.*");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_FALSE(isARunLeft());
}

TEST(ListOfTests, NeedsNoRun) {
    const CommandResult outcome = runFailing("*", {"--gtest_list_tests"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Failing.\n  Crashes\n"));
}

TEST(LineThatNobodyExpected, FailsTheTestThatLoggedIt) {
    const CommandResult outcome = runFailing("Failing.LogsAWarning*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("a line that nobody expected was logged: warning 0x20003: nobody expects this"));
}

TEST(MessageThatDoesNotCome, FailsTheTestWithWhatCame) {
    const CommandResult outcome = runFailing("Failing.Awaits*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("no message 0x0602 within 50 ms; came:"),
                                   HasSubstr("message 0x0601 from 0x1011"), HasSubstr("3 bytes: 01 02 FF")));
}

TEST(MessageToNobody, FailsTheTestWithTheReason) {
    const CommandResult outcome = runFailing("Failing.SendsToNobody");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out,
                HasSubstr("message 0x0601 to 0x10110777 was not sent: result 4 (nobody has registered that address)"));
}

TEST(HandleLeftOpenOnABoard, FailsTheTest) {
    const CommandResult outcome = runFailing("Failing.LeavesASemaphoreOpen");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("left open at the end of the test: semaphore 0x"));
}

TEST(ServiceThatDoesNotExist, FailsTheTestWithItsName) {
    const CommandResult outcome = runFailing("Failing.StartsAServiceThatDoesNotExist");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("service NoSuchService could not be started"),
                                   HasSubstr("MOXNoSuchServiceExe: no such program")));
}

TEST(ServiceThatEndsAtOnce, FailsTheTestWithWhatItPrinted) {
    const CommandResult outcome = runFailing("Failing.StartsAServiceThatEndsAtOnce");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("service Echo has ended with status"), HasSubstr("Usage:")));
}

TEST(ServiceThatDoesNotStop, EndsTheTestAndDoesNotHangIt) {
    const CommandResult outcome = runFailing("Failing.StartsAServiceThatDoesNotStop");
    EXPECT_EQ(outcome.status, 128 + SIGABRT);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("service Hanging has not ended within 50 ms: state"),
                                   HasSubstr("StartsAServiceThatDoesNotStop: ended by signal 6")));
    EXPECT_THAT(outcome.err, HasSubstr("a service is destroyed that still runs"));
    EXPECT_FALSE(isARunLeft());
}

TEST(BoardOfASuiteThatDoesNotExist, IsRefused) {
    mox::testing::CommandSetting setting;
    setting.environment = {{"MOX_TESTKIT_INSIDE", std::nullopt}, {"MISSPELL_A_SUITE", "1"}};
    const CommandResult outcome = mox::testing::runCommand({MOX_FAILING_TESTS, "--gtest_filter=NotFailing.*"}, setting);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "BoardOf names the suite Fialing, which has no test here\n");
}

TEST(ReportOfSeveralTests, IsRefusedInOneFile) {
    const CommandResult outcome = runFailing("*", {"--gtest_output=xml:report.xml"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("=xml:report.xml must name a directory, with '/'"));
    EXPECT_EQ(outcome.out, "");
}

TEST(WrongBoardDescription, FailsTheTestWithTheReason) {
    const CommandResult outcome = runFailing("OnAWrongBoard.*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("[  FAILED  ] OnAWrongBoard.IsNotRun: board description of the test:1:"));
}

TEST(SelectedTests, AreOnlyThoseOfTheFilter) {
    const CommandResult outcome = runFailing("*:-Failing.*:OnAWrongBoard.*");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, Not(HasSubstr("Crashes")));
}

} // namespace
