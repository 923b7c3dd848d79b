#include "Log.hpp"

#include "../run/Clock.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "LogSinks.hpp"

#include <errno.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>

namespace mox::host {

namespace log {

namespace {

struct Process {
    std::mutex nameMutex;
    std::string name;
    std::atomic<bool> named{false};
    std::mutex captureMutex;
    Capture capture;
    std::atomic<bool> captured{false};
};

/// Never destroyed: lines are logged until the very end of the process.
Process& process() {
    static auto& instance = *new Process;
    return instance;
}

thread_local bool insideCapture = false;

void toCapture(int level, unsigned int feature, std::string_view text) {
    if (insideCapture)
        return;
    const std::lock_guard<std::mutex> guard(process().captureMutex);
    if (!process().capture)
        return;
    insideCapture = true;
    process().capture(level, feature, text);
    insideCapture = false;
}

void toSinks(const LogLine& line, std::string_view formatted) {
    if (process().captured.load(std::memory_order_acquire))
        toCapture(line.level, line.feature, line.text);
    else
        toTerminal(line, formatted);
    if (const Run* run = Run::current())
        toFile(run->nodePath() + "/log", line, formatted);
    toJournal(line);
}

/// A line of this moment. @param name  the process's, which has to outlive the line
LogLine lineOf(int level, std::string_view text, std::string_view name) {
    const Run* run = Run::current();
    LogLine line;
    line.level = level;
    line.utcNs = host::detail::readClock(CLOCK_REALTIME);
    line.node = run ? run->node() : std::uint16_t{0};
    line.process = name;
    line.pid = static_cast<std::uint32_t>(getpid());
    line.text = text;
    return line;
}

void distribute(int level, unsigned int feature, std::string_view text) {
    const NoCancellation whileWriting;
    const std::string name = processName();
    const Domain* domain = ownDomain();
    LogLine line = lineOf(level, text, name);
    line.feature = feature;
    line.domain = domain ? std::string_view(domain->name) : std::string_view();
    const std::string formatted = format(line);
    if (FeatureRing* ring = ringOf(feature); ring && level >= ring->lowestLevel)
        keepInRing(*ring, formatted);
    if (!passes(level, feature))
        return;
    toSinks(line, formatted);
    keepInDomain(formatted);
}

/// The text of a line, as its reader gets it.
class Text {
public:
    Text(const char* format, va_list args) __attribute__((format(printf, 2, 0))) {
        const int length = std::vsnprintf(m_bytes, sizeof m_bytes, format, args);
        m_text = length < 0 ? std::string_view(format)
                            : std::string_view(m_bytes, std::min(static_cast<std::size_t>(length), maxText));
        if (!m_text.empty() && m_text.back() == '\n')
            m_text.remove_suffix(1);
    }
    std::string_view get() const { return m_text; }

private:
    char m_bytes[maxText + 1];
    std::string_view m_text;
};

} // namespace

bool plainDebugPasses() {
    static const bool passing = sinkSettings().terminalLevel <= debug;
    return passing;
}

void write(int level, unsigned int feature, const char* format, va_list args) {
    // Callers print errno after they have logged.
    const int callersErrno = errno;
    distribute(level, feature, Text(format, args).get());
    errno = callersErrno;
}

void writeSystemLine(int level, const char* format, va_list args) {
    const NoCancellation whileWriting;
    const int callersErrno = errno;
    const Text text(format, args);
    const std::string name = processName();
    LogLine line = lineOf(level, text.get(), name);
    line.domain = systemDomain;
    toSinks(line, host::log::format(line));
    errno = callersErrno;
}

void setCapture(Capture capture) {
    const std::lock_guard<std::mutex> guard(process().captureMutex);
    process().capture = std::move(capture);
    process().captured.store(static_cast<bool>(process().capture), std::memory_order_release);
}

std::string processName() {
    const std::lock_guard<std::mutex> guard(process().nameMutex);
    return process().name.empty() ? program_invocation_short_name : process().name;
}

void setProcessName(std::string_view name) {
    const std::lock_guard<std::mutex> guard(process().nameMutex);
    process().name = name;
    std::replace(process().name.begin(), process().name.end(), '/', '_');
    process().named.store(!name.empty(), std::memory_order_release);
}

bool hasProcessName() noexcept {
    return process().named.load(std::memory_order_acquire);
}

} // namespace log

void logPlatform(int severity, const char* format, ...) {
    if (!log::wanted(severity, 0))
        return;
    va_list args;
    va_start(args, format);
    log::write(severity, 0, format, args);
    va_end(args);
}

} // namespace mox::host
