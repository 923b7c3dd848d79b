#pragma once
/// How each function of the platform fails when a test does not care how.
#include "mock/src/FunctionRecord.hpp"

#include <optional>

namespace mox::mock {

/// @return the result of a failure; nothing for a function that cannot fail
std::optional<FaultValue> defaultFailure(const FunctionRecord& record);

} // namespace mox::mock
