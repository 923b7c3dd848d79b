#pragma once
#include "FwComponent.hpp"
#include "Output.hpp"

namespace mox::tools {

/// What a decision about a component is made of: the board, the markers, every file of the directory with what the
/// library answers for it, and the versions. Only reads. The decision itself is the library's.
Json explanationOf(const FwComponent& component, const std::string& directory);

/// The same for people.
void printExplanation(const Output& output, const Json& explanation);

} // namespace mox::tools
