#pragma once
#include <cstdint>
#include <vector>

namespace mox::testing {

/// What a look-up has to find, in the order of its search.
struct NamedRow {
    std::uint32_t value;
    std::uint32_t key;
    const char* name;
};

inline const std::vector<NamedRow> unitTypeRows{
    {6, 0x00200000, "EUnitType_Zup"},  {9, 0x00500000, "EUnitType_Kor"},  {10, 0x00600000, "EUnitType_Jep"},
    {19, 0x00A00000, "EUnitType_Wim"}, {24, 0x0FD00000, "EUnitType_Dax"}, {23, 0x0FE00000, "EUnitType_Lom"},
};

inline const std::vector<NamedRow> unitVersionRows{
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
};

inline const std::vector<NamedRow> wimBoardTypeRows{
    {0, 0x1, "EWimBoardType_Single"}, {1, 0x2, "EWimBoardType_Master"},    {2, 0x3, "EWimBoardType_Slave"},
    {3, 0x4, "EWimBoardType_Pico"},   {4, 0x5, "EWimBoardType_PLUMB_4x4"}, {5, 0x6, "EWimBoardType_Pico_DB"},
    {0, 0x7, "EWimBoardType_Single"}, {5, 0x8, "EWimBoardType_Pico_DB"},   {5, 0x9, "EWimBoardType_Pico_DB"},
};

struct ModuleVersion {
    std::uint32_t version;
    const char* code;
};

inline const std::vector<ModuleVersion> moduleRows{
    {6, "MDAA"},  {7, "MDAB"},  {8, "MDAC"},   {9, "MDAD"},   {10, "MDAE"},  {11, "MDAF"}, {12, "MDAG"},
    {27, "MDAH"}, {13, "MDAI"}, {14, "MDAJ"},  {15, "MDAK"},  {32, "MDAL"},  {16, "MDAM"}, {17, "MDAN"},
    {18, "MDAO"}, {28, "MDAP"}, {19, "MDAQ"},  {20, "MDAR"},  {29, "MDAS"},  {25, "MDAT"}, {26, "MDAU"},
    {33, "MDAV"}, {37, "MDAW"}, {43, "MDAAV"}, {44, "MDAJV"}, {45, "MDALV"},
};

} // namespace mox::testing
