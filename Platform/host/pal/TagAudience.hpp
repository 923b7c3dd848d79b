#pragma once
/// Which processes of a run observe which tags: their entries in the store.
#include "../bus/Process.hpp"
#include "../store/Store.hpp"
#include "TagObservers.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace mox::host::tags {

/// Whether a service with that name covers the tag: "app.hwapi" covers "app.hwapi" and "app.hwapi.x", not "app.hwapis";
/// "" covers every tag.
bool covers(std::string_view service, std::string_view tag);

/// Enters this process, when it is in a run and others must know. @return false: the store is full
bool enterAudience(const Registration& registration);
void leaveAudience(const Registration& registration);

/// The other processes that observe a tag.
std::vector<ProcessAddress> audienceOf(const Store::Write& write, std::string_view name);

/// Sends the notice of a tag to processes. One that has died is dropped from the store; one that lives and stayed full
/// loses this notice, which is logged.
void tellAudience(const std::vector<ProcessAddress>& audience, const std::string& name, const std::string& notice);

} // namespace mox::host::tags
