#pragma once
/// Helpers around the platform's messages, for C and C++.
#include <pal/AaSysLog.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Logs the header of a message in one line: id, sender, receiver, size and flags; for a message with a trailer
/// (message format 3) also the trailer's words.
/// @param level      severity of the line
/// @param featureId  R&D debug flag of who logs
/// @param text       begins the line
/// @param msg        the message, which stays the caller's; null logs nothing
/// A message of format 3 that has no trailer gives a warning instead. Any thread that may read the message.
void palUtilsPrintSicMessageHeader(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text,
                                   const void* msg);

#ifdef __cplusplus
}

namespace ps::hwapi::common::pal::utils {

/// The same for callers in C++.
void printSicMessageHeader(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text, const void* msg);

} // namespace ps::hwapi::common::pal::utils
#endif
