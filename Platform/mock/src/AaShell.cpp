#include "host/pal/AaShell.hpp"

#include "mock/src/Effects.hpp"

#include <pal/AaShell.h>

#define MOX_FAMILY <families/AaShell.def>
#define MOX_FAMILY_NAME AaShell
#include "mock/declareCalls.hpp"

namespace mox::mock {

MOX_EFFECT(AaShellAddCommand, Registers<Kind::registration, 0>)
MOX_EFFECT(AaShellDeleteCommand, Withdraws<Kind::registration, host::AaShellDeleteCommand, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
