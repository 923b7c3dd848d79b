#include <pal/AaError.h>

#include <gtest/gtest.h>

#include <csignal>

namespace mox::testing {
namespace {

TEST(AaErrorAssertionDeathTest, LogsConditionFileAndLineAndAborts) {
    EXPECT_EXIT(AaErrorAssertion("message", "Common/src/CoreDumpInd", 319), ::testing::KilledBySignal(SIGABRT),
                " ERR .*Assertion failed: message, file Common/src/CoreDumpInd, line 319");
}

TEST(AaErrorAssertionDeathTest, AbortsAlsoWithoutTexts) {
    EXPECT_EXIT(AaErrorAssertion(nullptr, nullptr, 0), ::testing::KilledBySignal(SIGABRT), "Assertion failed");
}

} // namespace
} // namespace mox::testing
