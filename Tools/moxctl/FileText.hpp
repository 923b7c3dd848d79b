#pragma once
#include <string>

namespace mox::tools {

/// Reads a whole file, which may be one that the kernel makes up (/proc) or a pipe.
/// @param[out] text  all bytes; what was read before a failure
/// @return false on failure, errno says why
bool readFileText(const std::string& path, std::string& text);

} // namespace mox::tools
