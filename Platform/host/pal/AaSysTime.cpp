#include "AaSysTime.hpp"

#include "../run/Clock.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../run/RunTable.hpp"
#include "CalendarTime.hpp"

#include <time.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <optional>
#include <string>

namespace mox::host {

namespace {

constexpr std::int64_t nsPerMs = 1'000'000;
constexpr int leastOffsetMin = -720;
constexpr int greatestOffsetMin = 840;

/// A tick is a nanosecond.
std::optional<std::uint64_t> nsPer(EAaSysTimeScale scale) {
    switch (scale) {
    case EAaSysTimeScale_Tick:
    case EAaSysTimeScale_NanoSec:
        return 1;
    case EAaSysTimeScale_MicroSec:
        return 1'000;
    case EAaSysTimeScale_MilliSec:
        return 1'000'000;
    case EAaSysTimeScale_Sec:
        return 1'000'000'000;
    }
    return std::nullopt;
}

// The workstation's clock is not the board's to set, so a node remembers how far it is ahead.
std::string offsetKey() {
    const Run* run = Run::current();
    return hex4(run ? run->node() : std::uint16_t{0}) + "/time/utcOffsetNs";
}

std::int64_t nodeOffsetNs() {
    const auto stored = RunTable(Table::devices).get(offsetKey());
    std::int64_t offset = 0;
    if (stored && stored->size() == sizeof offset)
        std::memcpy(&offset, stored->data(), sizeof offset);
    return offset;
}

std::int64_t nodeUtcMs() {
    return (static_cast<std::int64_t>(utcNs()) + nodeOffsetNs()) / nsPerMs;
}

std::int64_t zoneOffsetMin(std::int64_t utcMs) {
    const NoCancellation whileTheZoneIsRead;
    const std::int64_t latest = sizeof(time_t) == 4 ? INT32_MAX : latestTimeMs / 1000;
    const auto seconds = static_cast<time_t>(std::clamp(utcMs / 1000, std::int64_t{0}, latest));
    tm parts{};
    tzset();
    localtime_r(&seconds, &parts);
    return std::clamp<std::int64_t>(parts.tm_gmtoff / 60, leastOffsetMin, greatestOffsetMin);
}

/// Reads the node's time and hands out what `shown` makes of it.
template <class Shown>
int readTime(SAaTime* time, Shown shown) {
    if (!time)
        return EAaSysTimeRetVal_InvalidValue;
    try {
        *time = fromMs(shown(nodeUtcMs()));
        return EAaSysTimeRetVal_NoError;
    } catch (const std::exception& failure) {
        logPlatform(4, "the node's time cannot be read: %s", failure.what());
        return EAaSysTimeRetVal_Error;
    }
}

} // namespace

int AaSysTimeSleep(std::uint32_t value, EAaSysTimeScale scale) {
    const auto unit = nsPer(scale);
    if (!unit)
        return EAaSysTimeRetVal_InvalidValue;
    if (value != 0)
        sleepFor(value * *unit);
    return EAaSysTimeRetVal_NoError;
}

std::uint64_t AaTicks64Get() {
    return monotonicNs();
}

std::uint64_t AaSysTime64SinceGet(std::uint64_t startTicks, EAaSysTimeScale scale) {
    const auto unit = nsPer(scale);
    const std::uint64_t now = monotonicNs();
    return unit && now > startTicks ? (now - startTicks) / *unit : 0;
}

std::int16_t AaSysTimeTimezoneGetOffset() {
    try {
        return static_cast<std::int16_t>(zoneOffsetMin(nodeUtcMs()));
    } catch (const std::exception& failure) {
        logPlatform(4, "the node's time cannot be read: %s", failure.what());
        return static_cast<std::int16_t>(zoneOffsetMin(static_cast<std::int64_t>(utcNs()) / nsPerMs));
    }
}

int AaUtcTimeGet(SAaTime* time) {
    return readTime(time, [](std::int64_t utcMs) { return utcMs; });
}

int AaLocalTimeGet(SAaTime* time) {
    return readTime(time, [](std::int64_t utcMs) { return utcMs + zoneOffsetMin(utcMs) * 60'000; });
}

int AaUtcTimeSet(const SAaTime* time) {
    if (!time || !isTime(*time))
        return EAaSysTimeRetVal_InvalidValue;
    const std::int64_t offset = toMs(*time) * nsPerMs - static_cast<std::int64_t>(utcNs());
    try {
        const std::string_view bytes(reinterpret_cast<const char*>(&offset), sizeof offset);
        RunTable(Table::devices).put(offsetKey(), bytes);
        return EAaSysTimeRetVal_NoError;
    } catch (const std::exception& failure) {
        logPlatform(4, "the node's time cannot be set: %s", failure.what());
        return EAaSysTimeRetVal_PermissionDenied;
    }
}

} // namespace mox::host
