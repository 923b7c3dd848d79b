#pragma once
/// The ledger: what was taken from the platform and not given back, and by which call.
///
/// A test that links the doubles and ends with something open fails, and the failure names the call. To look oneself:
///
///     const Mark mark = ledger().mark();
///     sut.run();
///     for (const OpenItem& item : ledger().open(mark))
///         std::cout << item.text() << '\n'; // semaphore 0x55d0c8 from AaSemCreateC, its call 3
///     ledger().forgive(mark);               // what the library keeps for the life of the process
///
/// Messages are open from their creation or receipt until they are sent or destroyed; memory blocks once for each
/// reference; one-shot timers until they expire by the platform's clock; execution units until their function has
/// returned; registrations of an execution unit until it ends.
/// Any thread.
#include <cstdint>
#include <string>
#include <vector>

namespace mox::mock {

enum class Kind {
    message,
    memory,
    semaphore,
    timer,
    file,
    executionUnit,
    subscription,
    registration,
    xmlRoot,
    srioHandle
};

/// @return the kind in words: "memory block"
const char* text(Kind kind);

/// Something that is open.
struct OpenItem {
    Kind kind = Kind::message;
    std::string handle;       ///< address, number or name
    std::string function;     ///< that opened it
    std::uint64_t nth = 0;    ///< which call of that function since the process began
    std::uint64_t number = 0; ///< which call of all functions
    std::string text() const;
};

/// A moment in the order of all calls.
struct Mark {
    std::uint64_t number = 0;
};

class Ledger {
public:
    /// @return now
    Mark mark() const;
    /// @return what was opened after the mark and is open, in the order of opening. Does not block.
    std::vector<OpenItem> open(Mark since = {}) const;
    /// @return how many of a kind are open
    std::size_t count(Kind kind) const;
    /// Waits until every execution unit that was created after the mark has ended.
    /// @return false when the time limit has passed first
    bool awaitExecutionUnits(Mark since, unsigned limitMs) const;
    /// Takes what is open and was opened after the mark out of the books; its owner may still give it back.
    void forgive(Mark since = {});
    /// Gives handles back to the platform whose release was answered by a mock or a fault. Done after each test.
    void settle();
};

/// The ledger of the process.
Ledger& ledger();

} // namespace mox::mock
