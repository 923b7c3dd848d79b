#include "LibraryLog.hpp"

#include "Output.hpp"

#include <host/log/Log.hpp>

#include <string_view>

namespace mox::tools {

LibraryLog::LibraryLog(const Output& output) {
    host::log::setCapture([&output](int /*level*/, unsigned int /*feature*/, std::string_view text) {
        output.detail("  " + std::string(text));
    });
}

LibraryLog::~LibraryLog() {
    host::log::setCapture(nullptr);
}

} // namespace mox::tools
