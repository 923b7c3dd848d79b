#include "host/pal/AaSysMb.hpp"

#include "mock/src/Effects.hpp"

#include <pal/AaSysMb.h>

#define MOX_FAMILY <families/AaSysMb.def>
#define MOX_FAMILY_NAME AaSysMb
#include "mock/declareCalls.hpp"

namespace mox::mock {

MOX_EFFECT(AaSysMbSubscribe, Registers<Kind::subscription, 0, 1>)
MOX_EFFECT(AaSysMbUnsubscribe, Withdraws<Kind::subscription, host::AaSysMbUnsubscribe, 0, 1>)
MOX_EFFECT(AaSysMbPrepare, Registers<Kind::registration, 0, 1>)
MOX_EFFECT(AaSysMbPublish, GivesMessage<0>)
MOX_EFFECT(AaSysMbRecall, Withdraws<Kind::registration, host::AaSysMbRecall, 0, 1>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
