#pragma once
/// A command in a process of its own.
#include <pal/AaPro.h>

#include <cstdint>
#include <functional>
#include <string_view>

namespace mox::host {

/// Which of a command's streams are read.
enum class Streams { output, outputAndErrors };

/// Runs a program with standard input empty, all signals as a fresh process has them, and no descriptor but the three
/// standard ones; waits for its end. What a process that it left behind prints afterwards is not waited for.
/// @param arguments   null-terminated; arguments[0] is looked up in PATH
/// @param sink        gets what is printed, in pieces
/// @param exitStatus  exit status or 128 + signal; unchanged on other results than 0, 5, 6. May be null
/// @return EAaProEuRetVal 0, 1, 5, 6
EAaProEuRetVal runCommand(const char* const* arguments, Streams streams,
                          const std::function<void(std::string_view)>& sink, std::int32_t* exitStatus);

} // namespace mox::host
