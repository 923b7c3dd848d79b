#pragma once
/// Claiming a CPID of the own node among all processes of the node.
#include <cstdint>

namespace mox::host {

class Run;

constexpr int claimTaken = -1;
constexpr int claimFailed = -2;

/// Opens the endpoint's socket under its name, unless a living process has it.
/// @return the bound socket; claimTaken; claimFailed: the operating system refuses, which is logged
int claimEndpoint(const Run& run, std::uint16_t cpid);

/// Gives the name of an endpoint of this process up.
void unclaimEndpoint(const Run& run, std::uint16_t cpid);

} // namespace mox::host
