#pragma once

namespace ps::hwapi::board::constant {

/// Feature id of every line that identification logs.
constexpr unsigned int featureId = 0x20063;

} // namespace ps::hwapi::board::constant
