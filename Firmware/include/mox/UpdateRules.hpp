#pragma once
/// The rules of firmware updates as functions over values: which file name stands for an image, which version is
/// written over which, which device a unit carries, where things lie. No files, no hardware, no state.
/// Any thread. Nothing blocks, nothing throws.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ps::hwapi::common::update {

namespace constant {
constexpr std::size_t unitTextSize = 32;      ///< room of a unit identifier, terminator included
constexpr std::size_t unitTypeLength = 3;     ///< leading characters of a unit identifier that are the unit's type
constexpr std::size_t imagePathSize = 128;    ///< room of a found image's path, terminator included
constexpr std::size_t searchStringSize = 128; ///< room of a search string, terminator included
constexpr std::size_t markerPathSize = 127;   ///< room of a marker file's path, terminator included
constexpr int mostCandidates = 10;            ///< images of one chip that are looked into
constexpr std::uint32_t bmuFpgaId = 1;        ///< the local BMU
constexpr const char* ubootChip = "RN-QE";
constexpr const char* bmuChip = "BMU";
/// Whether an image may list a board's identifier with other lowest 8 bits.
constexpr int ubootMinorDifference = 1;
constexpr int bmuMinorDifference = 0;
constexpr int fpgaMinorDifference = 1;
constexpr const char* extensionBoardType = "ZUP";
constexpr const char* extensionImages = "/ffs/run/boot"; ///< where the BMU images of extension boards lie
constexpr const char* disableMarker = "/ffs/run/logs/disable-firmware-update";
constexpr const char* bmuResetFile = "/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig";
} // namespace constant

using SearchString = std::array<char, constant::searchStringSize>;
using MarkerPath = std::array<char, constant::markerPathSize>;

/// @name Names of image files
/// @{
/// What the names of a board's images contain: board type, hyphen, chip identifier.
/// @param boardType    its first 3 characters count
/// @param[out] search  the text; cut when the result is not 0
/// @return 0, -2 (the text cannot be formed), -3 (it is longer than 127 characters)
int formSearchString(const char* boardType, const char* chipIdentifier, SearchString& search);
/// Whether a file name is that of an image: it contains the search string, and its first ".bin" is its end.
bool isImageName(std::string_view name, std::string_view search);
/// @}

/// @name Paths of the operators' marker files, with the unit type in lower case
/// Cut to 126 characters.
/// @{
MarkerPath disableMarkerOf(const char* unitType);
MarkerPath forceMarkerOf(const char* unitType, const char* componentName);
/// @}

/// @name Which version is written over which
/// They differ on purpose: a boot loader may be written again, a BMU only goes forward, an FPGA follows its file.
/// @{
constexpr bool isUbootUpdated(std::uint32_t file, std::uint32_t active) {
    return file >= active;
}
constexpr bool isBmuUpdated(std::uint32_t file, std::uint32_t active) {
    return file > active;
}
constexpr bool isFpgaUpdated(std::uint32_t file, std::uint32_t active) {
    return file != active;
}
/// @}

/// The FPGA of a unit.
struct FpgaOfUnit {
    const char* shortName;      ///< for log texts
    const char* chipIdentifier; ///< part of its images' names
    std::uint32_t id;           ///< 0: the unit has none that is known
};
/// @return the unit's FPGA; "unknown", "unknown", 0 when it has none
FpgaOfUnit fpgaOf(std::string_view unitVersion, std::string_view unitType);
/// @return the identifier of the FPGA beside the processor, 0 when there is none. A table of its own: its answers are
///         not those of fpgaOf()
std::uint32_t localFpgaIdOf(std::string_view unitVersion, std::string_view unitType);

/// @return the chip identifier in the names of a unit's BMU images
const char* bmuChipOf(std::string_view unitVersion);
/// @return the identifier of an extension board's BMU, 0 for a board number that has none
std::uint32_t extensionBmuIdOf(std::uint32_t ddalBoard);
/// Whether the BMU of a unit is loaded again on request.
bool isBmuResettable(std::string_view unitId);

/// @return where a boot loader was started from, in a word: "primary", "backup", "uImage" or "unknown"
const char* ubootLocationName(std::uint32_t location);

/// Where the payload of an image lies while it is written.
struct TemporaryFile {
    const char* inRam;
    const char* byDefault;
};
constexpr TemporaryFile ubootTemporary{"/ram/u-boot.uim", "/tmp/u-boot.uim"};
constexpr TemporaryFile bmuTemporary{"/ram/bmufile", "/tmp/bmufile"};
constexpr TemporaryFile fpgaTemporary{"/ram/fpgafile", "/tmp/fpgafile"};
/// Whether payloads go to /ram: asked for by either of two settings, unless the third forbids it.
constexpr bool isRamPathChosen(std::uint32_t supervisor, std::uint32_t rp441, std::uint32_t btsLxc) {
    return (supervisor != 0 || rp441 != 0) && btsLxc == 0;
}

} // namespace ps::hwapi::common::update
