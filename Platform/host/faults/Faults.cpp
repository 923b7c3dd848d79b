#include "Faults.hpp"

#include "../pal/AaConfigState.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "Plan.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace mox::host::faults {

Head head;

namespace {

constexpr int warning = 3;
constexpr std::chrono::seconds betweenLines{1};

using Clock = std::chrono::steady_clock;

/// A fault as this process has met it.
struct Met {
    std::uint64_t id = 0;
    Rule rule;
    bool isOurs = false;
    std::uint64_t calls = 0;
    std::uint64_t fired = 0;
    Clock::time_point told;
};

struct Process {
    std::mutex mutex; ///< guards what follows
    std::array<Met, slotCount> met;
    std::string service;
    std::uint16_t node = 0;
};

/// Never destroyed: calls come until the very end of the process.
Process& process() {
    static auto& instance = *new Process;
    return instance;
}

std::atomic<Slot*> slots{nullptr};
std::atomic<bool> spared{false};

void count(Word& counter, std::uint64_t id) {
    std::uint64_t before = counter.load(std::memory_order_relaxed);
    while ((before & ~countMask) == counterOf(id) &&
           !counter.compare_exchange_weak(before, before + 1, std::memory_order_relaxed)) {
    }
}

/// Reads a slot's fault if it is another one than before. @return whether there is one for this process
bool isFaultOfThis(Process& self, Met& met, const Slot& slot) {
    const std::uint64_t id = slot.id.load(std::memory_order_acquire);
    if (id == 0)
        return false;
    if (met.id != id) {
        const auto fault = readSlot(slot);
        if (!fault)
            return false;
        met = Met();
        met.id = fault->id;
        met.rule = fault->rule;
        met.isOurs = (met.rule.node == 0 || met.rule.node == self.node) &&
                     (met.rule.service.empty() || met.rule.service == self.service);
    }
    return met.isOurs;
}

bool isDue(const Met& met) {
    return met.calls >= met.rule.first && met.calls - met.rule.first < met.rule.times;
}

Due fire(Met& met, Slot& slot) {
    count(slot.fired, met.id);
    Due due;
    due.id = static_cast<std::uint32_t>(met.id);
    due.action = met.rule.action;
    due.result = met.rule.result;
    due.delayUs = met.rule.delayUs;
    due.nth = ++met.fired;
    const Clock::time_point now = Clock::now();
    due.isTold = met.fired == 1 || now - met.told >= betweenLines;
    if (due.isTold)
        met.told = now;
    return due;
}

bool mapHead(int fd, std::string& why) {
    if (::sysconf(_SC_PAGESIZE) > static_cast<long>(pageSize)) {
        why = "memory pages of this machine are larger than " + std::to_string(pageSize) + " bytes";
        return false;
    }
    // over the process's own page, which is as empty as a new file
    if (::mmap(&head, sizeof(Head), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, fd, 0) == MAP_FAILED) {
        why = std::strerror(errno);
        return false;
    }
    return true;
}

bool map(int fd, std::string& why) {
    void* const memory =
        ::mmap(nullptr, slotCount * sizeof(Slot), PROT_READ | PROT_WRITE, MAP_SHARED, fd, sizeof(Head));
    if (memory == MAP_FAILED) {
        why = std::strerror(errno);
        return false;
    }
    slots.store(static_cast<Slot*>(memory), std::memory_order_release);
    return mapHead(fd, why) && checkMark(head, why);
}

} // namespace

void attach(const Run& run) {
    if (spared)
        return;
    {
        const std::lock_guard<std::mutex> guard(process().mutex);
        process().service = ownService();
        process().node = run.node();
    }
    std::string why;
    const int fd = openPlanFile(run.path(), why);
    if (fd < 0 || !map(fd, why)) {
        slots.store(nullptr, std::memory_order_release);
        logPlatform(warning, "no fault can be planned for this process: %s", why.c_str());
    }
    if (fd >= 0)
        ::close(fd);
}

void spareThisProcess() {
    spared = true;
}

std::string ownService() {
    const char* told = std::getenv("MOX_SERVICE");
    if (told != nullptr && *told != '\0')
        return told;
    const std::string_view program = program_invocation_short_name;
    constexpr std::string_view begin = "MOX";
    constexpr std::string_view end = "Exe";
    const bool isService = program.size() > begin.size() + end.size() && program.substr(0, begin.size()) == begin &&
                           program.substr(program.size() - end.size()) == end;
    return std::string(isService ? program.substr(begin.size(), program.size() - begin.size() - end.size()) : program);
}

Due look(std::string_view function) {
    Slot* const all = slots.load(std::memory_order_acquire);
    if (all == nullptr)
        return {};
    Process& self = process();
    const std::lock_guard<std::mutex> guard(self.mutex);
    bool isWatched = false;
    bool forgets = false;
    std::size_t first = slotCount;
    for (std::size_t i = 0; i < slotCount; ++i) {
        Met& met = self.met[i];
        if (!isFaultOfThis(self, met, all[i]) || met.rule.function != function)
            continue;
        ++met.calls;
        count(all[i].seen, met.id);
        isWatched = isWatched || met.rule.action == Action::stuck;
        forgets = forgets || (met.rule.action == Action::stuck && met.calls == 1);
        if (isDue(met) && (first == slotCount || met.id < self.met[first].id))
            first = i;
    }
    Due due = first == slotCount ? Due() : fire(self.met[first], all[first]);
    due.isWatched = isWatched;
    due.forgets = forgets;
    return due;
}

void joinRun() {
    std::string why; // told by the call itself, which tries the same
    if (!config::started())
        Run::attach(why);
}

} // namespace mox::host::faults
