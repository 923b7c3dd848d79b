#include "host/pal/AaConfig.hpp"

#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"

#include <pal/AaConfig.h>

#define MOX_FAMILY <families/AaConfig.def>
#define MOX_FAMILY_NAME AaConfig
#include "mock/declareCalls.hpp"

namespace mox::mock {

MOX_EFFECT(AaConfigTagGet, OpensOut<Kind::memory, 1, releaseMemory>)
MOX_EFFECT(AaConfigTagGetDefault, OpensOut<Kind::memory, 1, releaseMemory>)
MOX_EFFECT(AaConfigTagGetString, OpensOut<Kind::memory, 1, releaseMemory>)
MOX_EFFECT(AaConfigTagRegister, Registers<Kind::subscription, 0, 1>)
MOX_EFFECT(AaConfigTagUnregister, Withdraws<Kind::subscription, host::AaConfigTagUnregister, 0, 1>)
MOX_EFFECT(AaConfigSubscribeService, Registers<Kind::subscription, 0, 1, 2>)
MOX_EFFECT(AaConfigUnSubscribeService, Withdraws<Kind::subscription, host::AaConfigUnSubscribeService, 0, 1, 2>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
