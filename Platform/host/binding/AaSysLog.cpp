#include "../pal/AaSysLog.hpp"

#define MOX_FAMILY <families/AaSysLog.def>
#include "bind.hpp"

namespace mox::host::faults::tag {
MOX_FAULT_TAG(AaSysLogPrint)
MOX_FAULT_TAG(AaSysLogPrintE)
} // namespace mox::host::faults::tag

int AaSysLogPrint(EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = MOX_FAULT_PLANNED(AaSysLogPrint)
                           ? MOX_FAULTED(AaSysLogPrint)(&::mox::host::AaSysLogVPrint, level, format, args)
                           : ::mox::host::AaSysLogVPrint(level, format, args);
    va_end(args);
    return result;
}

int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = MOX_FAULT_PLANNED(AaSysLogPrintE)
                           ? MOX_FAULTED(AaSysLogPrintE)(&::mox::host::AaSysLogVPrintE, level, featureId, format, args)
                           : ::mox::host::AaSysLogVPrintE(level, featureId, format, args);
    va_end(args);
    return result;
}
