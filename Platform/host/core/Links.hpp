#pragma once
/// Watching endpoints: who has asked is told by a message when an endpoint appears or goes, also when its process was
/// killed. Names that come and go in a node's directory are told by the kernel; for processes that were killed a
/// platform thread looks every 200 ms. Nothing runs while nobody watches.
#include <cstdint>

namespace mox::host {

/// Begins watching `sicad` for `receiver`, who is told at once how it stands.
void watchLink(std::uint32_t sicad, std::uint32_t receiver);
/// @return false: was not watched
bool unwatchLink(std::uint32_t sicad, std::uint32_t receiver);
/// Ends all watching.
void endLinks();

} // namespace mox::host
