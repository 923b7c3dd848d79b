#include "support/CommandRun.hpp"

#include <gmock/gmock.h>

#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;

using mox::testing::CommandResult;

/// Runs the tests that are careless on purpose.
CommandResult runCareless(const std::string& filter) {
    return mox::testing::runCommand({MOX_CARELESS_TESTS, "--gtest_filter=" + filter});
}

TEST(TestThatEndsWithASemaphoreOpen, FailsAndNamesTheCall) {
    const CommandResult outcome = runCareless("Careless.KeepsASemaphore");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("left open at the end of the test: semaphore 0x"));
    EXPECT_THAT(outcome.out, HasSubstr("from AaSemCreateC, its call 1"));
    EXPECT_THAT(outcome.out, HasSubstr("[  FAILED  ] Careless.KeepsASemaphore"));
}

TEST(TestThatEndsWithAMemoryBlockOpen, FailsAndNamesTheCall) {
    const CommandResult outcome = runCareless("Careless.KeepsAMemoryBlock");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("memory block 0x"));
    EXPECT_THAT(outcome.out, HasSubstr("from AaMemMalloc"));
}

TEST(TestThatEndsWithAnExecutionUnitRunning, FailsAndNamesIt) {
    const CommandResult outcome = runCareless("Careless.KeepsAnExecutionUnit");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("execution unit \"Endless\" from AaProEuCreateAndStartJoinable"));
}

TEST(TestAfterACarelessOne, IsBlamedForNothing) {
    const CommandResult outcome = runCareless("Careless.KeepsASemaphore:CarelessNoMore.*");
    EXPECT_THAT(outcome.out, HasSubstr("[       OK ] CarelessNoMore.HasNoFaultOfTheTestBefore"));
}

TEST(FaultOfAnEndedTest, IsGone) {
    const CommandResult outcome = runCareless("Careless.PlansAFaultForLater:CarelessNoMore.*");
    EXPECT_EQ(outcome.status, 0) << outcome.out;
    EXPECT_THAT(outcome.out, Not(HasSubstr("FAILED")));
}

} // namespace
