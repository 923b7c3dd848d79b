#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;

struct Outcome {
    std::string output;
    int status = -1;
};

/// Runs the tests that are careless on purpose.
Outcome runCareless(const std::string& filter) {
    const std::string command = std::string(MOX_CARELESS_TESTS " --gtest_filter='") + filter + "' 2>&1";
    Outcome outcome;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> part{};
    while (pipe != nullptr && fgets(part.data(), part.size(), pipe) != nullptr)
        outcome.output += part.data();
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

TEST(TestThatEndsWithASemaphoreOpen, FailsAndNamesTheCall) {
    const Outcome outcome = runCareless("Careless.KeepsASemaphore");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("left open at the end of the test: semaphore 0x"));
    EXPECT_THAT(outcome.output, HasSubstr("from AaSemCreateC, its call 1"));
    EXPECT_THAT(outcome.output, HasSubstr("[  FAILED  ] Careless.KeepsASemaphore"));
}

TEST(TestThatEndsWithAMemoryBlockOpen, FailsAndNamesTheCall) {
    const Outcome outcome = runCareless("Careless.KeepsAMemoryBlock");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("memory block 0x"));
    EXPECT_THAT(outcome.output, HasSubstr("from AaMemMalloc"));
}

TEST(TestThatEndsWithAnExecutionUnitRunning, FailsAndNamesIt) {
    const Outcome outcome = runCareless("Careless.KeepsAnExecutionUnit");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("execution unit \"Endless\" from AaProEuCreateAndStartJoinable"));
}

TEST(TestAfterACarelessOne, IsBlamedForNothing) {
    const Outcome outcome = runCareless("Careless.KeepsASemaphore:CarelessNoMore.*");
    EXPECT_THAT(outcome.output, HasSubstr("[       OK ] CarelessNoMore.HasNoFaultOfTheTestBefore"));
}

TEST(FaultOfAnEndedTest, IsGone) {
    const Outcome outcome = runCareless("Careless.PlansAFaultForLater:CarelessNoMore.*");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, Not(HasSubstr("FAILED")));
}

} // namespace
