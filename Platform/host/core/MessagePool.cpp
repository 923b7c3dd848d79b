#include "Message.hpp"

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define MOX_POISONS_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MOX_POISONS_MEMORY 1
#endif
#endif
#ifdef MOX_POISONS_MEMORY
#include <sanitizer/asan_interface.h>
#endif

namespace mox::host {

namespace {

/// Body capacities of the pool's classes; the last holds the largest message with trailer.
/// A multiple of 16 each, so that the blocks of a batch are aligned.
constexpr std::array<std::uint32_t, 6> capacities{96, 352, 1120, 4192, 16480, 65568};
/// Blocks that a thread keeps for itself, and moves at once from and to the common store.
constexpr std::array<unsigned, 6> batchSizes{64, 32, 16, 8, 4, 2};
/// Bytes of messages that a process may hold, so that a receiver that never reads does not eat the machine.
constexpr std::size_t memoryLimit = std::size_t{128} << 20;

struct Batch {
    Message* first = nullptr;
    unsigned count = 0;
};

/// Bytes of all blocks outside the common store. What is free there does not count: it serves only messages of its own
/// size, and must not keep others from being made.
std::atomic<std::size_t>& bytesInUse() {
    static std::atomic<std::size_t> bytes{0};
    return bytes;
}

/// @return false: that would be more than a process may hold
bool reserve(std::size_t bytes) {
    if (bytesInUse().fetch_add(bytes, std::memory_order_relaxed) + bytes <= memoryLimit) {
        return true;
    }
    bytesInUse().fetch_sub(bytes, std::memory_order_relaxed);
    return false;
}

std::size_t bytesOf(const Batch& batch) {
    return batch.count * (sizeof(Message) + batch.first->capacity);
}

/// Batches of free blocks that threads have given back. `next` links the blocks of a batch; the batch that follows is
/// noted in the first block's body, which a free block does not use.
class Common {
public:
    void put(Batch batch) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        bytesInUse().fetch_sub(bytesOf(batch), std::memory_order_relaxed);
        following(batch) = m_first;
        m_first = batch;
    }
    /// @return the batch; empty: none is there, or the process holds as much as it may
    Batch take() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const Batch batch = m_first;
        if (batch.first == nullptr || !reserve(bytesOf(batch))) {
            return {};
        }
        m_first = following(batch);
        return batch;
    }

private:
    static Batch& following(const Batch& batch) { return *reinterpret_cast<Batch*>(batch.first->payload()); }
    std::mutex m_mutex;
    Batch m_first;
};

std::array<Common, capacities.size()>& common() {
    static auto* stores = new std::array<Common, capacities.size()>; // outlives every thread
    return *stores;
}

void poison(Message* block) {
#ifdef MOX_POISONS_MEMORY
    constexpr std::size_t linkSize = sizeof(Batch); // the batch that follows, in the first block
    ASAN_POISON_MEMORY_REGION(block->payload() + linkSize, block->capacity - linkSize);
#else
    (void)block;
#endif
}

void unpoison(Message* block) {
#ifdef MOX_POISONS_MEMORY
    ASAN_UNPOISON_MEMORY_REGION(block->payload(), block->capacity);
#else
    (void)block;
#endif
}

/// A batch of new blocks that lie side by side, which costs the heap one request and lets the processor read ahead.
Batch newBatch(unsigned poolClass) {
    const std::size_t blockSize = sizeof(Message) + capacities[poolClass];
    const unsigned count = batchSizes[poolClass];
    const std::size_t bytes = blockSize * count;
    if (!reserve(bytes)) {
        return {};
    }
    auto* memory = static_cast<std::uint8_t*>(::operator new (bytes, std::align_val_t{alignof(Message)}, std::nothrow));
    if (memory == nullptr) {
        bytesInUse().fetch_sub(bytes, std::memory_order_relaxed);
        return {};
    }
    Batch batch;
    for (unsigned i = count; i-- > 0;) {
        auto* block = new (memory + i * blockSize) Message;
        block->capacity = capacities[poolClass];
        block->poolClass = static_cast<std::uint8_t>(poolClass);
        block->mark = Message::dead;
        block->next = batch.first;
        poison(block);
        batch.first = block;
        ++batch.count;
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): no batch size is 0, so a block has taken it over
    return batch;
}

/// Whether the calling thread's free blocks are gone already: other objects of an ending thread may still release
/// messages.
thread_local bool t_cacheEnded = false;

/// A thread's own free blocks: creating and destroying a message touches nothing shared, except once in a batch.
/// Two batches are kept, so that a thread that alternates at a batch's edge does not move it to and fro.
class ThreadCache {
public:
    ~ThreadCache() {
        t_cacheEnded = true;
        for (unsigned c = 0; c < capacities.size(); ++c) {
            for (Batch& batch : m_batches[c]) {
                if (batch.first != nullptr) {
                    common()[c].put(batch);
                }
            }
        }
    }

    Message* take(unsigned c) {
        auto& [current, spare] = m_batches[c];
        if (current.first == nullptr) {
            std::swap(current, spare);
        }
        if (current.first == nullptr) {
            current = refill(c);
        }
        Message* block = current.first;
        if (block == nullptr) {
            return nullptr;
        }
        unpoison(block);
        current.first = block->next;
        --current.count;
        return block;
    }

    void put(Message* block) {
        const unsigned c = block->poolClass;
        auto& [current, spare] = m_batches[c];
        if (current.count >= batchSizes[c]) {
            if (spare.first != nullptr) {
                common()[c].put(spare);
            }
            spare = current;
            current = Batch{};
        }
        block->next = current.first;
        current.first = block;
        ++current.count;
        poison(block);
    }

private:
    static Batch refill(unsigned c) {
        const Batch used = common()[c].take();
        return used.first != nullptr ? used : newBatch(c);
    }

    std::array<std::array<Batch, 2>, capacities.size()> m_batches;
};

ThreadCache& threadCache() {
    thread_local ThreadCache cache;
    return cache;
}

unsigned classFor(std::uint32_t capacity) {
    unsigned c = 0;
    while (capacities[c] < capacity) {
        ++c;
    }
    return c;
}

} // namespace

Message* Message::of(const void* handle) {
    if (handle == nullptr) {
        return nullptr;
    }
    auto* bytes = static_cast<std::uint8_t*>(const_cast<void*>(handle));
    auto* message = reinterpret_cast<Message*>(bytes - offsetof(Message, header));
    return message->mark == live ? message : nullptr;
}

Message* Message::allocate(std::uint32_t capacity) {
    if (capacity > capacities.back()) {
        return nullptr;
    }
    Message* block = t_cacheEnded ? nullptr : threadCache().take(classFor(capacity));
    if (block != nullptr) {
        block->mark = live;
        block->next = nullptr;
        block->from = Message::From::thisProcess;
    }
    return block;
}

void Message::release(Message* message) {
    message->mark = dead;
    if (t_cacheEnded) {
        message->next = nullptr;
        common()[message->poolClass].put({message, 1});
        return;
    }
    threadCache().put(message);
}

} // namespace mox::host
