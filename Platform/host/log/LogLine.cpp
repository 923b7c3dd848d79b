#include "LogLine.hpp"

#include <time.h>

#include <cstdio>

namespace mox::host::log {

namespace {

void appendTime(std::string& out, std::uint64_t utcNs) {
    const auto seconds = static_cast<time_t>(utcNs / 1'000'000'000U);
    const auto micro = static_cast<unsigned>(utcNs % 1'000'000'000U / 1000U);
    tm parts{};
    gmtime_r(&seconds, &parts);
    char text[40];
    const std::size_t length = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    out.append(text, length);
    std::snprintf(text, sizeof text, ".%06uZ", micro);
    out += text;
}

/// Fields before the text are split at blanks by whoever reads lines, so a name keeps none.
void appendWord(std::string& out, std::string_view word) {
    if (word.empty())
        out += '-';
    for (const char c : word) {
        const auto byte = static_cast<unsigned char>(c);
        out += byte <= ' ' || byte == 0x7F || c == ':' ? '_' : c;
    }
}

} // namespace

const char* severityName(int level) {
    switch (level) {
    case error:
        return "ERR";
    case warning:
        return "WRN";
    case information:
        return "INF";
    default:
        return "DBG";
    }
}

void appendVisible(std::string& out, std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\\') {
            out += "\\\\";
        } else if (byte < 0x20 || byte == 0x7F) {
            char escape[5];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(byte));
            out += escape;
        } else {
            out += c;
        }
    }
}

std::string format(const LogLine& line) {
    std::string out;
    out.reserve(96 + line.text.size());
    appendTime(out, line.utcNs);
    char fields[48];
    std::snprintf(fields, sizeof fields, " %s %04x ", severityName(line.level), static_cast<unsigned>(line.node));
    out += fields;
    appendWord(out, line.process);
    std::snprintf(fields, sizeof fields, "[%u] %08x ", line.pid, line.feature);
    out += fields;
    appendWord(out, line.domain);
    out += ": ";
    appendVisible(out, line.text);
    return out;
}

} // namespace mox::host::log
