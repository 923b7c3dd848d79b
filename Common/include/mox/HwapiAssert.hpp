#pragma once
#include <exception>

namespace ps::hwapi::common {

/// An assertion failed. Stands outside the CHwapiException family on purpose, so that no handler of that family takes
/// a programming error for a failure of the hardware. what() is the standard library's default text.
class AssertionException : public std::exception {};

/// Ends a failed assertion: logs one error line and throws.
/// Failed assertions of the boost headers arrive here too.
/// @param expression  text of the condition that did not hold
/// @param file        source path of the assertion
/// @param line        line of the assertion
/// @param function    function that asserts
/// @throws AssertionException always
/// Any thread.
[[noreturn]] void hwapiAssertFail(const char* expression, const char* file, unsigned int line, const char* function);

} // namespace ps::hwapi::common
