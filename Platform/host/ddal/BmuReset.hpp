#pragma once
/// The file that makes the BMU load its image anew: a service writes "1" into it, and the next process that asks for
/// the BMU's version finds that.
#include <cstdint>

namespace mox::host {

class Run;
struct Devices;

/// Where the file lies below the node's file systems ("nodes/<nid>/fs/").
constexpr const char* bmuResetFile = "sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig";

/// Whether the described devices have the file.
bool hasBmuReset(const Devices& devices);

/// Whether "1" was written since the file was last emptied. Costs one look at the file's size as long as it was not.
bool bmuResetIsAsked(const Run& run, std::uint16_t node);

/// Empties the file.
void forgetBmuReset(const Run& run, std::uint16_t node);

} // namespace mox::host
