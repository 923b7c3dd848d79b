#pragma once
/// The file "faults" of a run, as it lies in memory; docs/formats/faults.md describes it. Processes read and count
/// without a lock; who plans or clears holds the lock of the file (flock), which ends with the process.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host::faults {

using Word = std::atomic<std::uint64_t>;
static_assert(Word::is_always_lock_free, "words are shared by processes");

constexpr std::size_t pageSize = 4096;
constexpr std::size_t slotCount = 128;
constexpr std::size_t nameWords = 8;
/// Most characters of a function's or service's name.
constexpr std::size_t maxName = nameWords * sizeof(Word) - 1;

/// The first page. Each process has it at a fixed place of its own data, so that a call is checked without a pointer.
struct alignas(pageSize) Head {
    Word mark;
    Word lastId; ///< of the newest fault
    std::uint8_t unused[48];
    /// A bit for each planned function (see functionBit), and perhaps more.
    std::atomic<std::uint32_t> functions;
};
static_assert(sizeof(Head) == pageSize && offsetof(Head, functions) == 64, "the layout of the file");

/// One fault. The id is written last and erased first; a reader that finds the same id before and after has read one
/// fault. Other words are written with release and read with acquire, which keeps them between the two.
struct Slot {
    Word id; ///< 0: free
    Word action;
    Word node;
    Word result;
    Word delayUs;
    Word first;
    Word times;
    Word seen;  ///< see countIn
    Word fired; ///< see countIn
    Word function[nameWords];
    Word service[nameWords];
    Word unused[7];
};
static_assert(sizeof(Slot) == 256, "the layout of the file");

constexpr std::size_t planFileSize = sizeof(Head) + slotCount * sizeof(Slot);

/// Counters hold the low bits of the fault's id above the count: a process that is late counts nothing for the slot's
/// next fault.
constexpr unsigned countBits = 48;
constexpr std::uint64_t countMask = (std::uint64_t{1} << countBits) - 1;

constexpr std::uint64_t counterOf(std::uint64_t id) {
    return id << countBits;
}

/// The bit of Head::functions that a function has.
constexpr std::uint32_t functionBit(std::string_view name) {
    std::uint32_t hash = 2166136261U; // FNV-1a
    for (const char letter : name)
        hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    return std::uint32_t{1} << ((hash ^ hash >> 16U) & 31U);
}

/// Opens a run's file and makes it if need be.
/// @param[out] why  one line for a person when the result is -1
/// @return descriptor, the caller's
int openPlanFile(const std::string& runPath, std::string& why);

/// Puts the mark into a new file. @return false, and why, for a file of another layout
bool checkMark(Head& head, std::string& why);

} // namespace mox::host::faults
