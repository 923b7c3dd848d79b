#include "CalendarTime.hpp"

#include <algorithm>

namespace mox::host {

namespace {

constexpr std::int64_t msPerDay = 86'400'000;
constexpr int firstYear = 1970;
constexpr int lastYear = 2105;

constexpr bool isLeap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

constexpr int daysOf(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

constexpr int daysOf(int year) {
    return isLeap(year) ? 366 : 365;
}

} // namespace

bool isTime(const SAaTime& time) {
    return time.year >= firstYear && time.year <= lastYear && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
           time.day <= daysOf(time.year, time.month) && time.hour <= 23 && time.minute <= 59 && time.second <= 60 &&
           time.milliSecond <= 999;
}

std::int64_t toMs(const SAaTime& time) {
    std::int64_t days = time.day - 1;
    for (int year = firstYear; year < time.year; ++year)
        days += daysOf(year);
    for (int month = 1; month < time.month; ++month)
        days += daysOf(time.year, month);
    const std::int64_t seconds = (time.hour * 60 + time.minute) * 60 + time.second;
    return days * msPerDay + seconds * 1000 + time.milliSecond;
}

SAaTime fromMs(std::int64_t ms) {
    ms = std::clamp(ms, std::int64_t{0}, latestTimeMs);
    auto days = static_cast<int>(ms / msPerDay);
    const auto rest = static_cast<int>(ms % msPerDay);
    int year = firstYear;
    for (; days >= daysOf(year); ++year)
        days -= daysOf(year);
    int month = 1;
    for (; days >= daysOf(year, month); ++month)
        days -= daysOf(year, month);
    SAaTime time{};
    time.year = static_cast<std::uint16_t>(year);
    time.month = static_cast<std::uint16_t>(month);
    time.day = static_cast<std::uint16_t>(days + 1);
    time.hour = static_cast<std::uint16_t>(rest / 3'600'000);
    time.minute = static_cast<std::uint16_t>(rest / 60'000 % 60);
    time.second = static_cast<std::uint16_t>(rest / 1000 % 60);
    time.milliSecond = static_cast<std::uint16_t>(rest % 1000);
    return time;
}

} // namespace mox::host
