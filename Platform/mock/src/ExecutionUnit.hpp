#pragma once
/// Execution units in the ledger: open until their function has returned.
#include <pal/AaPro.h>

#include <cstdint>
#include <functional>

namespace mox::mock {

/// Creates an execution unit through `create`, which is handed a function that tells the ledger of its end.
/// @param creator  name of the platform function
/// @return what `create` answers
EAaProEuRetVal
createWatched(const char* creator, const char* name, TAaProEuEntry entry, const void* argument,
              std::uint32_t argumentSize,
              const std::function<EAaProEuRetVal(TAaProEuEntry, const void* argument, std::uint32_t size)>& create);

} // namespace mox::mock
