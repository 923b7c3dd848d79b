#pragma once
#include <array>
#include <cstdint>

namespace ps::hwapi::common {

/// One registered R&D parameter.
struct RadParameter {
    std::uint32_t id;           ///< domain in the upper 16 bits, index in the lower 16
    const char* name;           ///< what operators see; "EAC" stands for two ids
    std::uint32_t defaultValue; ///< value until somebody sets another one
};

/// @name The registered parameters, by ascending id
/// @{
extern const std::array<RadParameter, 170> hwaParameters;     ///< domain "HWA"
extern const std::array<RadParameter, 37> hwaStateParameters; ///< domain "HWAState"
/// @}

} // namespace ps::hwapi::common
