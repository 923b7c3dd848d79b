#pragma once
#include <cstdint>

namespace ps::hwapi::common {

/// Size of the argument block of an execution unit: one pointer.
constexpr std::uint32_t euArgumentSize = sizeof(void*);

#ifdef __arm__
// The board's platform copies argument blocks of 4 bytes.
static_assert(euArgumentSize == 4);
#endif

} // namespace ps::hwapi::common
