#include "unit/Common/palUtilsFromC.h"

void palUtilsFromC(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text, const void* msg) {
    palUtilsPrintSicMessageHeader(level, featureId, text, msg);
}
