#include "host/ddal/Unsupported.hpp"

#include "host/ddal/Ddal.hpp"
#include "host/run/PlatformLog.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Line = std::pair<int, std::string>;

std::mutex linesMutex;
std::vector<Line> lines;

std::vector<Line> takeLines() {
    const std::lock_guard lock(linesMutex);
    return std::exchange(lines, {});
}

} // namespace

// Stands in for the platform's log: this test links the sources under test without it.
void mox::host::logPlatform(int severity, const char* format, ...) {
    char text[200];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    const std::lock_guard lock(linesMutex);
    lines.emplace_back(severity, text);
}

namespace {

using mox::host::reportUnsupported;
using mox::host::unsupportedCalls;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(UnsupportedFunction, IsLoggedAsAWarningOnItsFirstCallOnly) {
    reportUnsupported("first");
    EXPECT_THAT(takeLines(), ElementsAre(Line(3, "first: not available on this workstation")));
    reportUnsupported("first");
    EXPECT_THAT(takeLines(), IsEmpty());
    EXPECT_EQ(unsupportedCalls("first"), 2u);
}

TEST(UnsupportedFunction, IsLoggedApartFromOthers) {
    reportUnsupported("one");
    reportUnsupported("other");
    EXPECT_THAT(takeLines(), ElementsAre(Line(3, "one: not available on this workstation"),
                                         Line(3, "other: not available on this workstation")));
}

TEST(UnsupportedFunction, HasNoCallsBeforeItsFirst) {
    EXPECT_EQ(unsupportedCalls("never called"), 0u);
}

TEST(UnsupportedFunction, IsLoggedOnceWhenManyThreadsCallIt) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int call = 0; call < 250; ++call)
                reportUnsupported("shared");
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(unsupportedCalls("shared"), 1000u);
}

TEST(DeviceFunctionWithoutDevice, AnswersThatItIsNotSupportedAndIsReportedByItsName) {
    EXPECT_EQ(mox::host::ddal_sfp_ctrl_set(0, DDAL_SFP_CTRL_POWER, true), DDAL_NOT_SUPPORTED);
    EXPECT_THAT(takeLines(), ElementsAre(Line(3, "ddal_sfp_ctrl_set: not available on this workstation")));
    EXPECT_EQ(unsupportedCalls("ddal_sfp_ctrl_set"), 1u);
}

} // namespace
