#pragma once
/// Calendar arithmetic on 64 bits: the C library's stops in 2038 where its time type has 32 bits.
#include <pal/AaSysTime.h>

#include <cstdint>

namespace mox::host {

/// Latest time that SAaTime shows: the end of 2105, in milliseconds since 1970.
constexpr std::int64_t latestTimeMs = 4291747199999;

/// Whether a date and time exist and lie in 1970 to 2105.
bool isTime(const SAaTime& time);
/// Milliseconds since 1970 of a time that exists.
std::int64_t toMs(const SAaTime& time);
/// @param ms  since 1970; kept within 0 to latestTimeMs
SAaTime fromMs(std::int64_t ms);

} // namespace mox::host
