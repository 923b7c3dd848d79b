#include "mock/src/Effects.hpp"

#include <pal/AaStartup.h>

#define MOX_FAMILY <families/AaStartup.def>
#define MOX_FAMILY_NAME AaStartup
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {

/// The shut-down deletes what is left of timers, mailboxes and communication points.
class ShutsDown {
public:
    explicit ShutsDown(Call& call) : m_call(call) {}
    void finish(int result) {
        if (m_call.faulted() || !isSuccess(result))
            return;
        strikeAll(Kind::timer);
        strikeAll(Kind::registration);
    }

private:
    Call& m_call;
};

} // namespace

MOX_EFFECT(AaStartupEeShutdown, ShutsDown)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
