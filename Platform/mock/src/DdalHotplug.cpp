#include "mock/src/Effects.hpp"

#include <ddal/ddal_hotplug.h>

#define MOX_FAMILY <families/ddal_hotplug.def>
#define MOX_FAMILY_NAME DdalHotplug
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {
void closeEvents(std::uint64_t handle);
}

MOX_EFFECT(ddal_hotplug_get_event_open, OpensResult<Kind::file, closeEvents>)
MOX_EFFECT(ddal_hotplug_get_event_close, Closes<Kind::file, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"

namespace mox::mock {
namespace {
void closeEvents(std::uint64_t handle) {
    host::ddal_hotplug_get_event_close(static_cast<int>(handle));
}
} // namespace
} // namespace mox::mock
