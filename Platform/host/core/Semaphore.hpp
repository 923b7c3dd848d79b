#pragma once
/// A counting semaphore whose uncontended operations are one atomic step each. Count and waiters share one word, so
/// that a poster touches the semaphore only once: the thread that it releases may destroy it at once.
#include "AdaptiveWait.hpp"

#include <atomic>
#include <climits>
#include <cstdint>

namespace mox::host {

/// The word of a named semaphore, in a file that all processes of the node map.
class SharedCount {
public:
    /// Maps the semaphore of this name, making it with `initialCount` when it is new. @return null: the operating
    /// system refuses, which is logged
    static SharedCount* open(const char* name, std::uint32_t initialCount);
    static void close(SharedCount* count);
    /// @return false: no such name
    static bool unlink(const char* name);

    std::atomic<std::uint64_t> word{0};
};

class Semaphore {
public:
    static constexpr std::uint32_t maxCount = INT_MAX;

    explicit Semaphore(std::uint32_t initialCount) : m_own(initialCount), m_word(&m_own), m_shared(nullptr) {}
    /// Takes over a mapped count.
    explicit Semaphore(SharedCount* shared) : m_word(&shared->word), m_shared(shared) {}
    ~Semaphore() {
        if (m_shared != nullptr) {
            SharedCount::close(m_shared);
        }
    }
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    void wait() {
        std::uint64_t word = m_word->load(std::memory_order_relaxed);
        while (countOf(word) != 0) {
            if (m_word->compare_exchange_weak(word, word - 1, std::memory_order_acquire, std::memory_order_relaxed)) {
                return;
            }
        }
        waitForPost();
    }

    /// @return false: the count is at its limit
    bool post() {
        const FutexScope scope = m_shared != nullptr ? FutexScope::shared : FutexScope::process;
        const void* futex = futexWord();
        std::uint64_t word = m_word->load(std::memory_order_relaxed);
        do {
            if (countOf(word) == maxCount) {
                return false;
            }
        } while (!m_word->compare_exchange_weak(word, word + 1, std::memory_order_release, std::memory_order_relaxed));
        if (word >= oneWaiter) { // from here on the semaphore may be gone
            futexWake(futex, 1, scope);
        }
        return true;
    }

    std::uint32_t count() const { return countOf(m_word->load(std::memory_order_relaxed)); }

private:
    static constexpr std::uint64_t oneWaiter = std::uint64_t{1} << 32U;
    static std::uint32_t countOf(std::uint64_t word) { return static_cast<std::uint32_t>(word); }
    bool tryTake(std::uint64_t waiters);
    void waitForPost();
    /// The half of the word that holds the count.
    const void* futexWord() const {
        return reinterpret_cast<const char*>(m_word) + (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? 4 : 0);
    }

    std::atomic<std::uint64_t> m_own{0};
    std::atomic<std::uint64_t>* m_word;
    SharedCount* m_shared;
};

} // namespace mox::host
