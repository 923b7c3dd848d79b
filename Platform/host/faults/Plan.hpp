#pragma once
/// The planned faults of a run, for whoever plans them. No process of the run has to know: each looks by itself.
///
///     auto plan = faults::Plan::open(run.path(), why);
///     faults::Rule rule;
///     rule.function = "ddal_fpga_update_mod";
///     rule.result = static_cast<std::uint64_t>(DDAL_IO_ERROR);
///     const auto id = plan->add(rule, why);
#include "PlanFile.hpp"
#include "Rule.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mox::host::faults {

/// One thread at a time; any number of processes at once. A call blocks while another process changes the plan.
class Plan {
public:
    /// @param[out] why  one line for a person when the result is null
    static std::unique_ptr<Plan> open(const std::string& runPath, std::string& why);
    ~Plan();
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    /// Plans a fault; calls that begin from now on are counted.
    /// @return its id, which no other fault of the run ever had; nothing, and why, when it cannot be planned
    std::optional<std::uint32_t> add(const Rule& rule, std::string& why);
    /// Ends a fault. @return false: there is none of that id
    bool clear(std::uint32_t id);
    /// Ends all. @return how many
    unsigned clearAll();
    /// By id.
    std::vector<PlannedFault> list() const;

private:
    class Change;
    Plan(int fd, void* memory);

    void setBits();

    int m_fd;
    void* m_memory;
    Head& m_head;
    Slot* m_slots;
};

/// Reads one fault. @return nothing: the slot is free, or changes at this moment
std::optional<PlannedFault> readSlot(const Slot& slot);

} // namespace mox::host::faults
