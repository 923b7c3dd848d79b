#pragma once
/// Which processes of a run observe which tags: their entries in the store.
#include "TagObservers.hpp"

#include <string>
#include <string_view>

namespace mox::host::tags {

/// Whether a service with that name covers the tag: "app.hwapi" covers "app.hwapi" and "app.hwapi.x", not "app.hwapis";
/// "" covers every tag.
bool covers(std::string_view service, std::string_view tag);

/// Enters this process, when it is in a run and others must know. @return false: the store is full
bool enterAudience(const Registration& registration);
void leaveAudience(const Registration& registration);

/// Sends the notice to every other process that observes the tag. One that has died is dropped from the store; one that
/// lives and stayed full loses this notice, which is logged.
void tellAudience(const std::string& name, const std::string& notice);

} // namespace mox::host::tags
