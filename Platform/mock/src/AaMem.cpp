#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"

#include <pal/AaMem.h>

#define MOX_FAMILY <families/AaMem.def>
#define MOX_FAMILY_NAME AaMem
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {

/// A further reference to a block is one more that must be given back.
class AddsReference {
public:
    AddsReference(Call& call, void* block) : m_call(call), m_block(block) {}
    void finish(NoResult) {
        if (m_block != nullptr && !m_call.faulted())
            enterHandle(m_call, Kind::memory, word(m_block), releaseMemory);
    }

private:
    Call& m_call;
    void* m_block;
};

} // namespace

MOX_EFFECT(AaMemMalloc, OpensResult<Kind::memory, releaseMemory>)
MOX_EFFECT(AaMemRef, AddsReference)
MOX_EFFECT(AaMemUnRef, Closes<Kind::memory, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
