#pragma once
/// Whole files, for the platform's own use.
#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host {

/// Writes a file, created or truncated. @return why not; empty: written
std::string writeFile(const std::string& target, std::string_view content);

/// Copies a file. A target that could not be completed is removed.
/// @param maxBytes  longest source that is copied; 0: no limit
/// @return why not; empty: copied
std::string copyFile(const std::string& source, const std::string& target, std::uint64_t maxBytes);

} // namespace mox::host
