#pragma once
/// The planned faults as a process of the run meets them: looked up by each call of a platform function that comes from
/// outside the platform (binding/bind.hpp). While nothing is planned, that is one read of a word of the run.
#include "PlanFile.hpp"
#include "Rule.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host {

class Run;

namespace faults {

/// The first page of the run's file once the process has joined a run; empty before, and in a process that stands
/// alone.
extern Head head __attribute__((visibility("hidden")));

/// Whether a fault may be planned for a function. @param bit  its functionBit
inline bool mayBePlanned(std::uint32_t bit) noexcept {
    return __builtin_expect((head.functions.load(std::memory_order_relaxed) & bit) != 0, false);
}

/// Maps the faults of a run; for Run::attach. Without them a process goes on and says so in the log.
void attach(const Run& run);

/// Lets no fault apply to this process: a tool that looks into a run is not part of it. Before it joins the run.
void spareThisProcess();

/// The service that this process is: MOX_SERVICE, else the name in the program's MOX<Name>Exe, else the program's name.
std::string ownService();

/// What becomes of one call.
struct Due {
    std::uint32_t id = 0; ///< 0: it is carried out
    Action action = Action::pass;
    std::uint64_t result = 0;
    std::uint64_t delayUs = 0;
    std::uint64_t nth = 0;  ///< how many of this process the fault has met, this one included
    bool isTold = false;    ///< a log line is due
    bool isWatched = false; ///< a planned fault repeats answers of the function
    bool forgets = false;   ///< it is new: answers from before it was planned are not its own
};

/// Counts a call and looks for the fault that it meets: of several the one that was planned first. Any thread.
Due look(std::string_view function);

/// Whether a call of this function joins the run, so that it can be faulted itself.
constexpr bool joinsRun(std::string_view function) {
    return function == "AaConfigEarlyStartup";
}

/// Joins the run as AaConfigEarlyStartup is about to do.
void joinRun();

} // namespace faults
} // namespace mox::host
