#include "support/LogLines.hpp"

#include <mox/Logger.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace ps::hwapi::common {
namespace {

using mox::testing::LogLine;
using mox::testing::LogLines;
using ::testing::ElementsAre;

constexpr unsigned int featureId = 0x20007;

/// Logs without the compiler's look at the format, which does not know the prefix.
void logUnchecked(const Logger& sut, EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    sut.logMessage(level, format, args);
    va_end(args);
}

TEST(LoggerWithoutPrefix, LogsTheBareFormat) {
    LogLines lines;
    Logger sut(featureId);
    sut.logInfo("value %d of %s", 7, "x");
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{2, featureId, "value 7 of x"}));
    EXPECT_THAT(lines.formats(), ElementsAre("value %d of %s"));
}

TEST(LoggerWithoutPrefix, IsWhatOnlyEmptyPiecesGive) {
    LogLines lines;
    Logger sut(featureId, "", std::string());
    sut.logInfo("bare");
    EXPECT_THAT(lines.formats(), ElementsAre("bare"));
}

TEST(LoggerWithPrefix, PutsEachPieceInBracketsAndOneBlankBehind) {
    LogLines lines;
    Logger sut(featureId, "Led", std::string("Fan"), 3);
    sut.logInfo("text");
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{2, featureId, "[Led][Fan][3] text"}));
}

TEST(LoggerWithPrefix, LeavesEmptyPiecesOut) {
    LogLines lines;
    Logger(featureId, "Led", "").logInfo("text");
    Logger(featureId, "", "Led", "", "Fan").logInfo("text");
    EXPECT_THAT(lines.texts(), ElementsAre("[Led] text", "[Led][Fan] text"));
}

TEST(LoggerWithPrefix, KeepsAPieceThatIsNotEmptyAsItIs) {
    LogLines lines;
    Logger(featureId, " ", "[x]").logInfo("text");
    EXPECT_THAT(lines.texts(), ElementsAre("[ ][[x]] text"));
}

TEST(LoggerWithPrefix, MakesThePrefixAPartOfTheFormat) {
    LogLines lines;
    const Logger sut(featureId, "Led%d");
    logUnchecked(sut, EAaSysLogSeverityLevel_Info, "on %d", 4, 5);
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{2, featureId, "[Led4] on 5"}));
    EXPECT_THAT(lines.formats(), ElementsAre("[Led%d] on %d"));
}

TEST(LoggerWithPrefix, ShowsADoubledPerCentSignOnce) {
    LogLines lines;
    Logger(featureId, "50%%").logInfo("text");
    EXPECT_THAT(lines.texts(), ElementsAre("[50%] text"));
}

TEST(LoggerWithPrefix, LogsAnEmptyFormat) {
    LogLines lines;
    Logger(featureId, "Led").logInfo("%s", "");
    EXPECT_THAT(lines.texts(), ElementsAre("[Led] "));
}

TEST(LoggerPrefix, IsReplacedBySetPrefix) {
    LogLines lines;
    Logger sut(featureId, "Led");
    sut.setPrefix("Fan", 2);
    sut.logInfo("text");
    sut.setPrefix("", "");
    sut.logInfo("text");
    sut.setPrefix("Led");
    sut.setPrefix();
    sut.logInfo("text");
    EXPECT_THAT(lines.texts(), ElementsAre("[Fan][2] text", "text", "text"));
}

TEST(LoggerPrefix, IsReplacedBySetPrefixFromPieces) {
    LogLines lines;
    Logger sut(featureId, "Led");
    sut.setPrefixFromPieces({"", "a", "", "b", ""});
    sut.logInfo("text");
    sut.setPrefixFromPieces({"", ""});
    sut.logInfo("text");
    sut.setPrefixFromPieces({"c"});
    sut.setPrefixFromPieces({});
    sut.logInfo("text");
    EXPECT_THAT(lines.texts(), ElementsAre("[a][b] text", "text", "text"));
}

TEST(LoggerCopy, LogsWithTheSamePrefixAndFeature) {
    LogLines lines;
    Logger original(featureId, "Led");
    const Logger sut(original);
    original.setPrefix("Fan");
    sut.logInfo("text");
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{2, featureId, "[Led] text"}));
}

class LoggerFormatLength : public ::testing::TestWithParam<std::size_t> {};

TEST_P(LoggerFormatLength, ReachesTheLogWhole) {
    LogLines lines;
    const Logger sut(featureId, "Led");
    const std::string filler(GetParam(), 'f');
    sut.logInfo((filler + "%d").c_str(), 7); // NOLINT: the length is what is tested
    EXPECT_THAT(lines.formats(), ElementsAre("[Led] " + filler + "%d"));
}

