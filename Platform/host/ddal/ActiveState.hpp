#pragma once
/// What devices run now: in the store once a device was loaded anew, before that as the description says.
#include "../board/Description.hpp"
#include "../store/Store.hpp"

#include <cstdint>
#include <string>

namespace mox::host {

/// The boot loader that runs.
struct RunningBoot {
    std::uint32_t location = 0; ///< one of DDAL_BOOT_UBOOT_*
    std::string version;        ///< decimal digits
};

std::uint32_t activeVersion(const Store& store, std::uint16_t node, const FpgaDevice& fpga);
RunningBoot runningBoot(const Store& store, std::uint16_t node, const BootDevice& boot);

/// Loads a device from the areas as they are in the transaction; one without areas goes on as it is.
/// @return the version that it then runs
std::uint32_t loadFpga(Store::Write& write, std::uint16_t node, const FpgaDevice& fpga);
/// Starts the boot loader from the areas as they are in the transaction.
RunningBoot startBoot(Store::Write& write, std::uint16_t node, const BootDevice& boot);

} // namespace mox::host
