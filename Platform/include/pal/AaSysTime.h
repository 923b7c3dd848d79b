#pragma once
/// Time: sleeping, a monotonic tick counter, and the calendar time of the node.
///
/// Unless a function says otherwise: any thread, at any time, without blocking.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; the functions that return one of them return it as int.
typedef enum EAaSysTimeRetVal {
    EAaSysTimeRetVal_NoError = 0,
    EAaSysTimeRetVal_InvalidValue = 1,     ///< null, unknown scale, or a date or time that does not exist
    EAaSysTimeRetVal_PermissionDenied = 2, ///< the process may not set the time
    EAaSysTimeRetVal_Error = 3             ///< the clock cannot be read
} EAaSysTimeRetVal;

/// Units of durations.
typedef enum EAaSysTimeScale {
    EAaSysTimeScale_Tick = 0, ///< what AaTicks64Get counts
    EAaSysTimeScale_NanoSec = 1,
    EAaSysTimeScale_MicroSec = 2,
    EAaSysTimeScale_MilliSec = 3,
    EAaSysTimeScale_Sec = 4
} EAaSysTimeScale;

/// How urgent a call-back timer is (AaSysTimercCreate).
typedef enum EAaSysTimePriority {
    EAaSysTimePriority_Low = 0,
    EAaSysTimePriority_Normal = 1,
    EAaSysTimePriority_High = 2
} EAaSysTimePriority;

/// A calendar date and time.
typedef struct SAaTime {
    uint16_t year;        ///< 1970 to 2105
    uint16_t month;       ///< 1 to 12
    uint16_t day;         ///< 1 to 31
    uint16_t hour;        ///< 0 to 23
    uint16_t minute;      ///< 0 to 59
    uint16_t second;      ///< 0 to 60, 60 in a leap second
    uint16_t milliSecond; ///< 0 to 999
} SAaTime;

/// Sleeps at least for a time.
/// @param value  duration in the unit of scale; 0 returns at once
/// @return EAaSysTimeRetVal_NoError, EAaSysTimeRetVal_InvalidValue (unknown scale; does not sleep)
/// Blocks for the time given; signals do not shorten it.
int AaSysTimeSleep(uint32_t value, EAaSysTimeScale scale);

/// Reads the tick counter, which grows steadily from an arbitrary start and never jumps with the calendar time. The
/// length of a tick is the platform's own: AaSysTime64SinceGet converts.
uint64_t AaTicks64Get(void);

/// Tells the time that has passed since a reading of the tick counter.
/// @param startTicks  an earlier result of AaTicks64Get
/// @param scale       unit of the result, which is rounded down
/// @return the time; 0 for an unknown scale or a start that lies ahead
uint64_t AaSysTime64SinceGet(uint64_t startTicks, EAaSysTimeScale scale);

/// Tells how far local time is ahead of UTC, with summer time.
/// @return minutes, -720 to 840; negative west of Greenwich
int16_t AaSysTimeTimezoneGetOffset(void);

/// Reads the time in UTC.
/// @param[out] time  unchanged unless the result is 0
/// @return EAaSysTimeRetVal_NoError, EAaSysTimeRetVal_InvalidValue (null), EAaSysTimeRetVal_Error
int AaUtcTimeGet(SAaTime* time);

/// Sets the node's time, in UTC. The tick counter and running timers are not affected.
/// @return EAaSysTimeRetVal_NoError, EAaSysTimeRetVal_InvalidValue, EAaSysTimeRetVal_PermissionDenied
int AaUtcTimeSet(const SAaTime* time);

/// Reads the local time; otherwise as AaUtcTimeGet.
int AaLocalTimeGet(SAaTime* time);

#ifdef __cplusplus
}
#endif
