#pragma once
/// The limits of the machine for a round trip between two threads: a bare futex, and a spin on a shared word.
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <utility>

namespace mox::bench {

/// 64 bytes, as the messages of the library that it is compared with.
struct Block {
    std::uint64_t sequence = 0;
    char rest[56] = {};
};

/// One place for one block, handed over on a futex.
struct FutexSlot {
    void push(const Block& block) {
        value = block;
        full.store(1, std::memory_order_release);
        syscall(SYS_futex, &full, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
    }
    Block pop() {
        while (full.load(std::memory_order_acquire) == 0) {
            syscall(SYS_futex, &full, FUTEX_WAIT_PRIVATE, 0, nullptr, nullptr, 0);
        }
        const Block block = value;
        full.store(0, std::memory_order_relaxed);
        return block;
    }
    std::atomic<int> full{0};
    Block value;
};

/// One place for one block, watched without rest.
struct SpinSlot {
    void push(const Block& block) {
        value = block;
        full.store(1, std::memory_order_release);
    }
    Block pop() {
        while (full.load(std::memory_order_acquire) == 0) {
        }
        const Block block = value;
        full.store(0, std::memory_order_release);
        return block;
    }
    alignas(64) std::atomic<int> full{0};
    Block value;
};

} // namespace mox::bench