INSTANTIATE_TEST_SUITE_P(AroundTheBufferOnTheStack, LoggerFormatLength,
                         ::testing::Values(0, 1, 100, 502, 503, 504, 505, 506, 511, 512, 513, 1000, 5000));

struct LevelRow {
    const char* operation;
    void (*log)(const Logger& sut);
    int level;
};

void PrintTo(const LevelRow& row, std::ostream* out) {
    *out << row.operation << " at " << row.level;
}

class LoggerOperation : public ::testing::TestWithParam<LevelRow> {};

TEST_P(LoggerOperation, LogsAtItsLevelWithFeaturePrefixAndArguments) {
    LogLines lines;
    GetParam().log(Logger(featureId, "Led"));
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{GetParam().level, featureId, "[Led] 1 two 3.5"}));
}

#define LEVEL_ROW(operation, level)                                                                                    \
    LevelRow {                                                                                                         \
#operation, [](const Logger& sut) { sut.operation("%d %s %.1f", 1, "two", 3.5); }, level                       \
    }
#define RAISE_ROW(operation, condition, level)                                                                         \
    LevelRow {                                                                                                         \
#operation " " #condition,                                                                                     \
            [](const Logger& sut) { sut.operation(condition, "%d %s %.1f", 1, "two", 3.5); }, level                    \
    }

INSTANTIATE_TEST_SUITE_P(Plain, LoggerOperation,
                         ::testing::Values(LEVEL_ROW(logError, 4), LEVEL_ROW(logWarning, 3), LEVEL_ROW(logInfo, 2),
                                           LEVEL_ROW(logDebug, 1)));

INSTANTIATE_TEST_SUITE_P(
    Raising, LoggerOperation,
    ::testing::Values(RAISE_ROW(logRaiseInfoToErrorIfTrue, true, 4), RAISE_ROW(logRaiseInfoToErrorIfTrue, false, 2),
                      RAISE_ROW(logRaiseDebugToErrorIfTrue, true, 4), RAISE_ROW(logRaiseDebugToErrorIfTrue, false, 1),
                      RAISE_ROW(logRaiseInfoToWarningIfTrue, true, 3), RAISE_ROW(logRaiseInfoToWarningIfTrue, false, 2),
                      RAISE_ROW(logRaiseDebugToWarningIfTrue, true, 3),
                      RAISE_ROW(logRaiseDebugToWarningIfTrue, false, 1),
                      RAISE_ROW(logRaiseWarningToErrorIfTrue, true, 4),
                      RAISE_ROW(logRaiseWarningToErrorIfTrue, false, 3), RAISE_ROW(logRaiseDebugToInfoIfTrue, true, 2),
                      RAISE_ROW(logRaiseDebugToInfoIfTrue, false, 1)));

#undef LEVEL_ROW
#undef RAISE_ROW

TEST(LoggerWithAFailingLog, DoesNotShowIt) {
    LogLines lines;
    lines.failWith(2);
    const Logger sut(featureId, "Led");
    EXPECT_NO_THROW(sut.logError("text"));
    EXPECT_EQ(lines.taken().size(), 1U);
}

TEST(LoggerSharedByThreads, LogsEachLineWhole) {
    LogLines lines;
    const Logger sut(featureId, "Led");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&sut] {
            for (int line = 0; line < 50; ++line) {
                sut.logInfo("%s", "text");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(lines.taken(),
                ::testing::AllOf(::testing::SizeIs(200), ::testing::Each(LogLine{2, featureId, "[Led] text"})));
}

/// An object that lives until the process exits and then logs.
struct Farewell {
    explicit Farewell(const LogLines& caughtLines) : lines(caughtLines) {}
    Farewell(const Farewell&) = delete;
    Farewell& operator=(const Farewell&) = delete;
    ~Farewell() {
        log.logInfo("farewell");
        std::fprintf(stderr, "%s\n", lines.texts().back().c_str());
    }

    const LogLines& lines;
    Logger log{featureId, "Led"};
};

TEST(LoggerOfAGlobalObject, StillLogsWhileTheProcessExits) {
    // In a process of its own, in which no other test has made the log.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static const LogLines lines;
            static const Farewell sut(lines);
            sut.log.logInfo("the log's first line comes after the logger");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "\\[Led\\] farewell");
}

TEST(LoggerMessage, TakesAnArgumentList) {
    LogLines lines;
    const Logger sut(featureId, "Led");
    logUnchecked(sut, EAaSysLogSeverityLevel_Warning, "%d and %s", 1, "two");
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{3, featureId, "[Led] 1 and two"}));
}

} // namespace
} // namespace ps::hwapi::common
