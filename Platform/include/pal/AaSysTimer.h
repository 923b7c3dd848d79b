#pragma once
/// Timers: message timers (m) send a message when they expire, call-back timers (c) call a function.
///
/// A one-shot timer ends when it expires; a periodic one goes on until it is deleted. Timer ids are never 0 and are not
/// used again soon, so that deleting a timer that has just expired hits no other one. All are deleted at shut-down of
/// the execution environment.
///
/// Any thread, between start-up and shut-down of the execution environment. Nothing here blocks.
#include <pal/AaSysTime.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaSysTimerRetVal {
    EAaSysTimerRetVal_NoError = 0,
    EAaSysTimerRetVal_NotFound = 1,       ///< no such timer, or a one-shot timer that has expired
    EAaSysTimerRetVal_InvalidValue = 2,   ///< null argument, or unknown priority
    EAaSysTimerRetVal_OutOfResources = 3, ///< no memory, or too many timers
    EAaSysTimerRetVal_NotStarted = 4      ///< the execution environment is not running
} EAaSysTimerRetVal;

/// Called when a call-back timer expires, on a thread of the platform that serves the timers of one priority in turn.
/// @param timerId   the timer
/// @param argument  as given to AaSysTimercCreate
/// It must be short and must not wait; it may create, reset and delete timers.
typedef void (*TAaSysTimerCb)(uint32_t timerId, void* argument);

/// Starts a timer that sends a message to the message's receiver.
/// @param[out] timerId  id, 1 or more; unchanged unless the result is 0
/// @param timeoutMs     time to the first expiry in milliseconds; 0 sends at once
/// @param periodMs      time from each expiry to the next in milliseconds; 0: one-shot
/// @param message       made with AaSysComMsgCreate, with receiver and sender set. On success it belongs to the timer:
/// a
///                      one-shot timer sends it, a periodic one sends copies. On failure it stays the caller's
/// @return EAaSysTimerRetVal_NoError, EAaSysTimerRetVal_InvalidValue, EAaSysTimerRetVal_OutOfResources,
///         EAaSysTimerRetVal_NotStarted
int AaSysTimermCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, void* message);

/// As AaSysTimermCreate, for times beyond 49 days.
/// @param timeoutMs  milliseconds, at most 2^53
/// @param periodMs   milliseconds, at most 2^53; 0: one-shot
int AaSysTimermCreateLong(uint32_t* timerId, uint64_t timeoutMs, uint64_t periodMs, void* message);

/// Starts a timer that calls a function.
/// @param[out] timerId  id, 1 or more; set before the first call; unchanged unless the result is 0
/// @param timeoutMs     time to the first expiry in milliseconds
/// @param periodMs      time from each expiry to the next in milliseconds; 0: one-shot
/// @param callback      called at each expiry
/// @param argument      handed to callback; stays the caller's
/// @param priority      which timers are served first
/// @return as AaSysTimermCreate
int AaSysTimercCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, TAaSysTimerCb callback, void* argument,
                      EAaSysTimePriority priority);

/// Deletes a timer of either kind. The message of a message timer is destroyed; one that was sent is not called back. A
/// call-back that has begun may still be running afterwards; no new one begins.
/// @return EAaSysTimerRetVal_NoError, EAaSysTimerRetVal_NotFound
int AaSysTimerDelete(uint32_t timerId);

/// Deletes a message timer and gives its message back.
/// @param[out] message  the message, now the caller's; null unless the result is 0
/// @return EAaSysTimerRetVal_NoError, EAaSysTimerRetVal_NotFound (also for a call-back timer, which goes on),
///         EAaSysTimerRetVal_InvalidValue (null; the timer goes on)
int AaSysTimermDelete(uint32_t timerId, void** message);

/// Starts a timer that has not ended anew, with its own time-out and period.
/// @return EAaSysTimerRetVal_NoError, EAaSysTimerRetVal_NotFound
int AaSysTimerReset(uint32_t timerId);

#ifdef __cplusplus
}
#endif
