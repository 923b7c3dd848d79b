#include <testkit/BoardTest.hpp>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Outcome {
    std::string output;
    int status = -1;
};

/// Runs tests that fail on purpose; their runs lie in this test's own /tmp.
Outcome runFailing(const std::string& arguments) {
    const std::string command = "unset MOX_TESTKIT_INSIDE; exec " MOX_FAILING_TESTS " " + arguments + " 2>&1";
    Outcome outcome;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> part{};
    while (pipe != nullptr && fgets(part.data(), part.size(), pipe) != nullptr)
        outcome.output += part.data();
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

bool isARunLeft() {
    for (const auto& entry : std::filesystem::directory_iterator("/tmp"))
        if (entry.path().filename().string().rfind("mox-test-", 0) == 0)
            return true;
    return false;
}

TEST(TestThatCrashes, IsReportedAndItsRunRemoved) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.Crashes");
    EXPECT_EQ(outcome.status, 128 + SIGKILL);
    EXPECT_THAT(outcome.output, HasSubstr("[  FAILED  ] Failing.Crashes: ended by signal 9"));
    EXPECT_FALSE(isARunLeft());
}

TEST(TestThatCrashes, DoesNotKeepTheNextFromRunning) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.Crashes:NotFailing.*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("[       OK ] NotFailing.Passes"), HasSubstr("[  PASSED  ] 1 tests."),
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
        std::array<char, 1024> line{};
        while (m_test == 0 && fgets(line.data(), line.size(), m_output) != nullptr)
            std::sscanf(line.data(), "hanging as process %d", &m_test);
    }
    ~Interrupted() override { fclose(m_output); }

    int endBy(int signal) {
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
    int m_test = 0;
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
    const Outcome outcome = runFailing("--gtest_filter=NotFailing.*");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_FALSE(isARunLeft());
}

TEST(ListOfTests, NeedsNoRun) {
    const Outcome outcome = runFailing("--gtest_list_tests");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Failing.\n  Crashes\n"));
}

TEST(LineThatNobodyExpected, FailsTheTestThatLoggedIt) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.LogsAWarning*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("a line that nobody expected was logged: warning 0x20003: nobody expects this"));
}

TEST(MessageThatDoesNotCome, FailsTheTestWithWhatCame) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.Awaits*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("no message 0x0602 within 50 ms; came:"),
                                      HasSubstr("message 0x0601 from 0x1011"), HasSubstr("3 bytes: 01 02 FF")));
}

TEST(MessageToNobody, FailsTheTestWithTheReason) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.SendsToNobody");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("message 0x0601 to 0x10110777 was not sent: result 4 (nobody has registered that address)"));
}

TEST(HandleLeftOpenOnABoard, FailsTheTest) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.LeavesASemaphoreOpen");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("left open at the end of the test: semaphore 0x"));
}

TEST(ServiceThatDoesNotExist, FailsTheTestWithItsName) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.StartsAServiceThatDoesNotExist");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("service NoSuchService could not be started"),
                                      HasSubstr("MOXNoSuchServiceExe: no such program")));
}

TEST(ServiceThatEndsAtOnce, FailsTheTestWithWhatItPrinted) {
    const Outcome outcome = runFailing("--gtest_filter=Failing.StartsAServiceThatEndsAtOnce");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("service Echo has ended with status"), HasSubstr("Usage:")));
}

TEST(WrongBoardDescription, FailsTheTestWithTheReason) {
    const Outcome outcome = runFailing("--gtest_filter=OnAWrongBoard.*");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("[  FAILED  ] OnAWrongBoard.IsNotRun: board description of the test:1:"));
}

TEST(SelectedTests, AreOnlyThoseOfTheFilter) {
    const Outcome outcome = runFailing("--gtest_filter=*:-Failing.*:OnAWrongBoard.*");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, Not(HasSubstr("Crashes")));
}

} // namespace
