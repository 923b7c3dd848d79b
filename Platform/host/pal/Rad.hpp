#pragma once
/// R&D values: one word for each parameter, in a file that every process of the node maps (nodes/<nid>/rad). Reading or
/// writing one is an atomic access without a system call. A process that stands alone has words of its own.
///
/// The file is sparse: 32 MiB by its size, a few pages by what it occupies. Each word holds the value in its lower half
/// and the state in its upper half; a word that was never touched is unset, with the value 0. The words of domain 0,
/// which no parameter has, begin with a mark by which a file is recognised.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace mox::host::rad {

/// Domains are numbered 1 to maxDomains - 1, indices 0 to maxIndices - 1.
constexpr std::uint32_t maxDomains = 1024;
constexpr std::uint32_t maxIndices = 4096;

using Word = std::atomic<std::uint64_t>;
static_assert(Word::is_always_lock_free, "words are shared by processes");

/// Who gave a parameter its value. The numbers stand in the file: never changed.
enum class State : std::uint32_t { unset = 0, byDefault = 1, set = 2 };

struct Value {
    std::uint32_t value = 0;
    State state = State::unset;
};

/// The words of one node, mapped. Any thread may call anything; nothing but open() makes a system call.
class Words {
public:
    /// Maps a node's words.
    /// @param directory  open directory nodes/<nid>
    /// @param[out] why   one line for a person when the result is null
    static std::unique_ptr<Words> open(int directory, std::string& why);
    /// Words that nobody shares.
    static std::unique_ptr<Words> alone(std::string& why);
    ~Words();
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;

    /// The unset value for an id out of range.
    Value read(std::uint32_t id) const;
    /// @return false: id out of range
    bool set(std::uint32_t id, std::uint32_t value);
    /// Gives an unset parameter, or one that still has a default, its default. @return false: id out of range
    bool setDefault(std::uint32_t id, std::uint32_t value);
    /// Forgets what was set: the parameter has its default again. @return false: id out of range
    bool reset(std::uint32_t id, std::uint32_t defaultValue);

    /// Calls `each` for every parameter that has a default or was set, by id. Looks only at pages that the file has.
    void forEachTouched(const std::function<void(std::uint32_t id)>& each) const;

    Word* all() const { return m_words; }

private:
    Words(Word* words, int fd) : m_words(words), m_fd(fd) {}
    Word* m_words;
    int m_fd; ///< of the file; -1 for words that nobody shares
};

/// The word of a parameter that somebody has set.
constexpr std::uint64_t setWord(std::uint32_t value) {
    return std::uint64_t{static_cast<std::uint32_t>(State::set)} << 32 | value;
}

/// Whether there is a word for the id.
constexpr bool inRange(std::uint32_t id) {
    const std::uint32_t domain = id >> 16;
    return domain != 0 && domain < maxDomains && (id & 0xFFFF) < maxIndices;
}

constexpr std::size_t slotOf(std::uint32_t id) {
    return std::size_t{id >> 16} * maxIndices + (id & 0xFFFF);
}

/// The words of the own node; null before attach(). Never unmapped: threads may log to the end.
extern std::atomic<Word*> own;

/// The value of a parameter of the own node; 0 for one that nobody named or set, and for ids out of range.
inline std::uint32_t value(std::uint32_t id) {
    const Word* const words = own.load(std::memory_order_relaxed);
    if (words == nullptr || !inRange(id)) {
        return 0;
    }
    return static_cast<std::uint32_t>(words[slotOf(id)].load(std::memory_order_relaxed));
}

/// The own node's words; null before attach().
Words* ownWords();

/// Maps the words of the node, or private ones when the process is in no run. A second call changes nothing.
/// @return false, and in `why` one line for a person, when they cannot be mapped
bool attach(std::string& why);

} // namespace mox::host::rad
