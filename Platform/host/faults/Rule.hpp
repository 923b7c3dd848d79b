#pragma once
/// A fault as it is planned: which calls of which function, and what becomes of them.
#include <cstdint>
#include <string>

namespace mox::host::faults {

/// What becomes of a call. The numbers stand in the run's file: never changed.
enum class Action : std::uint32_t {
    pass = 0,   ///< it is carried out; for faults that only delay
    answer = 1, ///< it is not carried out and answers the rule's result
    stuck = 2,  ///< it is not carried out and answers what the last one that was let through has answered
    garbage = 3 ///< it is carried out, then its outputs are overwritten
};

constexpr std::uint64_t forEver = UINT64_MAX;

struct Rule {
    std::string function;
    std::string service;    ///< only its processes; empty: every process
    std::uint16_t node = 0; ///< only its processes; 0: of every node
    Action action = Action::answer;
    std::uint64_t result = 0; ///< bits of what calls answer
    std::uint64_t delayUs = 0;
    std::uint64_t first = 1;       ///< call of a process that is the first to be faulted, counted from the planning
    std::uint64_t times = forEver; ///< how many in a row
};

/// A planned fault, and what has become of it in all processes.
struct PlannedFault {
    std::uint32_t id = 0;
    Rule rule;
    std::uint64_t seen = 0;  ///< calls of the function
    std::uint64_t fired = 0; ///< those that were faulted
};

} // namespace mox::host::faults
