#include "host/pal/AaSem.hpp"

#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"

#include <pal/AaSem.h>

#define MOX_FAMILY <families/AaSem.def>
#define MOX_FAMILY_NAME AaSem
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {
void destroySemaphore(std::uint64_t handle) {
    host::AaSemDestroy(pointerOf<TAaSem>(handle));
}
void destroyMutex(std::uint64_t handle) {
    host::AaSemReMutexDestroy(pointerOf<TAaSemReMutex>(handle));
}
} // namespace

MOX_EFFECT(AaSemCreateC, OpensOut<Kind::semaphore, 0, destroySemaphore>)
MOX_EFFECT(AaSemCreateNamedC, OpensOut<Kind::semaphore, 0, destroySemaphore>)
MOX_EFFECT(AaSemDestroy, Closes<Kind::semaphore, 0>)
MOX_EFFECT(AaSemReMutexCreate, OpensOut<Kind::semaphore, 0, destroyMutex>)
MOX_EFFECT(AaSemReMutexDestroy, Closes<Kind::semaphore, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
