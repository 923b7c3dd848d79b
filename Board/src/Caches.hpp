#pragma once
#include "CopyText.hpp"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace ps::hwapi::board {

/// A word that does not change while the process lives, asked for until it is known. Any thread: threads that meet at
/// the first reading may all ask, and all get the same.
template <typename Word, Word unknown>
class WordCache {
public:
    /// @param read  called without arguments while the word is unknown; gives `unknown` when it fails
    /// @return the word
    template <typename Read>
    Word get(Read read) {
        const Word known = m_word.load(std::memory_order_relaxed);
        if (known != unknown) {
            return known;
        }
        const Word word = read();
        if (word != unknown) {
            m_word.store(word, std::memory_order_relaxed);
        }
        return word;
    }

    void forget() { m_word.store(unknown, std::memory_order_relaxed); }

private:
    std::atomic<Word> m_word{unknown};
};

/// The same for a text of at most `size` characters. Nobody sees a text that is written in part, and the lock is not
/// held while the text is asked for.
template <std::uint32_t size>
class TextCache {
public:
    /// The number of characters that the platform is asked for.
    static constexpr std::uint32_t asked = size;

    /// Copies the text as copyText does.
    /// @param read  called with zeroed room for `asked` characters while the text is empty; true on success
    /// @return 1, or 0 (nothing is copied)
    template <typename Read>
    std::uint32_t copyTo(char* text, std::uint32_t length, Read read) {
        if (!isKnown()) {
            Text fresh{};
            if (!read(fresh.data())) {
                return 0;
            }
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_text = fresh;
        }
        const std::lock_guard<std::mutex> guard(m_mutex);
        copyText(text, m_text.data(), length);
        return 1;
    }

    void forget() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_text.fill('\0');
    }

private:
    /// One more than is asked for, so that a text of full length ends too.
    using Text = std::array<char, size + 1>;

    bool isKnown() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_text.front() != '\0';
    }

    std::mutex m_mutex;
    Text m_text{};
};

/// What the process remembers. The number behind each unknown value is what callers are told until it is known.
struct Caches {
    TextCache<7> unitId;
    WordCache<std::uint32_t, 0> unitHwSwId;
    WordCache<std::uint32_t, 0> unitHwId;
    TextCache<13> unitProductionCode;
    TextCache<17> unitSerialNumber;
    WordCache<std::int32_t, 26> unitType;
    WordCache<std::int32_t, 80> unitVersion;
    WordCache<std::uint32_t, 3> wimRatType;
    WordCache<std::uint32_t, 64> moduleVersion;
    WordCache<std::uint8_t, 0> board;
    WordCache<std::uint8_t, 0> cpu;
    TextCache<7> moduleId;
    TextCache<13> moduleProductionCode;
    TextCache<17> moduleSerialNumber;

    /// For tests, each of which wants a process that knows nothing yet.
    void forget();
};

extern Caches caches;

} // namespace ps::hwapi::board
