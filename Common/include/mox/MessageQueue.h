#pragma once
/// Receiving messages, for callers of C. A thin layer over the platform's queue of the calling execution unit; the
/// functions that do nothing belong to an interface that older callers use in full.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Does nothing.
void hwapiMsgQueueCreateAccessMutex(void);

/// Does nothing.
void hwapiMsgQueueInit(void);

/// Receives the next message of the calling execution unit.
/// @param timeoutUs  microseconds; 0 does not wait, -1 waits without limit
/// @param option     option word of the platform; 0 for the usual behaviour, which callers of C++ may leave out
/// @return the message, owned by the caller; null after the time-out or without a queue
/// Execution units with a registered CPID. Blocks up to the time-out.
#ifdef __cplusplus
void* hwapiMsgQueueReceive(int32_t timeoutUs, uint32_t option = 0);
#else
void* hwapiMsgQueueReceive(int32_t timeoutUs, uint32_t option);
#endif

/// Receives the first message with one of some ids; the others stay queued in their order.
/// @param timeoutUs  as above
/// @param filter     filter[0] is the number of ids that follow; null or 0: any message
/// @return as above
void* hwapiMsgQueueReceiveSelective(int32_t timeoutUs, const uint16_t* filter);

/// Does nothing.
void hwapiMsgQueueDestroy(void);

#ifdef __cplusplus
}
#endif
