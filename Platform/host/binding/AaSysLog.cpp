#include "../pal/AaSysLog.hpp"

#define MOX_FAMILY <families/AaSysLog.def>
#include "bind.hpp"

int AaSysLogPrint(EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = ::mox::host::AaSysLogVPrint(level, format, args);
    va_end(args);
    return result;
}

int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = ::mox::host::AaSysLogVPrintE(level, featureId, format, args);
    va_end(args);
    return result;
}
