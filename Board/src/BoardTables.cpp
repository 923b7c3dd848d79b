#include <mox/Board.h>
#include <mox/BoardTables.hpp>

#include <algorithm>

namespace ps::hwapi::board {
namespace {

template <typename Rows>
const typename Rows::value_type* rowOf(const Rows& rows, std::uint32_t key) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [key](const auto& candidate) { return candidate.key == key; });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace

const std::array<UnitTypeRow, 6> UnitTypeList{{
    {6, 0x00200000, "EUnitType_Zup"},
    {9, 0x00500000, "EUnitType_Kor"},
    {10, 0x00600000, "EUnitType_Jep"},
    {19, 0x00A00000, "EUnitType_Wim"},
    {24, 0x0FD00000, "EUnitType_Dax"},
    {23, 0x0FE00000, "EUnitType_Lom"},
}};

const std::array<UnitVersionRow, 32> UnitVersionList{{
    {19, 0x00203000, "EUnitVersion_Zupa"}, {20, 0x00204000, "EUnitVersion_Zupb"}, {21, 0x00207000, "EUnitVersion_Zupc"},
    {22, 0x00208000, "EUnitVersion_Zupd"}, {23, 0x00209000, "EUnitVersion_Zupe"}, {36, 0x0020B000, "EUnitVersion_Zupf"},
    {40, 0x0020C000, "EUnitVersion_Zupg"}, {34, 0x0020F000, "EUnitVersion_Zuph"}, {35, 0x00210000, "EUnitVersion_Zupi"},
    {37, 0x00211000, "EUnitVersion_Zupj"}, {61, 0x00216000, "EUnitVersion_Zupk"}, {42, 0x00212000, "EUnitVersion_Zupl"},
    {59, 0x00213000, "EUnitVersion_Zupm"}, {60, 0x00214000, "EUnitVersion_Zupn"}, {15, 0x00500000, "EUnitVersion_Kora"},
    {16, 0x00501000, "EUnitVersion_Korb"}, {17, 0x00502000, "EUnitVersion_Korc"}, {18, 0x00503000, "EUnitVersion_Kord"},
    {41, 0x00505000, "EUnitVersion_Kore"}, {58, 0x00506000, "EUnitVersion_Korf"}, {33, 0x00507000, "EUnitVersion_Korg"},
    {43, 0x00508000, "EUnitVersion_Korh"}, {52, 0x00509000, "EUnitVersion_Kori"}, {24, 0x00600000, "EUnitVersion_Jepa"},
    {25, 0x00601000, "EUnitVersion_Jepb"}, {38, 0x00602000, "EUnitVersion_Jepc"}, {39, 0x00603000, "EUnitVersion_Jepd"},
    {51, 0x00A00000, "EUnitVersion_Wim"},  {66, 0x0FD01000, "EUnitVersion_Daxa"}, {67, 0x0FD02000, "EUnitVersion_Daxb"},
    {68, 0x0FE01000, "EUnitVersion_Loma"}, {69, 0x0FE02000, "EUnitVersion_Lomb"},
}};

// Later raw types are variants that count as an earlier type.
const std::array<WimBoardTypeRow, 9> wimBoardTypeList{{
    {0, 0x1, "EWimBoardType_Single"},
    {1, 0x2, "EWimBoardType_Master"},
    {2, 0x3, "EWimBoardType_Slave"},
    {3, 0x4, "EWimBoardType_Pico"},
    {4, 0x5, "EWimBoardType_PLUMB_4x4"},
    {5, 0x6, "EWimBoardType_Pico_DB"},
    {0, 0x7, "EWimBoardType_Single"},
    {5, 0x8, "EWimBoardType_Pico_DB"},
    {5, 0x9, "EWimBoardType_Pico_DB"},
}};

const std::array<ModuleRow, 26> ModuleList{{
    {6, "MDAA"},  {7, "MDAB"},  {8, "MDAC"},   {9, "MDAD"},   {10, "MDAE"},  {11, "MDAF"}, {12, "MDAG"},
    {27, "MDAH"}, {13, "MDAI"}, {14, "MDAJ"},  {15, "MDAK"},  {32, "MDAL"},  {16, "MDAM"}, {17, "MDAN"},
    {18, "MDAO"}, {28, "MDAP"}, {19, "MDAQ"},  {20, "MDAR"},  {29, "MDAS"},  {25, "MDAT"}, {26, "MDAU"},
    {33, "MDAV"}, {37, "MDAW"}, {43, "MDAAV"}, {44, "MDAJV"}, {45, "MDALV"},
}};

const UnitTypeRow* unitTypeRow(std::uint32_t hwSwId) {
    return rowOf(UnitTypeList, hwSwId & constant::unitTypeMask);
}

std::uint32_t unitVersionMask(std::uint32_t hwSwId) {
    const UnitTypeRow* const type = unitTypeRow(hwSwId);
    return type != nullptr && type->value == EUnitType_Wim ? constant::wimVersionMask : constant::unitVersionMask;
}

const UnitVersionRow* unitVersionRow(std::uint32_t hwSwId) {
    return rowOf(UnitVersionList, hwSwId & unitVersionMask(hwSwId));
}

const WimBoardTypeRow* wimBoardTypeRow(std::uint32_t rawType) {
    return rowOf(wimBoardTypeList, rawType);
}

} // namespace ps::hwapi::board
