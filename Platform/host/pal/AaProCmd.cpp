#include "../run/PlatformLog.hpp"
#include "AaPro.hpp"
#include "Command.hpp"

#include <algorithm>
#include <cstring>
#include <string>

namespace mox::host {

namespace {

/// Logs what comes in pieces, a line each.
class LineLogger {
public:
    ~LineLogger() {
        if (!m_rest.empty())
            logLine(m_rest);
    }
    void add(std::string_view piece) {
        m_rest += piece;
        std::size_t begin = 0;
        for (std::size_t end = m_rest.find('\n'); end != std::string::npos; end = m_rest.find('\n', begin)) {
            logLine(std::string_view(m_rest).substr(begin, end - begin));
            begin = end + 1;
        }
        m_rest.erase(0, begin);
        // A line of the log holds no more; what prints no line feed at all would grow for ever.
        if (m_rest.size() > longestLine) {
            logLine(m_rest);
            m_rest.clear();
        }
    }

private:
    static constexpr std::size_t longestLine = 1023;

    static void logLine(std::string_view line) {
        for (; line.size() > longestLine; line.remove_prefix(longestLine))
            logPlatform(2, "%.*s", static_cast<int>(longestLine), line.data());
        logPlatform(2, "%.*s", static_cast<int>(line.size()), line.data());
    }

    std::string m_rest;
};

} // namespace

EAaProEuRetVal AaProCmdExec(const char* command, std::int32_t* exitStatus) {
    if (!command)
        return EAaProEuRetVal_InvalidValue;
    const char* const arguments[] = {"/bin/sh", "-c", command, nullptr};
    LineLogger lines;
    const auto log = [&lines](std::string_view piece) { lines.add(piece); };
    return runCommand(arguments, Streams::outputAndErrors, log, exitStatus);
}

EAaProEuRetVal AaProCmdExecRaw(const char* const* arguments, char* output, std::size_t outputSize,
                               std::int32_t* exitStatus) {
    if (!arguments || !arguments[0] || (!output && outputSize != 0))
        return EAaProEuRetVal_InvalidValue;
    std::size_t used = 0;
    if (outputSize != 0)
        output[0] = '\0';
    const auto collect = [&](std::string_view piece) {
        if (outputSize == 0)
            return;
        const std::size_t taken = std::min(piece.size(), outputSize - 1 - used);
        std::memcpy(output + used, piece.data(), taken);
        used += taken;
        output[used] = '\0';
    };
    return runCommand(arguments, Streams::output, collect, exitStatus);
}

} // namespace mox::host
