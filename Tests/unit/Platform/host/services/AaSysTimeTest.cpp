#include "InRun.hpp"

#include <pal/AaSysTime.h>

#include <host/pal/CalendarTime.hpp>

#include <ctime>
#include <random>
#include <thread>

namespace mox::testing {
namespace {

using host::ManualClock;

constexpr std::uint64_t nsPerSecond = 1'000'000'000;

SAaTime timeOf(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int ms = 0) {
    const auto u16 = [](int value) { return static_cast<std::uint16_t>(value); };
    return {u16(year), u16(month), u16(day), u16(hour), u16(minute), u16(second), u16(ms)};
}

std::string shown(const SAaTime& time) {
    char text[64];
    std::snprintf(text, sizeof text, "%u-%u-%u %u:%u:%u.%03u", time.year, time.month, time.day, time.hour, time.minute,
                  time.second, time.milliSecond);
    return text;
}

class AaSysTime : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        ManualClock::enable();
        ManualClock::setUtc(1'763'739'062'123'000'000);
        host::Run::current()->store().erase(host::Table::devices, "100e/time/utcOffsetNs");
        setZone("UTC0");
    }
    void TearDown() override {
        host::Run::current()->store().erase(host::Table::devices, "100e/time/utcOffsetNs");
        unsetenv("TZ");
        InRun::TearDown();
    }
    static void setZone(const char* zone) { setenv("TZ", zone, 1); }
};

TEST(CalendarTime, AgreesWithTheCLibrary) {
    std::mt19937_64 random(11);
    const std::int64_t latest = sizeof(time_t) == 4 ? std::int64_t{INT32_MAX} * 1000 : host::latestTimeMs;
    for (int i = 0; i < 20000; ++i) {
        const auto ms = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(latest + 1));
        const auto seconds = static_cast<time_t>(ms / 1000);
        tm parts{};
        gmtime_r(&seconds, &parts);
        const SAaTime time = host::fromMs(ms);
        ASSERT_EQ(shown(time), shown(timeOf(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                                            parts.tm_min, parts.tm_sec, static_cast<int>(ms % 1000))));
        ASSERT_EQ(host::toMs(time), ms);
    }
}

TEST(CalendarTime, BeginsIn1970AndEndsIn2105) {
    EXPECT_EQ(shown(host::fromMs(0)), "1970-1-1 0:0:0.000");
    EXPECT_EQ(shown(host::fromMs(-5)), "1970-1-1 0:0:0.000");
    EXPECT_EQ(shown(host::fromMs(host::latestTimeMs)), "2105-12-31 23:59:59.999");
    EXPECT_EQ(shown(host::fromMs(host::latestTimeMs + 1)), "2105-12-31 23:59:59.999");
}

TEST_F(AaSysTime, SleepsByTheClockInEveryScale) {
    const struct {
        std::uint32_t value;
        EAaSysTimeScale scale;
        std::uint64_t ns;
    } table[] = {{5, EAaSysTimeScale_Tick, 5},
                 {70, EAaSysTimeScale_NanoSec, 70},
                 {3, EAaSysTimeScale_MicroSec, 3000},
                 {100, EAaSysTimeScale_MilliSec, 100'000'000},
                 {7, EAaSysTimeScale_Sec, 7 * nsPerSecond}};
    for (const auto& row : table) {
        std::atomic<bool> awake{false};
        std::thread sleeper([&] {
            EXPECT_EQ(AaSysTimeSleep(row.value, row.scale), 0);
            awake = true;
        });
        ASSERT_TRUE(ManualClock::awaitWaits(1));
        ManualClock::advance(row.ns - 1);
        EXPECT_FALSE(awake);
        ManualClock::advance(1);
        sleeper.join();
    }
}

TEST_F(AaSysTime, DoesNotSleepForNothingOrInAnUnknownScale) {
    EXPECT_EQ(AaSysTimeSleep(0, EAaSysTimeScale_Sec), 0);
    EXPECT_EQ(AaSysTimeSleep(5, static_cast<EAaSysTimeScale>(5)), EAaSysTimeRetVal_InvalidValue);
}

TEST_F(AaSysTime, TellsTheTimeSinceAReadingOfTheTicksRoundedDown) {
    const std::uint64_t start = AaTicks64Get();
    ManualClock::advance(2 * nsPerSecond + 999'999'999);
    const struct {
        EAaSysTimeScale scale;
        std::uint64_t since;
    } table[] = {{EAaSysTimeScale_Sec, 2},
                 {EAaSysTimeScale_MilliSec, 2999},
                 {EAaSysTimeScale_MicroSec, 2999999},
                 {EAaSysTimeScale_NanoSec, 2999999999},
                 {EAaSysTimeScale_Tick, 2999999999},
                 {static_cast<EAaSysTimeScale>(7), 0}};
    for (const auto& row : table)
        EXPECT_EQ(AaSysTime64SinceGet(start, row.scale), row.since) << row.scale;
    EXPECT_EQ(AaTicks64Get() - start, 2999999999U);
    EXPECT_EQ(AaSysTime64SinceGet(AaTicks64Get() + 1, EAaSysTimeScale_NanoSec), 0U);
}

