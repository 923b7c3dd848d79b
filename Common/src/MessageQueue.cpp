#include <mox/MessageQueue.h>
#include <pal/AaSysCom.h>

void hwapiMsgQueueCreateAccessMutex() {}

void hwapiMsgQueueInit() {}

void* hwapiMsgQueueReceive(int32_t timeoutUs, uint32_t option) {
    return AaSysComMsgReceive(timeoutUs, option);
}

void* hwapiMsgQueueReceiveSelective(int32_t timeoutUs, const uint16_t* filter) {
    return AaSysComMsgReceiveSelective(timeoutUs, filter);
}

void hwapiMsgQueueDestroy() {}
