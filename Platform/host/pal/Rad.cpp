#include "Rad.hpp"

#include "../run/Run.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>

namespace mox::host::rad {
namespace {

constexpr std::size_t fileSize = std::size_t{maxDomains} * maxIndices * sizeof(Word);
constexpr std::uint64_t mark = 0x0131'4441'5258'4F4D; // "MOXRAD1" and a 1: a file of this layout begins with it
constexpr const char* fileName = "rad";

constexpr std::uint64_t packed(State state, std::uint32_t value) {
    return std::uint64_t{static_cast<std::uint32_t>(state)} << 32 | value;
}

constexpr State stateOf(std::uint64_t word) {
    return static_cast<State>(word >> 32);
}

std::string failure(const char* what) {
    return std::string("R&D values: cannot ") + what + " nodes/<nid>/" + fileName + ": " + std::strerror(errno);
}

Word* map(int fd) {
    const int flags = fd >= 0 ? MAP_SHARED : MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
    void* memory = ::mmap(nullptr, fileSize, PROT_READ | PROT_WRITE, flags, fd, 0);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    ::madvise(memory, fileSize, MADV_DONTDUMP);
    return static_cast<Word*>(memory);
}

/// Processes that start at the same time all do this; the outcome is the same.
bool prepare(int fd, std::string& why) {
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        why = failure("look at");
        return false;
    }
    if (status.st_size < static_cast<off_t>(fileSize) && ::ftruncate(fd, fileSize) != 0) {
        why = failure("enlarge");
        return false;
    }
    return true;
}

} // namespace

std::atomic<Word*> own{nullptr};

std::unique_ptr<Words> Words::open(int directory, std::string& why) {
    const int fd = ::openat(directory, fileName, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0) {
        why = failure("open");
        return nullptr;
    }
    Word* words = prepare(fd, why) ? map(fd) : nullptr;
    if (words == nullptr) {
        why = why.empty() ? failure("map") : why;
        ::close(fd);
        return nullptr;
    }
    std::unique_ptr<Words> result(new Words(words, fd));
    std::uint64_t found = 0;
    if (!words[0].compare_exchange_strong(found, mark) && found != mark) {
        why = std::string("R&D values: nodes/<nid>/") + fileName + " has another layout than this program expects";
        return nullptr;
    }
    return result;
}

std::unique_ptr<Words> Words::alone(std::string& why) {
    Word* words = map(-1);
    if (words == nullptr) {
        why = std::string("R&D values: no memory: ") + std::strerror(errno);
        return nullptr;
    }
    return std::unique_ptr<Words>(new Words(words, -1));
}

Words::~Words() {
    ::munmap(static_cast<void*>(m_words), fileSize);
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

void Words::forEachTouched(const std::function<void(std::uint32_t id)>& each) const {
    constexpr off_t first = slotOf(0x10000) * sizeof(Word);
    constexpr auto last = static_cast<off_t>(fileSize);
    for (off_t begin = first; begin < last;) {
        const off_t data = m_fd >= 0 ? ::lseek(m_fd, begin, SEEK_DATA) : begin;
        if (data < 0 && errno == ENXIO) {
            return;
        }
        // A file system that knows no holes has the file searched from end to end.
        begin = data < 0 ? begin : data;
        const off_t hole = m_fd >= 0 && data >= 0 ? ::lseek(m_fd, begin, SEEK_HOLE) : last;
        const off_t end = hole > begin && hole < last ? hole : last;
        for (auto slot = static_cast<std::size_t>(begin) / sizeof(Word);
             slot < static_cast<std::size_t>(end) / sizeof(Word); ++slot) {
            if (stateOf(m_words[slot].load(std::memory_order_relaxed)) != State::unset) {
                each(static_cast<std::uint32_t>(slot / maxIndices << 16 | slot % maxIndices));
            }
        }
        begin = end;
    }
}

Value Words::read(std::uint32_t id) const {
    if (!inRange(id)) {
        return {};
    }
    const std::uint64_t word = m_words[slotOf(id)].load(std::memory_order_relaxed);
    return {static_cast<std::uint32_t>(word), stateOf(word)};
}

bool Words::set(std::uint32_t id, std::uint32_t value) {
    if (!inRange(id)) {
        return false;
    }
    m_words[slotOf(id)].store(setWord(value), std::memory_order_relaxed);
    return true;
}

bool Words::setDefault(std::uint32_t id, std::uint32_t value) {
    if (!inRange(id)) {
        return false;
    }
    Word& word = m_words[slotOf(id)];
    std::uint64_t before = word.load(std::memory_order_relaxed);
    while (stateOf(before) != State::set &&
           !word.compare_exchange_weak(before, packed(State::byDefault, value), std::memory_order_relaxed)) {
    }
    return true;
}

bool Words::reset(std::uint32_t id, std::uint32_t defaultValue) {
    if (!inRange(id)) {
        return false;
    }
    m_words[slotOf(id)].store(packed(State::byDefault, defaultValue), std::memory_order_relaxed);
    return true;
}

namespace {

std::mutex attachMutex;
std::unique_ptr<Words>& attached() {
    static auto& words = *new std::unique_ptr<Words>;
    return words;
}

} // namespace

Words* ownWords() {
    const std::lock_guard lock(attachMutex);
    return attached().get();
}

bool attach(std::string& why) {
    const std::lock_guard lock(attachMutex);
    if (attached()) {
        return true;
    }
    const Run* run = Run::current();
    attached() = run != nullptr ? Words::open(run->nodeFd(), why) : Words::alone(why);
    own.store(attached() ? attached()->all() : nullptr, std::memory_order_relaxed);
    return attached() != nullptr;
}

} // namespace mox::host::rad
