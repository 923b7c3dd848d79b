#include "Plan.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace mox::host::faults {
namespace {

void writeName(Word* words, const std::string& name) {
    std::array<std::uint64_t, nameWords> packed{};
    std::memcpy(packed.data(), name.data(), std::min(name.size(), maxName));
    for (std::size_t i = 0; i < nameWords; ++i)
        words[i].store(packed[i], std::memory_order_release);
}

std::string readName(const Word* words) {
    std::array<std::uint64_t, nameWords> packed{};
    for (std::size_t i = 0; i < nameWords; ++i)
        packed[i] = words[i].load(std::memory_order_acquire);
    char text[maxName + 1];
    std::memcpy(text, packed.data(), sizeof text);
    text[maxName] = '\0';
    return text;
}

void writeRule(Slot& slot, std::uint32_t id, const Rule& rule) {
    slot.action.store(static_cast<std::uint64_t>(rule.action), std::memory_order_release);
    slot.node.store(rule.node, std::memory_order_release);
    slot.result.store(rule.result, std::memory_order_release);
    slot.delayUs.store(rule.delayUs, std::memory_order_release);
    slot.first.store(rule.first, std::memory_order_release);
    slot.times.store(rule.times, std::memory_order_release);
    slot.seen.store(counterOf(id), std::memory_order_release);
    slot.fired.store(counterOf(id), std::memory_order_release);
    writeName(slot.function, rule.function);
    writeName(slot.service, rule.service);
    slot.id.store(id, std::memory_order_release);
}

bool isNameUsable(const std::string& name) {
    return name.size() <= maxName && name.find('\0') == std::string::npos;
}

} // namespace

std::optional<PlannedFault> readSlot(const Slot& slot) {
    PlannedFault fault;
    const std::uint64_t id = slot.id.load(std::memory_order_acquire);
    fault.id = static_cast<std::uint32_t>(id);
    fault.rule.action = static_cast<Action>(slot.action.load(std::memory_order_acquire));
    fault.rule.node = static_cast<std::uint16_t>(slot.node.load(std::memory_order_acquire));
    fault.rule.result = slot.result.load(std::memory_order_acquire);
    fault.rule.delayUs = slot.delayUs.load(std::memory_order_acquire);
    fault.rule.first = slot.first.load(std::memory_order_acquire);
    fault.rule.times = slot.times.load(std::memory_order_acquire);
    fault.seen = slot.seen.load(std::memory_order_acquire) & countMask;
    fault.fired = slot.fired.load(std::memory_order_acquire) & countMask;
    fault.rule.function = readName(slot.function);
    fault.rule.service = readName(slot.service);
    return id != 0 && slot.id.load(std::memory_order_acquire) == id ? std::optional(fault) : std::nullopt;
}

/// The time in which nobody else plans or clears.
class Plan::Change {
public:
    explicit Change(int fd) : m_fd(fd) {
        while (::flock(m_fd, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~Change() { ::flock(m_fd, LOCK_UN); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

private:
    int m_fd;
};

std::unique_ptr<Plan> Plan::open(const std::string& runPath, std::string& why) {
    const int fd = openPlanFile(runPath, why);
    if (fd < 0)
        return nullptr;
    // room on the disk now, not when a word is written that has none
    const int full = ::posix_fallocate(fd, 0, planFileSize);
    void* memory = full != 0 ? MAP_FAILED : ::mmap(nullptr, planFileSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) {
        why = runPath + "/faults: " + std::strerror(full != 0 ? full : errno);
        ::close(fd);
        return nullptr;
    }
    std::unique_ptr<Plan> plan(new Plan(fd, memory));
    return checkMark(plan->m_head, why) ? std::move(plan) : nullptr;
}

Plan::Plan(int fd, void* memory)
    : m_fd(fd),
      m_memory(memory),
      m_head(*static_cast<Head*>(memory)),
      m_slots(reinterpret_cast<Slot*>(static_cast<char*>(memory) + sizeof(Head))) {}

Plan::~Plan() {
    ::munmap(m_memory, planFileSize);
    ::close(m_fd);
}

/// A process that dies in between leaves bits that nobody needs, never a fault that nobody sees.
std::optional<std::uint32_t> Plan::add(const Rule& rule, std::string& why) {
    if (rule.function.empty() || !isNameUsable(rule.function) || !isNameUsable(rule.service)) {
        why = "expected names of at most " + std::to_string(maxName) + " characters";
        return std::nullopt;
    }
    const Change change(m_fd);
    Slot* const end = m_slots + slotCount;
    Slot* const slot = std::find_if(m_slots, end, [](const Slot& s) { return s.id.load() == 0; });
    if (slot == end) {
        why = "the run has " + std::to_string(slotCount) + " planned faults already: clear some";
        return std::nullopt;
    }
    const auto id = static_cast<std::uint32_t>(m_head.lastId.load() + 1);
    m_head.lastId.store(id);
    m_head.functions.fetch_or(functionBit(rule.function));
    writeRule(*slot, id, rule);
    return id;
}

void Plan::setBits() {
    std::uint32_t bits = 0;
    for (const PlannedFault& fault : list())
        bits |= functionBit(fault.rule.function);
    m_head.functions.store(bits);
}

bool Plan::clear(std::uint32_t id) {
    const Change change(m_fd);
    Slot* const end = m_slots + slotCount;
    Slot* const slot = std::find_if(m_slots, end, [id](const Slot& s) { return id != 0 && s.id.load() == id; });
    if (slot == end)
        return false;
    slot->id.store(0);
    setBits();
    return true;
}

unsigned Plan::clearAll() {
    const Change change(m_fd);
    unsigned count = 0;
    for (std::size_t i = 0; i < slotCount; ++i)
        count += m_slots[i].id.exchange(0) != 0 ? 1U : 0U;
    m_head.functions.store(0);
    return count;
}

std::vector<PlannedFault> Plan::list() const {
    std::vector<PlannedFault> faults;
    for (std::size_t i = 0; i < slotCount; ++i)
        if (auto fault = readSlot(m_slots[i]))
            faults.push_back(std::move(*fault));
    std::sort(faults.begin(), faults.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return faults;
}

} // namespace mox::host::faults
