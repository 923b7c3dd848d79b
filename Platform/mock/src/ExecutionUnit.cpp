#include "mock/src/ExecutionUnit.hpp"

#include "mock/src/Call.hpp"

#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

namespace mox::mock {
namespace {

constexpr std::uint32_t largestArgument = 4096;

struct Start {
    TAaProEuEntry entry = nullptr;
    std::vector<std::max_align_t> argument; ///< the block, aligned for any type
    bool hasArgument = false;
    Handle handle;
};

/// Ends the books of an execution unit also when its thread is cancelled or unwound.
struct AtEnd {
    std::unique_ptr<Start> start;
    ~AtEnd() {
        strikeAll(Kind::registration, std::this_thread::get_id());
        strike(Kind::executionUnit, start->handle);
    }
};

void* run(void* block) {
    Start* start = nullptr;
    std::memcpy(&start, block, sizeof start);
    const AtEnd end{std::unique_ptr<Start>(start)};
    return start->entry(start->hasArgument ? start->argument.data() : nullptr);
}

void enterUnit(const char* creator, const char* name, const Handle& handle) {
    Entry entry;
    entry.kind = Kind::executionUnit;
    entry.handle = handle;
    entry.detail = name == nullptr ? "" : name;
    entry.opener.function = creator;
    if (Call::current() != nullptr)
        entry.opener = Call::current()->id();
    enter(std::move(entry));
}

} // namespace

EAaProEuRetVal
createWatched(const char* creator, const char* name, TAaProEuEntry entry, const void* argument,
              std::uint32_t argumentSize,
              const std::function<EAaProEuRetVal(TAaProEuEntry, const void* argument, std::uint32_t size)>& create) {
    if (entry == nullptr || argumentSize > largestArgument || (argument == nullptr && argumentSize != 0))
        return create(entry, argument, argumentSize); // for the platform to refuse

    auto start = std::make_unique<Start>();
    start->entry = entry;
    start->handle = handleOf(word(start.get()));
    start->hasArgument = argumentSize != 0;
    start->argument.resize((argumentSize + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t));
    if (argumentSize != 0)
        std::memcpy(start->argument.data(), argument, argumentSize);
    const Handle handle = start->handle;
    enterUnit(creator, name, handle);

    Start* const handedOver = start.release();
    const EAaProEuRetVal result = create(run, &handedOver, sizeof handedOver);
    if (result != EAaProEuRetVal_NoError) {
        strike(Kind::executionUnit, handle);
        start.reset(handedOver);
    }
    return result;
}

} // namespace mox::mock
