#pragma once
#include <cstdint>

namespace mox::host {

/// Notes a call of a function that the workstation does not offer: the first one of the process is logged as a warning
/// "<function>: not available on this workstation", later ones are counted only, so that a polling service does not
/// fill its log.
/// @param function  name of the function
/// Any thread. Does not block.
void reportUnsupported(const char* function);

/// Tells how often reportUnsupported was called with this name in this process.
/// @param function  name of the function
/// Any thread. Does not block.
std::uint64_t unsupportedCalls(const char* function);

} // namespace mox::host
