#pragma once
/// Whether the configuration is open: from AaConfigEarlyStartup, or startAlone, to the end of the platform.
#include <string>

namespace mox::host::config {

/// Tags can be read and set. R&D values can from then on, also after the end.
bool started();

/// Opens the configuration of a process that is in no run, as AaConfigEarlyStartup does for one that is in one: tags
/// and R&D values are then in its own memory. For tests and tools.
/// @return false, and in `why` one line for a person, when there is no memory
bool startAlone(std::string& why);

} // namespace mox::host::config
