#pragma once
/// The kernel's wait-on-a-word, and the two hints that a waiting loop needs.
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <ctime>

namespace mox::host {

/// Whether other processes wait on the same word.
enum class FutexScope { process, shared };

/// Sleeps while `word` holds `expected`, at most `timeoutNs` (negative: without limit). Also returns for no reason.
inline void futexWait(const void* word, std::int32_t expected, std::int64_t timeoutNs = -1,
                      FutexScope scope = FutexScope::process) {
    const int operation = scope == FutexScope::process ? FUTEX_WAIT_PRIVATE : FUTEX_WAIT;
    timespec limit{};
    if (timeoutNs >= 0) {
        limit.tv_sec = static_cast<time_t>(timeoutNs / 1000000000);
        limit.tv_nsec = static_cast<long>(timeoutNs % 1000000000);
    }
    syscall(SYS_futex, word, operation, expected, timeoutNs >= 0 ? &limit : nullptr, nullptr, 0);
}

/// Wakes at most `count` sleepers of `word`. The word may be gone already: nothing is read from it.
inline void futexWake(const void* word, int count = 1, FutexScope scope = FutexScope::process) {
    syscall(SYS_futex, word, scope == FutexScope::process ? FUTEX_WAKE_PRIVATE : FUTEX_WAKE, count, nullptr, nullptr,
            0);
}

/// Tells the processor that this is a waiting loop.
inline void cpuRelax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__) || defined(__arm__)
    asm volatile("yield");
#endif
}

} // namespace mox::host
