#pragma once
#include "ExitStatus.hpp"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace mox::tools {

/// Ends a command. The text is one line for a person: what was wrong, and what was expected.
///
///     throw Failure(ExitStatus::notFound, "no tag 'app.x'");
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), m_status(status) {}
    /// @param details  further lines, such as the end of what a service printed
    Failure(ExitStatus status, const std::string& text, std::vector<std::string> details)
        : std::runtime_error(text), m_status(status), m_details(std::move(details)) {}

    ExitStatus status() const { return m_status; }
    const std::vector<std::string>& details() const { return m_details; }

private:
    ExitStatus m_status;
    std::vector<std::string> m_details;
};

} // namespace mox::tools
