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
    std::string text;
};

/// @return nothing for a line of another form, such as one that is still being written
std::optional<LogRecord> readLogLine(const std::string& line);

/// "error", "warning", "info" or "debug".
const char* levelName(int level);

/// The opposite of levelName; 0 for any other text.
int levelOf(const std::string& name);

} // namespace mox::tools
