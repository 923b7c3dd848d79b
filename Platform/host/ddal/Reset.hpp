#pragma once
/// Resets of simulated devices.
#include <cstdint>

namespace mox::host {

class Run;

/// Resets the devices of a node as a software reset of its unit does; processes and files are left alone.
///
/// Every FPGA and BMU loads its primary area if that is whole, else its secondary one; with neither it has no function
/// and version 0. The boot loader starts from its primary area if that is whole, else from the backup area; one that is
/// described to run from RAM starts from RAM again. Extension boards get their boot image again. A described reset
/// counter counts. Everything changes at once, or (when the process dies) not at all.
/// @return whether it is done; false: no such node, or the store cannot be written (which is logged)
/// Any thread. Blocks while another process writes to the store.
bool resetNode(const Run& run, std::uint16_t node);

/// Loads one FPGA or BMU anew, as resetNode does.
/// @return whether it is done; false: no such node or device, or the store cannot be written
/// Any thread. Blocks while another process writes to the store.
bool reloadFpga(const Run& run, std::uint16_t node, std::uint32_t fpgaId);

} // namespace mox::host
