#pragma once
/// Datagrams that are no message or notice are dropped and counted; the log tells at most once a second.
#include <cstdint>

namespace mox::host {

/// Counts one. @param reason  what was wrong, for the log. Any thread.
void dropBadDatagram(const char* reason);

/// How many this process has dropped. Any thread.
std::uint64_t droppedDatagrams();

} // namespace mox::host
