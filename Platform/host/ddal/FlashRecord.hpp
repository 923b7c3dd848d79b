#pragma once
/// How flash areas stand in the run: their records in the store, and what they hold when a run is made.
#include "Flash.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

struct NodeDescription;

/// Key of an area's record in Table::devices: "1011/flash/fpga-10001-1".
std::string flashRecordKey(std::uint16_t node, const std::string& area);

/// "<length> <CRC-32 in hexadecimal> <version>".
std::string encodeFlashRecord(const FlashImage& image);
/// @return nothing when the text is no record
std::optional<FlashImage> decodeFlashRecord(std::string_view record);

/// Name of an area's file in the node's directory: "flash/fpga-10001-1.bin".
std::string flashFile(const std::string& area);

/// An image that a described board has in flash before anybody writes one.
struct FactoryImage {
    std::string area;
    std::string bytes; ///< the version marker and nothing else
    FlashImage image;
};

/// The images of a node: one for each described slot with a version, and those of the boot loader, whose primary area
/// is blank when it is described to run from the backup area.
std::vector<FactoryImage> factoryImages(const NodeDescription& node);

} // namespace mox::host
