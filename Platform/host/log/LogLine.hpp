#pragma once
/// How a line of the log reads; docs/formats/log.md is the page on it.
#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host::log {

/// Severities, as EAaSysLogSeverityLevel numbers them.
constexpr int debug = 1;
constexpr int information = 2;
constexpr int warning = 3;
constexpr int error = 4;

/// One line with all that is printed of it.
struct LogLine {
    int level = information;
    unsigned int feature = 0;
    std::uint64_t utcNs = 0; ///< since 1970, by the workstation's clock
    std::uint16_t node = 0;
    std::string_view process;
    std::uint32_t pid = 0;
    std::string_view domain; ///< empty: none
    std::string_view text;
};

/// "ERR", "WRN", "INF" or "DBG".
const char* severityName(int level);

/// Appends a text with control characters made visible: `\n`, `\t`, `\r`, `\\` and `\xNN`.
void appendVisible(std::string& out, std::string_view text);

/// The line, without a line feed.
std::string format(const LogLine& line);

} // namespace mox::host::log
