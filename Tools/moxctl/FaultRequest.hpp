#pragma once
/// Faults as commands name and show them.
#include "Output.hpp"

#include <host/faults/Functions.hpp>
#include <host/faults/Rule.hpp>

#include <string>

namespace mox::tools {

/// What stands on the line, unread; empty: the option was not given.
struct FaultRequest {
    std::string function;
    std::string result;
    std::string nth;
    std::string times;
    std::string delay;
    std::string mode;
    std::string service;
};

/// The function of that name. Throws Failure (notFound) that names similar ones.
const host::faults::Function& findFunction(const std::string& name);

/// The rule that a request asks for, for processes of every node. Throws Failure: notFound (function), usage.
host::faults::Rule ruleOf(const FaultRequest& request);

/// Reads a duration with its unit: us, ms, s or min.
/// @return microseconds, 1 to those of an hour. Throws Failure (usage).
std::uint64_t readDuration(const std::string& text, const char* what);

/// "return -5 (DDAL_IO_ERROR)", "delay 250ms, return null", "stuck".
std::string showEffect(const host::faults::Rule& rule);

/// Which calls of a process: "all", "3", "2 to 4", "from 2".
std::string showCalls(const host::faults::Rule& rule);

Json jsonOf(const host::faults::PlannedFault& fault);

} // namespace mox::tools
