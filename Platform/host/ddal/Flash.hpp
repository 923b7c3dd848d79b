#pragma once
/// The flash memory of a node: image areas, which are erased and programmed block by block.
///
/// An area is a file in the node's directory and a record in the run's store (docs/formats/flash.md). The record goes
/// before the first block is touched and comes after the last: whenever a process dies, an area is whole or it is not.
///
///     const Flash flash(*Run::current(), Run::current()->node());
///     if (const auto image = flash.image(fpgaArea(0x10001, DDAL_FPGA_SLOT_PRIMARY)))
///         check(image->version, flash.path(fpgaArea(0x10001, DDAL_FPGA_SLOT_PRIMARY)));
///
/// The functions ddal_fpga_update_mod and ddal_boot_update_uboot write areas; FlashPlan.hpp breaks them on purpose.
#include <cstdint>
#include <optional>
#include <string>

namespace mox::host {

class Run;

/// What lies whole in an area.
struct FlashImage {
    std::uint64_t length = 0;  ///< in bytes
    std::uint32_t crc = 0;     ///< CRC-32 of the bytes, as zlib computes it
    std::uint32_t version = 0; ///< what a device reports that has loaded the image
};

/// Where an image is written to.
struct FlashArea {
    std::string device; ///< what takes one update at a time: "fpga-10001", "uboot"
    std::string name;   ///< "fpga-10001-1"
    std::uint64_t size = 0;
    std::uint32_t blockSize = 0; ///< what is erased and programmed at once; 1 or more
};

/// Name of an image area of an FPGA or BMU: "fpga-10001-1".
std::string fpgaArea(std::uint32_t fpgaId, std::uint32_t slot);

/// Names of the boot loader's image areas.
constexpr const char* ubootPrimaryArea = "uboot-primary";
constexpr const char* ubootBackupArea = "uboot-backup";

/// The flash memory of one node, which need not be the caller's. Cheap to make; refers to the run. Any thread.
class Flash {
public:
    Flash(const Run& run, std::uint16_t node) : m_run(run), m_node(node) {}

    /// The image in an area; nothing when the area is blank, half written or does not exist. Does not block.
    std::optional<FlashImage> image(const std::string& area) const;
    bool isWhole(const std::string& area) const { return image(area).has_value(); }
    /// The file with the area's bytes; exists when the area was ever written. Of an area that is whole, it holds the
    /// image and nothing else.
    std::string path(const std::string& area) const;

    /// Writes a file into an area. What is done once the file was found good and the area's device free: the record is
    /// taken away, each block that the file needs is erased, each is programmed, the new record is put. All but the
    /// first are operations, counted and broken as FlashPlan.hpp says.
    /// @param imagePath  file without trailer; an empty one is refused
    /// @return DDAL_OK, DDAL_NOT_FOUND (no such file), DDAL_INVALID_PARAMETER (an empty file), DDAL_BUSY
    ///         (an area of the device is being written by this or another living process), DDAL_NO_SPACE (nothing was
    ///         touched), DDAL_IO_ERROR (also for what is no regular file; the area may then be half written)
    /// Blocks for the time of writing.
    int write(const FlashArea& area, const char* imagePath) const;

private:
    const Run& m_run;
    std::uint16_t m_node;
};

} // namespace mox::host
