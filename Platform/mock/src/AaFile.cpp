#include "host/pal/AaFile.hpp"

#include "mock/src/Dispose.hpp"
#include "mock/src/Effects.hpp"

#include <pal/AaFile.h>

#define MOX_FAMILY <families/AaFile.def>
#define MOX_FAMILY_NAME AaFile
#include "mock/declareCalls.hpp"

namespace mox::mock {

namespace {

void closeFile(std::uint64_t handle) {
    host::AaFileClose(pointerOf<TAaFile>(handle));
}

/// The array of a listing goes back with its length.
class OpensListing {
public:
    OpensListing(Call& call, const char*, SAaFileDnode** entries, const unsigned int* count)
        : m_call(call), m_entries(entries), m_count(count) {}
    void finish(int result) {
        if (m_call.faulted() || !isSuccess(result) || m_entries == nullptr || *m_entries == nullptr)
            return;
        Entry entry;
        entry.kind = Kind::memory;
        entry.handle = handleOf(word(*m_entries));
        entry.opener = m_call.id();
        entry.real = m_call.carriedOut();
        entry.dispose = [entries = *m_entries, count = *m_count] { host::AaFileFreeListDirArray(entries, count); };
        enter(std::move(entry));
    }

private:
    Call& m_call;
    SAaFileDnode** m_entries;
    const unsigned int* m_count;
};

} // namespace

MOX_EFFECT(AaFileOpen, OpensResult<Kind::file, closeFile>)
MOX_EFFECT(AaFileClose, Closes<Kind::file, 0>)
MOX_EFFECT(AaFileListDir, OpensListing)
MOX_EFFECT(AaFileFreeListDirArray, Closes<Kind::memory, 0>)

} // namespace mox::mock

#include "mock/src/bindFamily.hpp"
