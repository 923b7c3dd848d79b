#pragma once
/// Whether the configuration is open: from AaConfigEarlyStartup to the end of the platform. In a process that is in no
/// run, tags and R&D values are then in its own memory.
namespace mox::host::config {

/// Tags can be read and set. R&D values can from then on, also after the end.
bool started();

} // namespace mox::host::config
