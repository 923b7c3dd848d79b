#include "VersionMarker.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace mox::host {

namespace {

constexpr std::string_view marker = versionMarker;

/// No number that fits into 32 bits needs more, blanks before it apart.
constexpr std::size_t mostDigits = 32;

} // namespace

void VersionMarker::take(std::string_view bytes) {
    if (m_found && m_window.size() >= mostDigits)
        return;
    m_window += bytes;
    if (!m_found) {
        const std::size_t at = m_window.find(marker);
        m_found = at != std::string::npos;
        const std::size_t kept = std::min(m_window.size(), marker.size() - 1);
        m_window.erase(0, m_found ? at + marker.size() : m_window.size() - kept);
    }
    if (m_found)
        m_window.resize(std::min(m_window.size(), mostDigits));
}

std::optional<std::uint32_t> VersionMarker::version() const {
    if (!m_found)
        return std::nullopt;
    constexpr auto greatest = std::numeric_limits<std::uint32_t>::max();
    errno = 0;
    const unsigned long long number = std::strtoull(m_window.c_str(), nullptr, 0);
    return errno == ERANGE || number > greatest ? greatest : static_cast<std::uint32_t>(number);
}

} // namespace mox::host
