#pragma once
#include <pal/AaSysLog.h>

#include <cstdarg>

namespace ps::hwapi::common::pal {

/// The platform's system log as an object, so that who logs through it can be given another log.
class AbstractSysLog {
public:
    virtual ~AbstractSysLog() = default;

    /// @return the log of the platform: one object, created on first use and destroyed at process exit. Any thread.
    static AbstractSysLog& instance();

    /// Writes one line; see AaSysLogVPrintE.
    /// @param level      severity
    /// @param featureId  R&D debug flag of who logs; debug lines pass only while it is set
    /// @param format     printf format
    /// @param args       its arguments; indeterminate afterwards
    /// @return what AaSysLogVPrintE returns
    /// Any thread.
    virtual int vPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) const
        __attribute__((format(printf, 4, 0))) = 0;
};

} // namespace ps::hwapi::common::pal
