#include "mock/src/Effects.hpp"

#include <ddal/ddal_rp3_str.h>

#define MOX_FAMILY <families/ddal_rp3_str.def>
#define MOX_FAMILY_NAME DdalRp3Str
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {
void closeEvents(std::uint64_t handle);
}

MOX_EFFECT(ddal_rp3_str_open_event_file, OpensResult<Kind::file, closeEvents>)
MOX_EFFECT(ddal_rp3_str_close_event_file, Closes<Kind::file, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"

namespace mox::mock {
namespace {
void closeEvents(std::uint64_t handle) {
    host::ddal_rp3_str_close_event_file(static_cast<int>(handle));
}
} // namespace
} // namespace mox::mock
