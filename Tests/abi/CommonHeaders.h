#pragma once
/* What the C part of the tests offers to the C++ part. */
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Each calls the library's function of the same purpose. */
void* receiveFromC(int32_t timeoutUs, uint32_t option);
void* receiveSelectivelyFromC(int32_t timeoutUs, const uint16_t* filter);
int startFromC(const char* eeName);
void initialiseFromC(void);

#ifdef __cplusplus
}
#endif
