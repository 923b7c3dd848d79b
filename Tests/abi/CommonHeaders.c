/* The headers that callers in C use, compiled as C. */
#include "abi/CommonHeaders.h"

#include <mox/MessageQueue.h>
#include <mox/Startup.h>

void* receiveFromC(int32_t timeoutUs, uint32_t option) {
    hwapiMsgQueueCreateAccessMutex();
    hwapiMsgQueueInit();
    void* const msg = hwapiMsgQueueReceive(timeoutUs, option);
    hwapiMsgQueueDestroy();
    return msg;
}

void* receiveSelectivelyFromC(int32_t timeoutUs, const uint16_t* filter) {
    return hwapiMsgQueueReceiveSelective(timeoutUs, filter);
}

int startFromC(const char* eeName) {
    return ApiStartupInitializeExecutable(0, 0, eeName, 0);
}

void initialiseFromC(void) {
    ApiRegisterSysLogBuffer();
    ApiStartupInitializeRadParameters();
    ApiStartupInitializeStateRadParameters();
}
