#include "LibraryLog.hpp"

#include "Output.hpp"

#include <host/log/Log.hpp>

#include <string_view>

namespace mox::tools {

LibraryLog::LibraryLog(const Output& output, const std::string& progress) {
    host::log::setCapture([this, &output, progress](int /*level*/, unsigned int /*feature*/, std::string_view text) {
        const std::lock_guard lock(m_mutex);
        m_lines.emplace_back(text);
        if (!progress.empty() && text.substr(0, progress.size()) == progress) {
            output.note("  " + m_lines.back().substr(progress.size()));
        } else {
            output.detail("  " + m_lines.back());
        }
    });
}

LibraryLog::~LibraryLog() {
    host::log::setCapture(nullptr);
}

std::vector<std::string> LibraryLog::lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

} // namespace mox::tools
