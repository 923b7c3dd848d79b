#include "mock/src/Effects.hpp"

#include <ddal/ddal_rio.h>

#define MOX_FAMILY <families/ddal_rio.def>
#define MOX_FAMILY_NAME DdalRio
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {
void closeCopy(std::uint64_t handle);
}

MOX_EFFECT(ddal_rio_copy_open_fd, OpensOut<Kind::srioHandle, 3, closeCopy>)
MOX_EFFECT(ddal_rio_copy_close_fd, Closes<Kind::srioHandle, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"

namespace mox::mock {
namespace {
void closeCopy(std::uint64_t handle) {
    host::ddal_rio_copy_close_fd(static_cast<int>(handle));
}
} // namespace
} // namespace mox::mock
