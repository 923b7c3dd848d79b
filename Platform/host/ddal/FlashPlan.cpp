#include "FlashPlan.hpp"

#include "../pal/TypedValue.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "FlashOperations.hpp"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <mutex>

namespace mox::host {

namespace {

constexpr int error = 4;

struct KindRow {
    FlashPlan::Kind kind;
    std::string_view name;
};

constexpr std::array kindTable{KindRow{FlashPlan::Kind::cut, "cut:"}, KindRow{FlashPlan::Kind::fail, "fail:"}};

FlashPlan planOfEnvironment() {
    const char* text = std::getenv("MOX_FLASH_PLAN");
    if (text == nullptr || *text == '\0')
        return {};
    const auto plan = parseFlashPlan(text);
    if (!plan)
        logPlatform(error, "MOX_FLASH_PLAN: expected 'cut:N' or 'fail:N' with an operation from 1, got '%s'", text);
    return plan.value_or(FlashPlan());
}

struct Operations {
    std::mutex mutex;
    FlashPlan plan = planOfEnvironment();
    std::uint64_t begun = 0;
};

Operations& operations() {
    // Never destroyed: services may write while the process ends.
    static auto* const instance = new Operations;
    return *instance;
}

std::string planKey(std::uint16_t node) {
    return hex4(node) + "/flash/plan";
}

std::string textOf(FlashPlan plan) {
    for (const KindRow& row : kindTable)
        if (row.kind == plan.kind)
            return std::string(row.name) + std::to_string(plan.operation);
    return "none";
}

} // namespace

std::optional<FlashPlan> parseFlashPlan(std::string_view text) {
    if (text == "none")
        return FlashPlan();
    for (const KindRow& row : kindTable) {
        if (text.substr(0, row.name.size()) != row.name)
            continue;
        const auto operation = parseNumber(text.substr(row.name.size()));
        return operation.value_or(0) != 0 ? std::optional(FlashPlan{row.kind, *operation}) : std::nullopt;
    }
    return std::nullopt;
}

void planFlash(FlashPlan plan) {
    Operations& all = operations();
    const std::lock_guard lock(all.mutex);
    all.plan = plan;
    all.begun = 0;
}

std::uint64_t flashOperations() {
    Operations& all = operations();
    const std::lock_guard lock(all.mutex);
    return all.begun;
}

bool planFlashOf(const Run& run, std::uint16_t node, FlashPlan plan) {
    Store::Write write(run.store());
    if (plan.kind == FlashPlan::Kind::none)
        write.erase(Table::devices, planKey(node));
    else
        write.put(Table::devices, planKey(node), textOf(plan));
    return write.commit();
}

void takePlanOf(const Run& run, std::uint16_t node) {
    const std::string key = planKey(node);
    if (!run.store().get(Table::devices, key)) // without waiting for a writer, as nearly always
        return;
    // Whoever erases it has it: two updates may begin at once.
    Store::Write write(run.store());
    const auto text = write.get(Table::devices, key);
    if (!text || !write.erase(Table::devices, key) || !write.commit())
        return;
    const FlashPlan plan = parseFlashPlan(*text).value_or(FlashPlan());
    Operations& all = operations();
    const std::lock_guard lock(all.mutex);
    all.plan = {plan.kind, all.begun + plan.operation};
}

FlashPlan::Kind beginFlashOperation() {
    Operations& all = operations();
    const std::lock_guard lock(all.mutex);
    ++all.begun;
    return all.begun == all.plan.operation ? all.plan.kind : FlashPlan::Kind::none;
}

bool endFlashOperation(FlashPlan::Kind planned) {
    if (planned == FlashPlan::Kind::cut)
        ::kill(::getpid(), SIGKILL);
    return planned == FlashPlan::Kind::none;
}

} // namespace mox::host
