#pragma once
/// The row of one platform function: its result type, its calls, its faults.
#include "mock/Faults.hpp"
#include "mock/FunctionTable.hpp"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <typeindex>
#include <vector>

namespace mox::mock {

struct FaultRule {
    std::uint64_t first = 1; ///< call that is the first to fail, counted from the planning
    std::uint64_t last = 1;  ///< the last one
    std::uint64_t seen = 0;
    std::uint64_t fired = 0;
    bool active = true;
    FaultValue value;
    std::string lastFailed; ///< function that it has failed last
};

/// What a function answers with.
struct ResultType {
    FaultValue::Kind kind = FaultValue::Kind::none;
    std::type_index type = std::type_index(typeid(void));
    bool isEnum = false;
    bool isSigned = false;
    unsigned bytes = 0;
};

struct FunctionRecord {
    const char* name = "";
    ResultType result;
    std::optional<FaultValue> failure; ///< when no result was chosen; nothing: it cannot fail
    std::uint64_t calls = 0;
    std::vector<std::uint64_t> arguments; ///< of the newest call
    std::vector<std::shared_ptr<FaultRule>> faults;
};

/// Faults that fail functions of any name; guarded as the records are.
std::vector<std::shared_ptr<FaultRule>>& faultsOfAny();

/// Guards all records, faults and the ledger. Nothing of the platform is called while it is held.
std::mutex& bookMutex();

/// The record of a function. Throws std::invalid_argument that names the nearest function when there is none.
FunctionRecord& functionRecord(const std::string& name);

/// All records by name.
std::map<std::string, FunctionRecord>& functionRecords();

} // namespace mox::mock
