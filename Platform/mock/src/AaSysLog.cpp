#include "host/pal/AaSysLog.hpp"

#include "mock/AaSysLogText.hpp"
#include "mock/src/Call.hpp"

#include <cstdio>
#include <vector>

#define MOX_FAMILY <families/AaSysLog.def>
#define MOX_FAMILY_NAME AaSysLog
#define MOX_FAMILY_TEXT_CALLS MOX_AASYSLOG_TEXT_CALLS
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"

namespace mox::mock {
namespace {

std::string formatted(const char* format, va_list values) {
    if (format == nullptr)
        return {};
    va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0)
        return format;
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    va_copy(again, values);
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

__attribute__((format(printf, 2, 3))) int printReal(EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list values;
    va_start(values, format);
    const int result = host::AaSysLogVPrint(level, format, values);
    va_end(values);
    return result;
}

__attribute__((format(printf, 3, 4))) int printRealE(EAaSysLogSeverityLevel level, unsigned int featureId,
                                                     const char* format, ...) {
    va_list values;
    va_start(values, format);
    const int result = host::AaSysLogVPrintE(level, featureId, format, values);
    va_end(values);
    return result;
}

/// Takes one line through fault plan and mock; the platform gets format and values as they came.
template <typename Offer, typename Platform>
int print(const char* function, std::initializer_list<std::uint64_t> arguments, Offer offer, Platform platform) {
    Call call(functionRecord(function), arguments);
    if (call.faulted())
        return call.faultResult<int>();
    Slot<AaSysLogCalls>::Visit visit;
    if (visit.mock() != nullptr)
        return offer(*visit.mock());
    Call::noteCarriedOut(function);
    return platform();
}

} // namespace

int real::AaSysLogPrint(EAaSysLogSeverityLevel level, const std::string& text) {
    return printReal(level, "%s", text.c_str());
}
int real::AaSysLogVPrint(EAaSysLogSeverityLevel level, const std::string& text) {
    return printReal(level, "%s", text.c_str());
}
int real::AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text) {
    return printRealE(level, featureId, "%s", text.c_str());
}
int real::AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text) {
    return printRealE(level, featureId, "%s", text.c_str());
}

namespace {

int vprint(const char* function, int (AaSysLogCalls::*method)(EAaSysLogSeverityLevel, const std::string&),
           EAaSysLogSeverityLevel level, const char* format, va_list values) {
    return print(
        function, {word(level)}, [&](AaSysLogCalls& mock) { return (mock.*method)(level, formatted(format, values)); },
        [&] { return host::AaSysLogVPrint(level, format, values); });
}

int vprintE(const char* function, int (AaSysLogCalls::*method)(EAaSysLogSeverityLevel, unsigned, const std::string&),
            EAaSysLogSeverityLevel level, unsigned featureId, const char* format, va_list values) {
    return print(
        function, {word(level), featureId},
        [&](AaSysLogCalls& mock) { return (mock.*method)(level, featureId, formatted(format, values)); },
        [&] { return host::AaSysLogVPrintE(level, featureId, format, values); });
}

} // namespace
} // namespace mox::mock

using mox::mock::AaSysLogCalls;

int AaSysLogVPrint(EAaSysLogSeverityLevel level, const char* format, va_list args) {
    return mox::mock::vprint("AaSysLogVPrint", &AaSysLogCalls::AaSysLogVPrint, level, format, args);
}

int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) {
    return mox::mock::vprintE("AaSysLogVPrintE", &AaSysLogCalls::AaSysLogVPrintE, level, featureId, format, args);
}

int AaSysLogPrint(EAaSysLogSeverityLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = mox::mock::vprint("AaSysLogPrint", &AaSysLogCalls::AaSysLogPrint, level, format, args);
    va_end(args);
    return result;
}

int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result =
        mox::mock::vprintE("AaSysLogPrintE", &AaSysLogCalls::AaSysLogPrintE, level, featureId, format, args);
    va_end(args);
    return result;
}
