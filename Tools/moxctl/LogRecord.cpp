#include "LogRecord.hpp"

#include <algorithm>
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

struct Escape {
    char letter;
    char meaning;
};
constexpr std::array escapes{Escape{'n', '\n'}, Escape{'t', '\t'}, Escape{'r', '\r'}, Escape{'\\', '\\'}};

/// Reads the escape at a backslash. @return how long it is; 0: it is none
std::size_t readEscape(const std::string& text, std::size_t at, char& meaning) {
    const char letter = at + 1 < text.size() ? text[at + 1] : '\0';
    for (const Escape& row : escapes) {
        if (row.letter == letter) {
            meaning = row.meaning;
            return 2;
        }
    }
    const std::string digits = text.substr(std::min(at + 2, text.size()), 2);
    char* end = nullptr;
    const unsigned long byte = std::strtoul(digits.c_str(), &end, 16);
    if (letter != 'x' || digits.size() != 2 || end != digits.c_str() + 2) {
        return 0;
    }
    meaning = static_cast<char>(byte);
    return 4;
}

} // namespace

std::string plainText(const std::string& visible) {
    std::string plain;
    for (std::size_t at = 0; at < visible.size();) {
        char meaning = visible[at];
        const std::size_t length = meaning == '\\' ? readEscape(visible, at, meaning) : 1;
        plain += meaning;
        at += length != 0 ? length : 1;
    }
    return plain;
}

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
