#include "Semaphore.hpp"

#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace mox::host {

namespace {

/// How often a thread's waits paid off awake is a property of the thread's partners, not of one semaphore.
AdaptiveWait& waitOfThread() {
    thread_local AdaptiveWait wait;
    return wait;
}

std::string pathOf(const char* name) {
    const Run* run = Run::current();
    return (run != nullptr ? run->nodePath() + "/sem/" : "/dev/shm/mox-alone-" + std::to_string(getuid()) + "-") + name;
}

int refused(const char* name) {
    logPlatform(4, "named semaphore %s: %s", name, std::strerror(errno));
    return -1;
}

/// The semaphore's file: one that is there, or one that is complete before it gets its name.
int openFile(const char* name, std::uint32_t initialCount) {
    const std::string path = pathOf(name);
    mkdir(path.substr(0, path.rfind('/')).c_str(), 0777);
    for (;;) {
        const int known = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
        if (known >= 0 || errno != ENOENT) {
            return known >= 0 ? known : refused(name);
        }
        std::string draft = path + ".XXXXXX";
        const int fd = mkostemp(draft.data(), O_CLOEXEC);
        if (fd < 0) {
            return refused(name);
        }
        const std::uint64_t word = initialCount;
        const bool complete = ::write(fd, &word, sizeof(word)) == sizeof(word) && fchmod(fd, 0666) == 0;
        const bool first = complete && link(draft.c_str(), path.c_str()) == 0;
        const int error = errno;
        ::unlink(draft.c_str());
        if (first) {
            return fd;
        }
        ::close(fd);
        if (error != EEXIST) {
            errno = error;
            return refused(name);
        }
    }
}

} // namespace

SharedCount* SharedCount::open(const char* name, std::uint32_t initialCount) {
    const NoCancellation whileFilesAreOpen;
    const int fd = openFile(name, initialCount);
    if (fd < 0) {
        return nullptr;
    }
    void* memory = mmap(nullptr, sizeof(SharedCount), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    if (memory == MAP_FAILED) {
        refused(name);
        return nullptr;
    }
    return static_cast<SharedCount*>(memory);
}

void SharedCount::close(SharedCount* count) {
    munmap(count, sizeof(SharedCount));
}

bool SharedCount::unlink(const char* name) {
    return ::unlink(pathOf(name).c_str()) == 0;
}

/// Takes one count, and with it `waiters` off the number of sleepers.
bool Semaphore::tryTake(std::uint64_t waiters) {
    std::uint64_t word = m_word->load(std::memory_order_relaxed);
    while (countOf(word) != 0) {
        if (m_word->compare_exchange_weak(word, word - 1 - waiters, std::memory_order_acquire,
                                          std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

void Semaphore::waitForPost() {
    if (waitOfThread()([this] { return tryTake(0); })) {
        return;
    }
    m_word->fetch_add(oneWaiter, std::memory_order_relaxed);
    const FutexScope scope = m_shared != nullptr ? FutexScope::shared : FutexScope::process;
    while (!tryTake(oneWaiter)) {
        futexWait(futexWord(), 0, -1, scope);
    }
}

} // namespace mox::host
