#pragma once
/// R&D parameters as commands name them.
#include <host/pal/ConfigTools.hpp>

#include <memory>
#include <string>

namespace mox::tools {

/// The parameters of a node. Throws Failure.
std::unique_ptr<host::RadOfNode> openRad(const host::Run& run, std::uint16_t node);

/// The parameter that a number or a name means. Throws Failure: notFound, usage (a number out of range, a name that
/// several parameters have).
host::RadParameter findParameter(const host::RadOfNode& rad, const std::string& numberOrName);

} // namespace mox::tools
