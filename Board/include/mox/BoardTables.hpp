#pragma once
/// The tables behind the look-ups of Board.h, for programs that list or explain them. Rows stand in the order in which
/// they are searched, and the first match wins. Any thread; nothing here logs or blocks.
#include <array>
#include <cstdint>

namespace ps::hwapi::board {
namespace constant {
/// The bits of a hardware/software identifier that tell the unit type.
constexpr std::uint32_t unitTypeMask = 0x0FF00000;
/// The bits that tell the unit version,
constexpr std::uint32_t unitVersionMask = 0x0FFFF000;
/// and those that do so for units of the Wim line, whose revisions are not told apart.
constexpr std::uint32_t wimVersionMask = 0x00F00000;
} // namespace constant

struct UnitTypeRow {
    std::uint32_t value; ///< an EUnitType
    std::uint32_t key;   ///< bits 20 to 27 of the hardware/software identifier, in their place
    char name[20];
};

struct UnitVersionRow {
    std::uint32_t value; ///< an EUnitVersion
    std::uint32_t key;   ///< bits 12 to 27 of the hardware/software identifier, in their place
    char name[28];
};

struct WimBoardTypeRow {
    std::uint32_t value; ///< an EWimBoardType
    std::uint32_t key;   ///< the raw board type
    char name[28];
};

struct ModuleRow {
    std::uint32_t version;
    const char* code;
};

extern const std::array<UnitTypeRow, 6> UnitTypeList;
/// The log names the matched row, so that its order is part of what field engineers know.
extern const std::array<UnitVersionRow, 32> UnitVersionList;
extern const std::array<WimBoardTypeRow, 9> wimBoardTypeList;
/// Each row that is looked at is logged, in this order.
extern const std::array<ModuleRow, 26> ModuleList;

/// @return the row of a hardware/software identifier's unit type, or null
const UnitTypeRow* unitTypeRow(std::uint32_t hwSwId);
/// @return the bits of a hardware/software identifier that tell the version of its unit
std::uint32_t unitVersionMask(std::uint32_t hwSwId);
/// @return the row of a hardware/software identifier's unit version, or null
const UnitVersionRow* unitVersionRow(std::uint32_t hwSwId);
/// @return the row of a raw board type, or null
const WimBoardTypeRow* wimBoardTypeRow(std::uint32_t rawType);

} // namespace ps::hwapi::board