TEST_F(AaSysTime, ShowsUtc) {
    SAaTime time{};
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(shown(time), "2025-11-21 15:31:2.123");
    EXPECT_EQ(AaUtcTimeGet(nullptr), EAaSysTimeRetVal_InvalidValue);
    EXPECT_EQ(AaLocalTimeGet(nullptr), EAaSysTimeRetVal_InvalidValue);
}

TEST_F(AaSysTime, SetsTheNodesTimeAndNotTheWorkstations) {
    const std::uint64_t ticks = AaTicks64Get();
    const std::uint64_t workstation = host::utcNs();
    const SAaTime wanted = timeOf(2040, 2, 29, 23, 59, 59, 500);
    ASSERT_EQ(AaUtcTimeSet(&wanted), 0);
    SAaTime time{};
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(shown(time), shown(wanted));
    ManualClock::advanceMs(500);
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(shown(time), "2040-3-1 0:0:0.000");
    EXPECT_EQ(host::utcNs(), workstation + 500'000'000);
    EXPECT_EQ(AaTicks64Get(), ticks + 500'000'000);
    EXPECT_TRUE(host::Run::current()->store().get(host::Table::devices, "100e/time/utcOffsetNs").has_value());
}

TEST_F(AaSysTime, RefusesTimesThatDoNotExist) {
    const SAaTime table[] = {timeOf(1969, 12, 31),
                             timeOf(2106, 1, 1),
                             timeOf(2025, 0, 1),
                             timeOf(2025, 13, 1),
                             timeOf(2025, 1, 0),
                             timeOf(2025, 1, 32),
                             timeOf(2025, 2, 29),
                             timeOf(2100, 2, 29),
                             timeOf(2025, 4, 31),
                             timeOf(2025, 1, 1, 24),
                             timeOf(2025, 1, 1, 0, 60),
                             timeOf(2025, 1, 1, 0, 0, 61),
                             timeOf(2025, 1, 1, 0, 0, 0, 1000)};
    for (const SAaTime& time : table)
        EXPECT_EQ(AaUtcTimeSet(&time), EAaSysTimeRetVal_InvalidValue) << shown(time);
    EXPECT_EQ(AaUtcTimeSet(nullptr), EAaSysTimeRetVal_InvalidValue);
    SAaTime now{};
    ASSERT_EQ(AaUtcTimeGet(&now), 0);
    EXPECT_EQ(shown(now), "2025-11-21 15:31:2.123");
}

TEST_F(AaSysTime, TakesALeapSecondForTheNextMinute) {
    const SAaTime leap = timeOf(2016, 12, 31, 23, 59, 60);
    ASSERT_EQ(AaUtcTimeSet(&leap), 0);
    SAaTime now{};
    ASSERT_EQ(AaUtcTimeGet(&now), 0);
    EXPECT_EQ(shown(now), "2017-1-1 0:0:0.000");
}

TEST_F(AaSysTime, TellsTheZonesOffsetAndLocalTime) {
    const struct {
        const char* zone;
        int offset;
        const char* local;
    } table[] = {{"UTC0", 0, "2025-11-21 15:31:2.123"},       {"AAA-2", 120, "2025-11-21 17:31:2.123"},
                 {"BBB+3:30", -210, "2025-11-21 12:1:2.123"}, {"CCC-14", 840, "2025-11-22 5:31:2.123"},
                 {"DDD+12", -720, "2025-11-21 3:31:2.123"},   {"EEE+15", -720, "2025-11-21 3:31:2.123"}};
    for (const auto& row : table) {
        setZone(row.zone);
        EXPECT_EQ(AaSysTimeTimezoneGetOffset(), row.offset) << row.zone;
        SAaTime time{};
        ASSERT_EQ(AaLocalTimeGet(&time), 0);
        EXPECT_EQ(shown(time), row.local) << row.zone;
    }
}

TEST_F(AaSysTime, CountsSummerTimeByTheNodesDate) {
    setZone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(AaSysTimeTimezoneGetOffset(), 60);
    const SAaTime july = timeOf(2026, 7, 1);
    ASSERT_EQ(AaUtcTimeSet(&july), 0);
    EXPECT_EQ(AaSysTimeTimezoneGetOffset(), 120);
}

} // namespace
} // namespace mox::testing
