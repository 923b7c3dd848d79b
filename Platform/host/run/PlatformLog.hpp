#pragma once
/// The platform's own log lines (feature id 0).
namespace mox::host {

/// Logs one line. @param severity  4 error, 3 warning, 2 information, 1 debug. Any thread. Does not block.
void logPlatform(int severity, const char* format, ...) __attribute__((format(printf, 2, 3)));

} // namespace mox::host
