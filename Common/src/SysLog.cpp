#include <mox/pal/SysLog.hpp>

namespace ps::hwapi::common::pal {

AbstractSysLog& AbstractSysLog::instance() {
    static SysLog sysLog;
    return sysLog;
}

int SysLog::vPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) const {
    return AaSysLogVPrintE(level, featureId, format, args);
}

} // namespace ps::hwapi::common::pal
