#pragma once
#include <mox/pal/PalUtils.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Calls palUtilsPrintSicMessageHeader from a C translation unit.
void palUtilsFromC(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text, const void* msg);

#ifdef __cplusplus
}
#endif
