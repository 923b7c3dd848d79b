#pragma once
#include <cstddef>
#include <string>

namespace mox::tools {

/// Reads a whole file, which may be one that the kernel makes up (/proc) or a pipe.
/// @param[out] text  all bytes; what was read before a failure
/// @param      most  goes on to read no further than to this size: there are files without an end
/// @return false on failure, errno says why
bool readFileText(const std::string& path, std::string& text, std::size_t most = std::string::npos);
/// The same of an open descriptor, which stays open.
bool readFileText(int fd, std::string& text, std::size_t most = std::string::npos);

} // namespace mox::tools
