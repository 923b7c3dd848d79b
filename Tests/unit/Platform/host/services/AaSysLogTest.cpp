#include "InRun.hpp"

#include <pal/AaSysLog.h>

#include <gmock/gmock.h>
#include <host/pal/Rad.hpp>

#include <cerrno>
#include <thread>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A feature of the test's own: buffers stay for the life of the process.
unsigned int freshFeature() {
    static unsigned int last = 0x20200;
    return ++last;
}

constexpr auto debug = EAaSysLogSeverityLevel_Debug;
constexpr auto info = EAaSysLogSeverityLevel_Info;
constexpr auto warning = EAaSysLogSeverityLevel_Warning;
constexpr auto error = EAaSysLogSeverityLevel_Error;

class AaSysLog : public InRun {
protected:
    void TearDown() override {
        for (const unsigned int feature : m_flags)
            AaConfigRadSetValue(feature, 0);
        InRun::TearDown();
    }
    void raiseFlag(unsigned int feature) {
        ASSERT_EQ(AaConfigRadSetValue(feature, 1), 0);
        m_flags.push_back(feature);
    }
    std::string dumped(unsigned int feature, unsigned int maxBytes = 0) {
        const std::string path = run() / "dump";
        EXPECT_EQ(AaSysLogDumpRingBufferToFile(feature, path.c_str(), maxBytes), 0);
        return contentOf(path);
    }

private:
    std::vector<unsigned int> m_flags;
};

TEST_F(AaSysLog, PassesAllSeveritiesButDebug) {
    const unsigned int feature = freshFeature();
    for (const auto level : {debug, info, warning, error})
        EXPECT_EQ(AaSysLogPrintE(level, feature, "level %d", level), 0);
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{2, feature, "level 2"}, LoggedLine{3, feature, "level 3"},
                                     LoggedLine{4, feature, "level 4"}));
}

TEST_F(AaSysLog, PassesDebugLinesWhileTheFeaturesFlagIsSet) {
    const unsigned int feature = freshFeature();
    AaSysLogPrintE(debug, feature, "before");
    raiseFlag(feature);
    AaSysLogPrintE(debug, feature, "while");
    AaSysLogPrintE(debug, freshFeature(), "another feature");
    AaConfigRadSetValue(feature, 0);
    AaSysLogPrintE(debug, feature, "after");
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{1, feature, "while"}));
}

TEST_F(AaSysLog, DoesNotFormatDebugLinesThatNobodyWants) {
    // Whoever formats the text follows a pointer that leads nowhere.
    const auto* nowhere = reinterpret_cast<const char*>(std::uintptr_t{16});
    EXPECT_EQ(AaSysLogPrintE(debug, freshFeature(), "%s", nowhere), 0);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(AaSysLog, GivesALineWithoutFeatureTheFeatureZero) {
    EXPECT_EQ(AaSysLogPrint(warning, "%s %u", "plain", 7U), 0);
    AaSysLogPrint(debug, "no parameter, no debug line");
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{3, 0, "plain 7"}));
}

TEST_F(AaSysLog, RefusesUnknownSeveritiesAndANullFormat) {
    const char* none = nullptr;
    EXPECT_EQ(AaSysLogPrintE(static_cast<EAaSysLogSeverityLevel>(0), 0, "x"), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogPrintE(static_cast<EAaSysLogSeverityLevel>(5), 0, "x"), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogPrint(error, none, 0), EAaSysLogRetVal_InvalidValue);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(AaSysLog, CutsATextAt1023Bytes) {
    AaSysLogPrintE(error, 1, "%s", std::string(1023, 'x').c_str());
    AaSysLogPrintE(error, 1, "%s", std::string(5000, 'y').c_str());
    EXPECT_THAT(lines(),
                ElementsAre(LoggedLine{4, 1, std::string(1023, 'x')}, LoggedLine{4, 1, std::string(1023, 'y')}));
}

TEST_F(AaSysLog, DropsOneLineFeedAtTheEnd) {
    AaSysLogPrintE(info, 1, "one\n");
    AaSysLogPrintE(info, 1, "two\n\n");
    AaSysLogPrintE(info, 1, "\n");
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{2, 1, "one"}, LoggedLine{2, 1, "two\n"}, LoggedLine{2, 1, ""}));
}

TEST_F(AaSysLog, LeavesErrnoAlone) {
    errno = ENOTTY;
    AaSysLogPrintE(error, 1, "line");
    EXPECT_EQ(errno, ENOTTY);
}

TEST_F(AaSysLog, DropsLinesThatACaptureLogs) {
    int calls = 0;
    host::log::setCapture([&](int, unsigned int, std::string_view) {
        ++calls;
        AaSysLogPrintE(error, 1, "again");
    });
    AaSysLogPrintE(error, 1, "once");
    EXPECT_EQ(calls, 1);
}

TEST_F(AaSysLog, RefusesDomainsThatCannotBe) {
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(0, "D", 10, 10), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(256, "D", 10, 10), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(9, nullptr, 10, 10), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(9, "D", 0, 10), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(9, "D", 10, 0), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogSetLogDomain(9), EAaSysLogRetVal_NotFound);
}

