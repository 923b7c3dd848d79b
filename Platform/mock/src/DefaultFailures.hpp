#pragma once
/// How each function of the platform fails when a test does not care how: as the workstation's planned faults do.
#include "host/faults/Result.hpp"
#include "mock/src/FunctionRecord.hpp"

#include <optional>

namespace mox::mock {

/// @return the result of a failure; nothing for a function that cannot fail
std::optional<FaultValue> defaultFailure(const FunctionRecord& record);

/// The same result as the workstation describes it.
host::faults::ResultShape shapeOf(const ResultType& type);

} // namespace mox::mock
