#pragma once
/// The log of a process: which lines pass, and where they go.
#include "../pal/Rad.hpp"
#include "LogBuffers.hpp"
#include "LogLine.hpp"

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace mox::host::log {

/// Longest text of a line in bytes; the rest is cut.
constexpr std::size_t maxText = 1023;

/// Whether debug lines of feature 0 pass: only with MOX_LOG=debug, for they have no R&D parameter.
bool plainDebugPasses();

/// Whether a line goes to the sinks. Neither lock nor system call.
inline bool passes(int level, unsigned int feature) noexcept {
    return level > debug || (feature == 0 ? plainDebugPasses() : rad::value(feature) != 0);
}

/// Whether anybody wants a line: a sink, or its feature's ring buffer.
inline bool wanted(int level, unsigned int feature) noexcept {
    if (passes(level, feature))
        return true;
    const FeatureRing* ring = ringOf(feature);
    return ring && level >= ring->lowestLevel;
}

/// Formats a line and gives it to whoever wants it. Any thread. Blocks for the write of a line.
void write(int level, unsigned int feature, const char* format, va_list args) __attribute__((format(printf, 3, 0)));

/// The domain that lines of the C library's syslog() carry.
constexpr std::string_view systemDomain = "syslog";

/// Gives a line of the C library's syslog() to the sinks; domain buffers and feature rings are not theirs. Any thread.
/// Blocks for the write of a line.
void writeSystemLine(int level, const char* format, va_list args) __attribute__((format(printf, 2, 0)));

/// Takes over the terminal's part: called for each line that passes, with the text as it was logged (without a final
/// line feed). Serialised; lines that it logs itself are dropped.
using Capture = std::function<void(int level, unsigned int feature, std::string_view text)>;

/// Sets or (with null) ends the capture; returns when the one before is not running and will not be called again. Must
/// not be called by a capture. Files, buffers and journal get their lines all the same.
void setCapture(Capture capture);

/// The name that lines and the log file carry: what was set, else the program's.
std::string processName();
/// Sets the name; '/' becomes '_'. Empty: the program's.
void setProcessName(std::string_view name);
/// Whether setProcessName has given a name.
bool hasProcessName() noexcept;

} // namespace mox::host::log
