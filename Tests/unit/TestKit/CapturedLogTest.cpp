#include <pal/AaSysLog.h>
#include <testkit/CapturedLog.hpp>

#include <gtest/gtest-spi.h>

#include <sstream>
#include <thread>

namespace {

using namespace mox::testkit;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr unsigned int feature = 0x20003;

void logWarning(const char* text) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, feature, "%s", text);
}
void logInfo(const char* text) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, feature, "%s", text);
}

TEST(CapturedLog, KeepsLevelFeatureAndTextOfEachLine) {
    CapturedLog sut;
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, feature, "fan %d", 3);
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "without feature");
    const auto lines = sut.lines();
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0].level, infoLevel);
    EXPECT_EQ(lines[0].feature, feature);
    EXPECT_EQ(lines[0].text, "fan 3");
    EXPECT_EQ(lines[1].feature, 0U);
}

TEST(CapturedLog, FindsALineOnlyWhenLevelFeatureAndTextFit) {
    CapturedLog sut;
    logInfo("fan stopped");
    EXPECT_TRUE(sut.has(info(feature, "fan stopped")));
    EXPECT_TRUE(sut.has(line(anyLevel, anyFeature, HasSubstr("fan"))));
    EXPECT_FALSE(sut.has(error(feature, "fan stopped")));
    EXPECT_FALSE(sut.has(info(feature + 1, "fan stopped")));
    EXPECT_FALSE(sut.has(info(feature, "fan")));
    EXPECT_TRUE(sut.hasNot(error(feature, "fan stopped")));
    EXPECT_FALSE(sut.hasNot(info(feature, "fan stopped")));
}

TEST(CapturedLog, TellsWhatItHasWhenALineIsMissing) {
    CapturedLog sut;
    logInfo("fan stopped");
    const auto result = sut.has(error(0x20007, HasSubstr("lost")));
    EXPECT_STREQ(result.message(), "no line: error, feature 0x20007, text has substring \"lost\"\nthe log:\n"
                                   "  info 0x20003: fan stopped");
}

TEST(CapturedLog, KnowsTheOrderOfLines) {
    CapturedLog sut;
    for (const char* text : {"one", "two", "three"})
        logInfo(text);
    EXPECT_TRUE(sut.hasInOrder({info(feature, "one"), info(feature, "three")}));
    EXPECT_FALSE(sut.hasInOrder({info(feature, "three"), info(feature, "one")}));
    EXPECT_TRUE(sut.hasAll({info(feature, "three"), info(feature, "one")}));
}

TEST(CapturedLog, WantsALineForEachThatIsNamed) {
    CapturedLog sut;
    logInfo("once");
    EXPECT_TRUE(sut.hasAll({info(feature, "once")}));
    EXPECT_FALSE(sut.hasAll({info(feature, "once"), info(feature, "once")}));
    EXPECT_FALSE(sut.hasInOrder({info(feature, "once"), info(feature, "once")}));
    EXPECT_EQ(sut.count(info(feature, "once")), 1U);
}

TEST(CapturedLog, AwaitsALineOfAnotherThread) {
    CapturedLog sut;
    std::thread other([] { logInfo("late"); });
    EXPECT_TRUE(sut.await(info(feature, "late")));
    other.join();
    EXPECT_FALSE(sut.await(info(feature, "never"), 1));
}

TEST(CapturedLog, ForgetsWhenCleared) {
    CapturedLog sut;
    logWarning("slow");
    sut.clear();
    EXPECT_THAT(sut.lines(), IsEmpty());
    EXPECT_THAT(sut.unexpected(), IsEmpty());
}

TEST(SecondCapturedLog, FailsTheTestAndLeavesTheLinesToTheFirst) {
    CapturedLog sut;
    EXPECT_NONFATAL_FAILURE(CapturedLog(), "one at a time");
    logInfo("fan stopped");
    EXPECT_TRUE(sut.has(info(feature, "fan stopped")));
}

TEST(NewestLines, AreThoseOfTheLogThatLives) {
    EXPECT_EQ(CapturedLog::newest(), "");
    const CapturedLog log;
    logInfo("fan stopped");
    EXPECT_EQ(CapturedLog::newest(), "\nthe log:\n  info 0x20003: fan stopped");
}

void endWithUnexpectedWarning() {
    const CapturedLog log;
    logWarning("slow");
}

TEST(WarningThatNobodyExpected, FailsTheTestWhenTheLogEnds) {
    EXPECT_NONFATAL_FAILURE(endWithUnexpectedWarning(),
                            "a line that nobody expected was logged: warning 0x20003: slow");
}

TEST(WarningThatATestFound, IsExpected) {
    CapturedLog sut;
    logWarning("slow");
    EXPECT_THAT(sut.unexpected(), SizeIs(1));
    EXPECT_TRUE(sut.has(warning(feature, "slow")));
    EXPECT_THAT(sut.unexpected(), IsEmpty());
}

TEST(WarningThatWasAnnounced, IsExpectedHoweverOftenItComes) {
    CapturedLog sut;
    sut.expect(warning(anyFeature, HasSubstr("slow")));
    logWarning("slow");
    logWarning("slow again");
    EXPECT_THAT(sut.unexpected(), IsEmpty());
}

TEST(LevelOfUnexpectedLines, CanBeSet) {
    CapturedLog sut;
    logWarning("slow");
    logInfo("fine");
    sut.failOnUnexpected(errorLevel);
    EXPECT_THAT(sut.unexpected(), IsEmpty());
    sut.failOnUnexpected(infoLevel);
    EXPECT_THAT(sut.unexpected(), SizeIs(2));
    sut.failOnUnexpected(CapturedLog::nothing());
}

} // namespace
