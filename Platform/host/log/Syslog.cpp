// The C library's syslog(): on a board its lines go to the system's log daemon, here they join those of the process.
// What is defined here must not become the checked functions.
#undef _FORTIFY_SOURCE
#include "Log.hpp"

#include <syslog.h>

#include <cstdarg>

namespace mox::host::log {
namespace {

int levelOf(int priority) {
    switch (LOG_PRI(priority)) {
    case LOG_DEBUG:
        return debug;
    case LOG_INFO:
    case LOG_NOTICE:
        return information;
    case LOG_WARNING:
        return warning;
    default:
        return error;
    }
}

bool isMasked(int priority) {
    return (setlogmask(0) & LOG_MASK(LOG_PRI(priority))) == 0;
}

void writeSyslog(int priority, const char* format, va_list args) __attribute__((format(printf, 2, 0)));
void writeSyslog(int priority, const char* format, va_list args) {
    if (!isMasked(priority))
        writeSystemLine(levelOf(priority), format, args);
}

} // namespace
} // namespace mox::host::log

extern "C" {

void vsyslog(int priority, const char* format, va_list args) {
    mox::host::log::writeSyslog(priority, format, args);
}

void syslog(int priority, const char* format, ...) {
    va_list args;
    va_start(args, format);
    mox::host::log::writeSyslog(priority, format, args);
    va_end(args);
}

// What the two become where the C library's own checks of formats are switched on.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __vsyslog_chk(int priority, int flag, const char* format, va_list args) __attribute__((format(printf, 3, 0)));
void __syslog_chk(int priority, int flag, const char* format, ...) __attribute__((format(printf, 3, 4)));

void __vsyslog_chk(int priority, int /*flag*/, const char* format, va_list args) {
    mox::host::log::writeSyslog(priority, format, args);
}

void __syslog_chk(int priority, int /*flag*/, const char* format, ...) {
    va_list args;
    va_start(args, format);
    mox::host::log::writeSyslog(priority, format, args);
    va_end(args);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
}
