#include "support/LogLines.hpp"

#include <pal/AaSysLog.h>

#include <array>
#include <cstdio>
#include <utility>

namespace mox::testing {
namespace {

LogLines* current = nullptr;

std::string formatted(const char* format, va_list args) __attribute__((format(printf, 1, 0)));
std::string formatted(const char* format, va_list args) {
    std::array<char, 8192> text{};
    std::vsnprintf(text.data(), text.size(), format, args);
    return text.data();
}

} // namespace

LogLines::LogLines() {
    current = this;
}

LogLines::~LogLines() {
    current = nullptr;
}

std::vector<LogLine> LogLines::taken() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines;
}

std::vector<std::string> LogLines::texts() const {
    std::vector<std::string> texts;
    for (const LogLine& line : taken()) {
        texts.push_back(line.text);
    }
    return texts;
}

std::vector<std::string> LogLines::formats() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_formats;
}

int LogLines::take(int level, unsigned int featureId, const char* format, va_list args) {
    std::string text = formatted(format, args);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.push_back({level, featureId, std::move(text)});
    m_formats.emplace_back(format);
    return m_result;
}

} // namespace mox::testing

int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) {
    if (mox::testing::current == nullptr) {
        ADD_FAILURE() << "a line that nobody expected: " << mox::testing::formatted(format, args);
        return 0;
    }
    return mox::testing::current->take(level, featureId, format, args);
}

int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = AaSysLogVPrintE(level, featureId, format, args);
    va_end(args);
    return result;
}
