#include "Log.hpp"

#include "../run/Clock.hpp"
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
    keepInDomain(formatted);
}

void distribute(int level, unsigned int feature, std::string_view text) {
    const std::string name = processName();
    const Run* run = Run::current();
    const Domain* domain = ownDomain();
    LogLine line;
    line.level = level;
    line.feature = feature;
    line.utcNs = host::detail::readClock(CLOCK_REALTIME);
    line.node = run ? run->node() : std::uint16_t{0};
    line.process = name;
    line.pid = static_cast<std::uint32_t>(getpid());
    line.domain = domain ? std::string_view(domain->name) : std::string_view();
    line.text = text;
    const std::string formatted = format(line);
    if (FeatureRing* ring = ringOf(feature); ring && level >= ring->lowestLevel)
        keepInRing(*ring, formatted);
    if (passes(level, feature))
        toSinks(line, formatted);
}

} // namespace

bool plainDebugPasses() {
    static const bool passing = sinkSettings().terminalLevel <= debug;
    return passing;
}

void write(int level, unsigned int feature, const char* format, va_list args) {
    // Callers print errno after they have logged.
    const int callersErrno = errno;
    char text[maxText + 1];
    const int length = std::vsnprintf(text, sizeof text, format, args);
    std::string_view line = length < 0 ? std::string_view(format)
                                       : std::string_view(text, std::min(static_cast<std::size_t>(length), maxText));
    if (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    distribute(level, feature, line);
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
