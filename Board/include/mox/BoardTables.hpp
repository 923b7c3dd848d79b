#pragma once
/// The tables behind the look-ups of Board.h, for programs that list or explain them. Rows stand in the order in which
/// they are searched, and the first match wins.
#include <array>
#include <cstdint>

namespace ps::hwapi::board {

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

} // namespace ps::hwapi::board
