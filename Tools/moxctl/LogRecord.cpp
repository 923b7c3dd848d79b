#include "LogRecord.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace mox::tools {

namespace {

struct Level {
    int number;
    const char* name;
    const char* inFile;
};
constexpr std::array levels{Level{4, "error", "ERR"}, Level{3, "warning", "WRN"}, Level{2, "info", "INF"},
                            Level{1, "debug", "DBG"}};

} // namespace

const char* levelName(int level) {
    for (const Level& row : levels) {
        if (row.number == level) {
            return row.name;
        }
    }
    return "";
}

int levelOf(const std::string& name) {
    for (const Level& row : levels) {
        if (row.name == name) {
            return row.number;
        }
    }
    return 0;
}

std::optional<LogRecord> readLogLine(const std::string& line) {
    LogRecord record;
    std::string level;
    std::string process;
    std::string feature;
    std::istringstream fields(line);
    if (!(fields >> record.time >> level >> record.node >> process >> feature >> record.domain)) {
        return std::nullopt;
    }
    for (const Level& row : levels) {
        if (row.inFile == level) {
            record.level = row.number;
        }
    }
    const std::size_t bracket = process.rfind('[');
    if (record.level == 0 || bracket == std::string::npos || record.domain.back() != ':') {
        return std::nullopt;
    }
    record.process = process.substr(0, bracket);
    record.pid = static_cast<std::uint32_t>(std::strtoul(process.c_str() + bracket + 1, nullptr, 10));
    record.feature = static_cast<std::uint32_t>(std::strtoul(feature.c_str(), nullptr, 16));
    record.domain.pop_back();
    fields.get(); // the blank before the text
    std::getline(fields, record.text);
    return record;
}

} // namespace mox::tools
