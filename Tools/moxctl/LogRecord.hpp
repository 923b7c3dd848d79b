#pragma once
/// Lines of the log files of a run, as docs/formats/log.md describes them.
#include <cstdint>
#include <optional>
#include <string>

namespace mox::tools {

struct LogRecord {
    std::string time;
    int level = 0; ///< 1 debug to 4 error
    std::string node;
    std::string process;
    std::uint32_t pid = 0;
    std::uint32_t feature = 0;
    std::string domain;
    std::string text; ///< as it stands in the line: see plainText
};

/// @return nothing for a line of another form, such as one that is still being written
std::optional<LogRecord> readLogLine(const std::string& line);

/// The text as it was logged, of a text in which control characters were made visible. What is no escape stays.
std::string plainText(const std::string& visible);

/// "error", "warning", "info" or "debug".
const char* levelName(int level);

/// The opposite of levelName; 0 for any other text.
int levelOf(const std::string& name);

} // namespace mox::tools
