#include "AaMem.hpp"

#include "../run/PlatformLog.hpp"

#include <sanitizer/asan_interface.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace mox::host {

namespace {

constexpr std::uint32_t live = 0x4D454D31;
constexpr std::uint32_t released = 0xDEADB10C;

/// Stands before the block. Its size keeps the block aligned for every type.
struct alignas(std::max_align_t) Header {
    std::atomic<std::uint32_t> state;
    std::atomic<std::uint32_t> references;
    std::size_t size;
};

/// Released blocks that are not yet given back to the heap, so that a second release still finds their header.
template <std::size_t Count>
class Quarantine {
public:
    /// Takes a block in. @return the block that leaves in its place, or null
    Header* exchange(Header* header) {
        const std::size_t slot = m_next.fetch_add(1, std::memory_order_relaxed) % Count;
        return m_blocks[slot].exchange(header, std::memory_order_acq_rel);
    }

private:
    std::array<std::atomic<Header*>, Count> m_blocks{};
    std::atomic<std::size_t> m_next{0};
};

constexpr std::size_t smallBlock = 4096;
constexpr std::size_t largeBlock = std::size_t{1} << 20;
Quarantine<256> smallBlocks;
Quarantine<8> largeBlocks;

void retire(Header* header) {
    ASAN_POISON_MEMORY_REGION(header + 1, header->size);
    Header* leaving = header;
    if (header->size <= smallBlock)
        leaving = smallBlocks.exchange(header);
    else if (header->size <= largeBlock)
        leaving = largeBlocks.exchange(header);
    if (!leaving)
        return;
    ASAN_UNPOISON_MEMORY_REGION(leaving + 1, leaving->size);
    std::free(leaving);
}

/// The header of a block that can be used; null, and a line in the log, for anything else.
Header* headerOf(void* block, const char* function) {
    auto* header = static_cast<Header*>(block) - 1;
    const std::uint32_t state = header->state.load(std::memory_order_acquire);
    if (state == live)
        return header;
    logPlatform(4, state == released ? "%s: block %p has been released already" : "%s: %p is no block of AaMemMalloc",
                function, block);
    return nullptr;
}

} // namespace

void* AaMemMalloc(std::size_t size) {
    if (size > SIZE_MAX - sizeof(Header))
        return nullptr;
    void* memory = std::malloc(sizeof(Header) + size);
    if (!memory)
        return nullptr;
    auto* header = ::new (memory) Header{{live}, {1}, size};
    return header + 1;
}

void AaMemRef(void* block) {
    if (!block)
        return;
    if (Header* header = headerOf(block, "AaMemRef"))
        header->references.fetch_add(1, std::memory_order_relaxed);
}

void AaMemUnRef(void* block) {
    if (!block)
        return;
    Header* header = headerOf(block, "AaMemUnRef");
    if (!header || header->references.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    header->state.store(released, std::memory_order_release);
    retire(header);
}

} // namespace mox::host