TEST_F(AaSysLog, KeepsFirstAndNewestLinesOfTheDomain) {
    ASSERT_EQ(AaSysLogRegisterDomainBuffer(21, "HWAPI", 300, 300), 0);
    EXPECT_EQ(AaSysLogRegisterDomainBuffer(21, "HWAPI", 300, 300), EAaSysLogRetVal_AlreadyRegistered);
    ASSERT_EQ(AaSysLogSetLogDomain(21), 0);
    for (int i = 0; i < 20; ++i)
        AaSysLogPrintE(info, 0x20001, "line %d", i);
    std::string startup;
    std::string runtime;
    host::log::forEachDomain([&](host::log::Domain& domain) {
        if (domain.id == 21) {
            startup = domain.startup.lines();
            runtime = domain.runtime.lines();
        }
    });
    EXPECT_THAT(startup, HasSubstr("HWAPI: line 0\n"));
    EXPECT_EQ(startup.find("line 19"), std::string::npos);
    EXPECT_THAT(runtime, HasSubstr("HWAPI: line 19\n"));
    EXPECT_EQ(runtime.find("line 0\n"), std::string::npos);
}

TEST_F(AaSysLog, KeepsDebugLinesOfAFeatureWithARingBufferThatNobodyPrints) {
    const unsigned int feature = freshFeature();
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 1000, 0, 0), 0);
    AaSysLogPrintE(debug, feature, "quiet");
    AaSysLogPrintE(info, feature, "loud");
    AaSysLogPrintE(info, freshFeature(), "another");
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{2, feature, "loud"}, LoggedLine{2, feature + 1, "another"}));
    const std::string content = dumped(feature);
    EXPECT_THAT(content, HasSubstr(" DBG 100e "));
    EXPECT_THAT(content, HasSubstr(": quiet\n"));
    EXPECT_THAT(content, HasSubstr(": loud\n"));
    EXPECT_EQ(content.find("another"), std::string::npos);
}

TEST_F(AaSysLog, KeepsOnlyTheSeveritiesARingBufferAsksFor) {
    const unsigned int feature = freshFeature();
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 1000, 0, 3), 0);
    for (const auto level : {debug, info, warning, error})
        AaSysLogPrintE(level, feature, "<%d>", level);
    const std::string content = dumped(feature);
    EXPECT_EQ(content.find("<1>"), std::string::npos);
    EXPECT_EQ(content.find("<2>"), std::string::npos);
    EXPECT_THAT(content, HasSubstr("<3>"));
    EXPECT_THAT(content, HasSubstr("<4>"));
}

TEST_F(AaSysLog, CutsLinesOfARingBufferAtItsLength) {
    const unsigned int feature = freshFeature();
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 1000, 20, 0), 0);
    AaSysLogPrintE(error, feature, "a text that is not kept");
    EXPECT_EQ(dumped(feature).size(), 21U);
}

TEST_F(AaSysLog, DumpsTheNewestLinesWithinTheLimit) {
    const unsigned int feature = freshFeature();
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 4000, 0, 0), 0);
    for (int i = 0; i < 10; ++i)
        AaSysLogPrintE(info, feature, "line %d", i);
    const std::string all = dumped(feature);
    const auto lineBytes = static_cast<unsigned int>(all.size() / 10);
    const std::string two = dumped(feature, 2 * lineBytes + 5);
    EXPECT_EQ(two, all.substr(8 * lineBytes));
    EXPECT_EQ(dumped(feature), all);
}

TEST_F(AaSysLog, SaysWhyARingBufferIsNotRegistered) {
    const unsigned int feature = freshFeature();
    EXPECT_EQ(AaSysLogRegisterRingBuffer(feature, 0, 0, 0), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterRingBuffer(feature, 10, 0, 5), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogRegisterRingBuffer(feature, 10, 0, 4), 0);
    EXPECT_EQ(AaSysLogRegisterRingBuffer(feature, 10, 0, 4), EAaSysLogRetVal_AlreadyRegistered);
}

TEST_F(AaSysLog, SaysWhyARingBufferIsNotDumped) {
    const unsigned int feature = freshFeature();
    EXPECT_EQ(AaSysLogDumpRingBufferToFile(feature, (run() / "none").c_str(), 0), EAaSysLogRetVal_NotFound);
    EXPECT_FALSE(std::filesystem::exists(run() / "none"));
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 1000, 0, 0), 0);
    AaSysLogPrintE(info, feature, "line");
    EXPECT_EQ(AaSysLogDumpRingBufferToFile(feature, nullptr, 0), EAaSysLogRetVal_InvalidValue);
    EXPECT_EQ(AaSysLogDumpRingBufferToFile(feature, (run() / "no/such/dir").c_str(), 0), EAaSysLogRetVal_FileError);
    EXPECT_EQ(AaSysLogDumpRingBufferToFile(feature, "/dev/full", 0), EAaSysLogRetVal_FileError);
}

TEST_F(AaSysLog, KeepsLinesOfManyThreadsWhole) {
    const unsigned int feature = freshFeature();
    ASSERT_EQ(AaSysLogRegisterRingBuffer(feature, 1U << 20, 0, 0), 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([=] {
            for (int i = 0; i < 500; ++i)
                AaSysLogPrintE(debug, feature, "thread %d line %d end", t, i);
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::string content = dumped(feature);
    std::size_t count = 0;
    for (std::size_t at = content.find('\n'); at != std::string::npos; at = content.find('\n', at + 1)) {
        ++count;
        EXPECT_EQ(content.substr(at - 4, 4), " end");
    }
    EXPECT_EQ(count, 2000U);
}

} // namespace
} // namespace mox::testing
