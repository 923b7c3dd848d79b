#include "mock/src/Effects.hpp"
#include "mock/src/ExecutionUnit.hpp"

#include <pal/AaPro.h>

#define MOX_FAMILY <families/AaPro.def>
#define MOX_FAMILY_NAME AaPro
#include "mock/declareCalls.hpp"

#define MOX_REAL_BY_HAND_AaProEuCreateAndStartJoinable
#include "mock/src/bindFamily.hpp"

EAaProEuRetVal mox::mock::real::AaProEuCreateAndStartJoinable(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                              uint32_t stackSize, uint32_t priority,
                                                              const void* argument, uint32_t argumentSize,
                                                              uint32_t wait) {
    constexpr const char* self = "AaProEuCreateAndStartJoinable";
    Call::noteCarriedOut(self);
    return createWatched(
        self, name, entry, argument, argumentSize, [=](TAaProEuEntry run, const void* block, std::uint32_t size) {
            return host::AaProEuCreateAndStartJoinable(euId, name, run, stackSize, priority, block, size, wait);
        });
}
