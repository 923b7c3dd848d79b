#include "host/pal/AaTrbl.hpp"

#include "mock/src/Effects.hpp"

#include <pal/AaTrbl.h>

#define MOX_FAMILY <families/AaTrbl.def>
#define MOX_FAMILY_NAME AaTrbl
#include "mock/declareCalls.hpp"

namespace mox::mock {

MOX_EFFECT(AaTrblFileRegister, Registers<Kind::registration, 0>)
MOX_EFFECT(AaTrblFileUnregister, Withdraws<Kind::registration, host::AaTrblFileUnregister, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
