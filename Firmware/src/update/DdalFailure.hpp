#pragma once
/// Logs that a call of the device-driver layer failed, with the text of its result code.
/// @param function  who called
/// @param call      name of the function that failed
/// @param code      its result
/// Any thread. Does not block.
namespace ps::hwapi::common::update {

void logDdalFailure(const char* function, const char* call, int code);

} // namespace ps::hwapi::common::update
