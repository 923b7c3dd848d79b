#pragma once
/// Watching endpoints: who has asked is told by a message when an endpoint appears or goes, also when its process was
/// killed. A platform thread looks at the watched endpoints every 200 ms; nothing runs while nobody watches.
#include <cstdint>

namespace mox::host {

/// Begins watching `sicad` for `receiver`, who is told at once how it stands.
void watchLink(std::uint32_t sicad, std::uint32_t receiver);
/// @return false: was not watched
bool unwatchLink(std::uint32_t sicad, std::uint32_t receiver);
/// Ends all watching.
void endLinks();

} // namespace mox::host
