#pragma once
/* What the C part of the tests offers to the C++ part. */
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Checks an image with each function of the library and copies its payload; the first result that is not 0. */
int checkFromC(const char* path, uint32_t ownHwSwId, const char* destination);

#ifdef __cplusplus
}
#endif
