#include "support/LogLines.hpp"

#include <pal/AaSysLog.h>

#include <gtest/gtest-spi.h>

namespace {

using mox::testing::LogLine;
using mox::testing::LogLines;
using testing::ElementsAre;

TEST(LogLines, KeepLevelFeatureTextAndFormat) {
    const LogLines sut;
    EXPECT_EQ(AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20003, "fan %d", 3), 0);
    EXPECT_THAT(sut.taken(), ElementsAre(LogLine{4, 0x20003, "fan 3"}));
    EXPECT_THAT(sut.formats(), ElementsAre("fan %d"));
}

TEST(LineWithoutLogLines, FailsTheTestWithItsText) {
    EXPECT_NONFATAL_FAILURE(AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20003, "fan %d", 3),
                            "a line that nobody expected: fan 3");
}

} // namespace
