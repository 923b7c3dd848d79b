#include "support/LogLines.hpp"

#include <mox/ddal/CpriAxc.hpp>
#include <mox/ddal/Rp3Str.hpp>
#include <mox/pal/SysLog.hpp>

#include <gtest/gtest.h>

#include <cstdarg>
#include <memory>
#include <thread>
#include <vector>

namespace ps::hwapi::common {
namespace {

using mox::testing::LogLine;
using mox::testing::LogLines;

/// Runs an action on several threads and returns what each got.
template <typename Action>
auto onThreads(Action action) {
    std::vector<decltype(action())> got(8);
    std::vector<std::thread> threads;
    threads.reserve(got.size());
    for (auto& own : got) {
        threads.emplace_back([&own, action] { own = action(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return got;
}

int printThrough(const pal::AbstractSysLog* sut, EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = sut->vPrintE(level, 0x20007, format, args);
    va_end(args);
    return result;
}

TEST(SysLog, IsOneObjectForAll) {
    const pal::AbstractSysLog* first = &pal::AbstractSysLog::instance();
    EXPECT_NE(dynamic_cast<const pal::SysLog*>(first), nullptr);
    for (const pal::AbstractSysLog* got : onThreads([] { return &pal::AbstractSysLog::instance(); })) {
        EXPECT_EQ(got, first);
    }
}

TEST(SysLog, HandsLinesOnToThePlatform) {
    LogLines lines;
    EXPECT_EQ(printThrough(&pal::AbstractSysLog::instance(), EAaSysLogSeverityLevel_Warning, "%d and %s", 1, "two"), 0);
    EXPECT_THAT(lines.taken(), ::testing::ElementsAre(LogLine{3, 0x20007, "1 and two"}));
    EXPECT_THAT(lines.formats(), ::testing::ElementsAre("%d and %s"));
}

TEST(SysLog, HandsThePlatformsResultBack) {
    LogLines lines;
    lines.failWith(2);
    EXPECT_EQ(printThrough(&pal::AbstractSysLog::instance(), EAaSysLogSeverityLevel_Debug, "text"), 2);
}

TEST(CpriAxc, IsOneObjectForAllThatLivesOnWithoutHolders) {
    const ddal::CpriAxc* first = ddal::CpriAxc::createInstance().get();
    for (const std::shared_ptr<ddal::CpriAxc>& got : onThreads(&ddal::CpriAxc::createInstance)) {
        EXPECT_EQ(got.get(), first);
    }
}

TEST(CpriAxc, IsWhatTheInterfaceHandsOut) {
    const std::shared_ptr<ddal::AbstractCpriAxc> sut = ddal::AbstractCpriAxc::instance();
    EXPECT_EQ(sut, ddal::CpriAxc::createInstance());
    EXPECT_EQ(sut.use_count(), 2) << "the shared one and this one";
}

TEST(Rp3Str, IsOneObjectForAllThatLivesOnWithoutHolders) {
    const ddal::Rp3Str* first = ddal::Rp3Str::createInstance().get();
    for (const std::shared_ptr<ddal::Rp3Str>& got : onThreads(&ddal::Rp3Str::createInstance)) {
        EXPECT_EQ(got.get(), first);
    }
}

TEST(Rp3Str, IsWhatTheInterfaceHandsOut) {
    const std::shared_ptr<ddal::AbstractRp3Str> sut = ddal::AbstractRp3Str::instance();
    EXPECT_EQ(sut, ddal::Rp3Str::createInstance());
    EXPECT_EQ(sut.use_count(), 2) << "the shared one and this one";
}

} // namespace
} // namespace ps::hwapi::common
