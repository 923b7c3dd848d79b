#include <mox/Logger.hpp>
#include <mox/pal/AbstractSysLog.hpp>

#include <algorithm>
#include <array>
#include <cstring>

namespace ps::hwapi::common {
namespace {
namespace constant {
/// Formats up to this size are put behind their prefix without a heap allocation.
constexpr std::size_t usualFormatSize = 512;
} // namespace constant
} // namespace

void Logger::setPrefixFromPieces(std::vector<std::string> pieces) {
    // Every logger comes by here. The log that exists before its loggers also outlives them: those of global objects
    // still log while the process exits.
    pal::AbstractSysLog::instance();
    pieces.erase(std::remove(pieces.begin(), pieces.end(), std::string()), pieces.end());
    std::size_t size = 1;
    for (const std::string& piece : pieces) {
        size += piece.size() + 2;
    }
    m_prefix.clear();
    if (pieces.empty()) {
        return;
    }
    m_prefix.reserve(size);
    for (const std::string& piece : pieces) {
        m_prefix.append("[").append(piece).append("]");
    }
    m_prefix.append(" ");
}

void Logger::logError(const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(EAaSysLogSeverityLevel_Error, format, args);
    va_end(args);
}

void Logger::logWarning(const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(EAaSysLogSeverityLevel_Warning, format, args);
    va_end(args);
}

void Logger::logInfo(const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(EAaSysLogSeverityLevel_Info, format, args);
    va_end(args);
}

void Logger::logDebug(const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(EAaSysLogSeverityLevel_Debug, format, args);
    va_end(args);
}

void Logger::logRaiseInfoToErrorIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Error : EAaSysLogSeverityLevel_Info, format, args);
    va_end(args);
}

void Logger::logRaiseDebugToErrorIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Error : EAaSysLogSeverityLevel_Debug, format, args);
    va_end(args);
}

void Logger::logRaiseInfoToWarningIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Warning : EAaSysLogSeverityLevel_Info, format, args);
    va_end(args);
}

void Logger::logRaiseDebugToWarningIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Warning : EAaSysLogSeverityLevel_Debug, format, args);
    va_end(args);
}

void Logger::logRaiseWarningToErrorIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Error : EAaSysLogSeverityLevel_Warning, format, args);
    va_end(args);
}

void Logger::logRaiseDebugToInfoIfTrue(bool condition, const char* format, ...) const {
    va_list args;
    va_start(args, format);
    logMessage(condition ? EAaSysLogSeverityLevel_Info : EAaSysLogSeverityLevel_Debug, format, args);
    va_end(args);
}

void Logger::logMessage(EAaSysLogSeverityLevel level, const char* format, va_list args) const {
    const pal::AbstractSysLog& sysLog = pal::AbstractSysLog::instance();
    if (m_prefix.empty()) {
        sysLog.vPrintE(level, m_featureId, format, args);
        return;
    }
    const std::size_t formatSize = std::strlen(format) + 1;
    std::array<char, constant::usualFormatSize> whole;
    if (m_prefix.size() + formatSize > whole.size()) {
        sysLog.vPrintE(level, m_featureId, (m_prefix + format).c_str(), args);
        return;
    }
    std::memcpy(whole.data(), m_prefix.data(), m_prefix.size());
    std::memcpy(whole.data() + m_prefix.size(), format, formatSize);
    sysLog.vPrintE(level, m_featureId, whole.data(), args);
}

} // namespace ps::hwapi::common
