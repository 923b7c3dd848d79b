#include "Progress.hpp"

#include "Output.hpp"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace mox::tools {

namespace {

constexpr std::uint64_t mebibyte = 1024 * 1024;
/// Less is done before a reader has found the line.
constexpr std::uint64_t shortWork = 16 * mebibyte;
constexpr auto betweenLines = std::chrono::milliseconds(200);

} // namespace

Progress::Progress(const Output& output, std::string what, std::uint64_t total)
    : m_what(std::move(what)),
      m_total(total),
      m_wanted(total > shortWork && !output.isQuiet() && isatty(STDERR_FILENO) == 1),
      m_next(Clock::now()) {}

Progress::~Progress() {
    if (m_shown) {
        std::fputs("\r\033[K", stderr);
    }
}

void Progress::show(std::uint64_t done) {
    const auto now = Clock::now();
    if (!m_wanted || now < m_next) {
        return;
    }
    m_next = now + betweenLines;
    m_shown = true;
    const std::string part = done == 0 ? "" : std::to_string(done * 100 / m_total) + " % of ";
    const std::string line = "\r" + m_what + ": " + part + std::to_string(m_total / mebibyte) + " MiB\033[K";
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
}

} // namespace mox::tools
