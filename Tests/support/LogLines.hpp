#pragma once
#include <gmock/gmock.h>

#include <cstdarg>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

namespace mox::testing {

/// One line as it reached the platform's log.
struct LogLine {
    int level;
    unsigned int featureId;
    std::string text;
};

inline bool operator==(const LogLine& a, const LogLine& b) {
    return a.level == b.level && a.featureId == b.featureId && a.text == b.text;
}

inline void PrintTo(const LogLine& line, std::ostream* out) {
    *out << '{' << line.level << ", 0x" << std::hex << line.featureId << std::dec << ", \"" << line.text << "\"}";
}

/// Catches the lines that arrive at AaSysLogPrintE and AaSysLogVPrintE while it lives. Any thread may log meanwhile.
class LogLines {
public:
    LogLines();
    ~LogLines();
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    /// Makes the log answer with an error from now on; lines are caught nevertheless.
    void failWith(int result) { m_result = result; }

    std::vector<LogLine> taken() const;
    std::vector<std::string> texts() const;
    /// @return the formats, before any value was put in
    std::vector<std::string> formats() const;

    int take(int level, unsigned int featureId, const char* format, va_list args) __attribute__((format(printf, 4, 0)));

private:
    mutable std::mutex m_mutex;
    std::vector<LogLine> m_lines;
    std::vector<std::string> m_formats;
    int m_result = 0;
};

} // namespace mox::testing
