#pragma once
/// Who is told of changes of tags: the call-backs of this process, and which processes have any.
///
/// A process that has call-backs for a name stands in the store (Table::tagObservers, Table::services) once, whatever
/// their number. A publisher tells each such process once, by a notice with name and value; the process hands it to its
/// call-backs, in the order of their registration, on its notice thread. An entry of a process that has died is dropped
/// by the first publisher that finds it gone.
#include "../bus/Process.hpp"
#include "TypedValue.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host::tags {

/// What an observer wants to hear of.
enum class Interest : std::uint8_t {
    tag,     ///< publications of one tag
    process, ///< changes of a service's tags by this process, own tags included
    node,    ///< publications of a service's tags by processes of this node
    system   ///< publications of a service's tags by any process
};

/// One change. Valid during the call.
struct Change {
    std::string_view name;
    const TypedValue& value;
};

using Observer = std::function<void(const Change&)>;

/// What tells one registration from another: `callback` is the address of a C call-back, or any other distinct number.
struct Registration {
    Interest interest;
    std::string name; ///< of a tag, or the leading part of the names of a service's tags; "" as a service is every tag
    std::uintptr_t callback;
};

/// Results of observe.
enum class Observed { done, already, storeFull };

/// Starts an observation. Any thread. Blocks while another process writes to the store.
Observed observe(const Registration& registration, Observer observer);

/// Ends one; no new call begins afterwards. @return false: there was none
bool unobserve(const Registration& registration);

/// Tells this process's call-backs, and the other processes that observe the tag. Called with the publications of the
/// process in order.
void tellPublication(const std::string& name, const TypedValue& value, const std::vector<ProcessAddress>& audience);

/// Tells this process's subscriptions of interest Interest::process of a change of an own tag.
void tellOwnChange(const std::string& name, const TypedValue& value);

/// Begins to take notices.
void startObserving();

/// Ends all observations of this process.
void stopObserving();

} // namespace mox::host::tags
