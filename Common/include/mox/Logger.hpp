#pragma once
#include <mox/conversion/StringConversion.hpp>
#include <pal/AaSysLog.h>

#include <cstdarg>
#include <string>
#include <vector>

namespace ps::hwapi::common {

/// Writes one component's lines to the platform's system log: a feature identifier and a prefix for each line.
///
///     Logger log(ERadHwapi_LED, "Led", unitNumber);
///     log.logInfo("blinks with %u ms", period);                           // "[Led][3] blinks with 200 ms"
///     log.logRaiseDebugToErrorIfTrue(status != 0, "write ended with %d", status);
///
/// The prefix is a part of the format: the format in effect is prefix + format, so a '%' in a prefix piece is a
/// conversion that takes an argument. Write "%%" in a piece that shall show a per cent sign.
///
/// A small value, kept as a member or on the stack. Built and given its prefix by one thread; after that any number of
/// threads may log through it. Log calls block as long as the system log does and never fail visibly.
class Logger {
public:
    /// @param featureId  R&D debug flag of the component; debug lines pass only while it is set
    /// @param pieces     pieces of the prefix: character arrays, strings, numbers; empty ones are left out
    template <typename... Pieces>
    explicit Logger(unsigned int featureId, const Pieces&... pieces) : m_featureId(featureId) {
        setPrefix(pieces...);
    }

    /// Replaces the prefix. Not while another thread logs.
    /// @param pieces  as for the constructor; none clears the prefix
    template <typename... Pieces>
    void setPrefix(const Pieces&... pieces) {
        setPrefixFromPieces(std::vector<std::string>{conversion::toString(pieces)...});
    }

    /// Replaces the prefix by each piece that is not empty, in square brackets, and one blank behind the last.
    /// Nothing but empty pieces clears it. Not while another thread logs.
    void setPrefixFromPieces(std::vector<std::string> pieces);

    /// @name A line of one severity
    /// @param format  printf format, put behind the prefix
    /// @{
    void logError(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    void logWarning(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    void logInfo(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    void logDebug(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    /// @}

    /// @name A line whose severity depends
    /// The name says both: logRaise<otherwise>To<condition holds>IfTrue.
    /// @param condition  true for the higher severity
    /// @param format     printf format, put behind the prefix
    /// @{
    void logRaiseInfoToErrorIfTrue(bool condition, const char* format, ...) const __attribute__((format(printf, 3, 4)));
    void logRaiseDebugToErrorIfTrue(bool condition, const char* format, ...) const
        __attribute__((format(printf, 3, 4)));
    void logRaiseInfoToWarningIfTrue(bool condition, const char* format, ...) const
        __attribute__((format(printf, 3, 4)));
    void logRaiseDebugToWarningIfTrue(bool condition, const char* format, ...) const
        __attribute__((format(printf, 3, 4)));
    void logRaiseWarningToErrorIfTrue(bool condition, const char* format, ...) const
        __attribute__((format(printf, 3, 4)));
    void logRaiseDebugToInfoIfTrue(bool condition, const char* format, ...) const __attribute__((format(printf, 3, 4)));
    /// @}

    /// Writes one line through the shared access object of the system log.
    /// @param level   severity
    /// @param format  printf format, put behind the prefix
    /// @param args    its arguments; indeterminate afterwards, as after vprintf
    void logMessage(EAaSysLogSeverityLevel level, const char* format, va_list args) const
        __attribute__((format(printf, 3, 0)));

private:
    unsigned int m_featureId;
    std::string m_prefix;
};

} // namespace ps::hwapi::common
