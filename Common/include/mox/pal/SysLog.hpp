#pragma once
#include <mox/pal/AbstractSysLog.hpp>

namespace ps::hwapi::common::pal {

/// The platform's own system log.
class SysLog : public AbstractSysLog {
public:
    int vPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) const override
        __attribute__((format(printf, 4, 0)));
};

} // namespace ps::hwapi::common::pal
