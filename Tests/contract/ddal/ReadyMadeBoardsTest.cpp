// Every ready-made board is what its name says, to the device functions and to the library that asks them.
#include <mox/Board.h>
#include <mox/BoardTables.hpp>

#include <gmock/gmock.h>
#include <host/board/CreateRun.hpp>
#include <support/TemporaryDirectory.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>

namespace mox::testing {
namespace {

struct BoardRow {
    const char* name;
    const char* unitId;
    std::uint32_t hwSwId;
    EUnitType type;
    EUnitVersion version;
    EWimBoardType wim = EWimBoardType_Unknown;
};

void PrintTo(const BoardRow& row, std::ostream* stream) {
    *stream << row.name;
}

const BoardRow boardRows[] = {
    {"kora", "KORA", 0x00500000, EUnitType_Kor, EUnitVersion_Kora},
    {"korb", "KORB", 0x00501000, EUnitType_Kor, EUnitVersion_Korb},
    {"korc", "KORC", 0x00502000, EUnitType_Kor, EUnitVersion_Korc},
    {"kord", "KORD", 0x00503000, EUnitType_Kor, EUnitVersion_Kord},
    {"kore", "KORE", 0x00505000, EUnitType_Kor, EUnitVersion_Kore},
    {"korf", "KORF", 0x00506000, EUnitType_Kor, EUnitVersion_Korf},
    {"korg", "KORG", 0x00507000, EUnitType_Kor, EUnitVersion_Korg},
    {"korh", "KORH", 0x00508000, EUnitType_Kor, EUnitVersion_Korh},
    {"kori", "KORI", 0x00509000, EUnitType_Kor, EUnitVersion_Kori},
    {"zupa", "ZUPA", 0x00203000, EUnitType_Zup, EUnitVersion_Zupa},
    {"zupb", "ZUPB", 0x00204000, EUnitType_Zup, EUnitVersion_Zupb},
    {"zupc", "ZUPC", 0x00207000, EUnitType_Zup, EUnitVersion_Zupc},
    {"zupd", "ZUPD", 0x00208000, EUnitType_Zup, EUnitVersion_Zupd},
    {"zupe", "ZUPE", 0x00209000, EUnitType_Zup, EUnitVersion_Zupe},
    {"zupf", "ZUPF", 0x0020B000, EUnitType_Zup, EUnitVersion_Zupf},
    {"zupg", "ZUPG", 0x0020C000, EUnitType_Zup, EUnitVersion_Zupg},
    {"zuph", "ZUPH", 0x0020F000, EUnitType_Zup, EUnitVersion_Zuph},
    {"zupi", "ZUPI", 0x00210000, EUnitType_Zup, EUnitVersion_Zupi},
    {"zupj", "ZUPJ", 0x00211000, EUnitType_Zup, EUnitVersion_Zupj},
    {"zupk", "ZUPK", 0x00216000, EUnitType_Zup, EUnitVersion_Zupk},
    {"zupl", "ZUPL", 0x00212000, EUnitType_Zup, EUnitVersion_Zupl},
    {"zupm", "ZUPM", 0x00213000, EUnitType_Zup, EUnitVersion_Zupm},
    {"zupn", "ZUPN", 0x00214000, EUnitType_Zup, EUnitVersion_Zupn},
    {"zupy", "ZUPY", 0x00217000, EUnitType_Zup, EUnitVersion_Unknown},
    {"jepa", "JEPA", 0x00600000, EUnitType_Jep, EUnitVersion_Jepa},
    {"jepb", "JEPB", 0x00601000, EUnitType_Jep, EUnitVersion_Jepb},
    {"jepc", "JEPC", 0x00602000, EUnitType_Jep, EUnitVersion_Jepc},
    {"jepd", "JEPD", 0x00603000, EUnitType_Jep, EUnitVersion_Jepd},
    {"daxa", "DAXA", 0x0FD01000, EUnitType_Dax, EUnitVersion_Daxa},
    {"daxb", "DAXB", 0x0FD02000, EUnitType_Dax, EUnitVersion_Daxb},
    {"loma", "LOMA", 0x0FE01000, EUnitType_Lom, EUnitVersion_Loma},
    {"lomb", "LOMB", 0x0FE02000, EUnitType_Lom, EUnitVersion_Lomb},
    {"vel", "VELA", 0x00700000, EUnitType_Unknown, EUnitVersion_Unknown},
    {"vem", "VEMA", 0x00800000, EUnitType_Unknown, EUnitVersion_Unknown},
    {"wim", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Single},
    {"wim-master", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Master},
    {"wim-slave", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Slave},
    {"wim-pico", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Pico},
    {"wim-plumb-4x4", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_PLUMB_4x4},
    {"wim-pico-db", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Pico_DB},
    {"wim-single-7", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Single},
    {"wim-pico-db-8", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Pico_DB},
    {"wim-pico-db-9", "WIMA", 0x00A00000, EUnitType_Wim, EUnitVersion_Wim, EWimBoardType_Pico_DB},
};

/// Of several nodes; tests of their own look at them.
const std::set<std::string> boardsOfServices{"echo-pair", "firm-pair"};

std::string textOf(const std::string& name) {
    std::ifstream file(MOX_BOARDS "/" + name + ".json");
    return {std::istreambuf_iterator<char>(file), {}};
}

host::NodeDescription nodeOf(const std::string& name) {
    host::DescriptionError error;
    auto description = host::parseDescription(textOf(name), name, error);
    EXPECT_TRUE(description) << error.message();
    return description ? description->nodes.at(0) : host::NodeDescription();
}

class AReadyMadeBoard : public ::testing::TestWithParam<BoardRow> {};

TEST_P(AReadyMadeBoard, IsTheUnitThatItsNameSays) {
    const BoardRow& row = GetParam();
    const host::LocalUnit unit = nodeOf(row.name).unit;
    EXPECT_EQ(unit.id, row.unitId);
    EXPECT_EQ(unit.hwSwId, row.hwSwId);
    EXPECT_EQ(ApiGetUnitTypeFromHwSwId(unit.hwSwId), row.type);
    EXPECT_EQ(ApiGetUnitVersionFromHwSwId(unit.hwSwId), row.version);
    EXPECT_FALSE(unit.productionCode.empty());
    EXPECT_FALSE(unit.serialNumber.empty());
    EXPECT_EQ(unit.boardType.has_value(), row.type == EUnitType_Wim);
    if (unit.boardType) {
        const auto* type = ps::hwapi::board::wimBoardTypeRow(*unit.boardType);
        ASSERT_NE(type, nullptr);
        EXPECT_EQ(type->value, static_cast<std::uint32_t>(row.wim));
    }
}

TEST_P(AReadyMadeBoard, CanBeMadeIntoARun) {
    const TemporaryDirectory directory;
    std::string why;
    EXPECT_TRUE(host::createRun(directory / "run", textOf(GetParam().name), GetParam().name, why)) << why;
}

INSTANTIATE_TEST_SUITE_P(Board, AReadyMadeBoard, ::testing::ValuesIn(boardRows), [](const auto& row) {
    std::string name = row.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(ReadyMadeBoards, AreAllInTheTableOfThisTest) {
    std::set<std::string> expected = boardsOfServices;
    for (const BoardRow& row : boardRows)
        expected.insert(row.name);
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_BOARDS))
        found.insert(entry.path().stem().string());
    EXPECT_EQ(found, expected);
}

TEST(ReadyMadeBoards, OfTheWimLineHaveEveryRawBoardType) {
    std::set<std::uint32_t> found;
    for (const BoardRow& row : boardRows)
        if (row.type == EUnitType_Wim)
            found.insert(nodeOf(row.name).unit.boardType.value_or(0));
    EXPECT_EQ(found, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

std::set<std::uint32_t> devicesWithTwoSlots(const std::string& name) {
    std::set<std::uint32_t> ids;
    for (const host::FpgaDevice& fpga : nodeOf(name).devices.fpgas)
        if (fpga.slots.size() == 2)
            ids.insert(fpga.id);
    return ids;
}

TEST(ReadyMadeBoards, HaveTheFpgasThatUpdatesLookFor) {
    EXPECT_EQ(devicesWithTwoSlots("kora"), (std::set<std::uint32_t>{0x10001}));
    EXPECT_EQ(devicesWithTwoSlots("kore"), (std::set<std::uint32_t>{0x10001, 0x10002}));
    EXPECT_EQ(devicesWithTwoSlots("vel"), (std::set<std::uint32_t>{0x70001}));
    EXPECT_EQ(devicesWithTwoSlots("vem"), (std::set<std::uint32_t>{0x70001}));
    EXPECT_EQ(devicesWithTwoSlots("zupa"), (std::set<std::uint32_t>{}));
}

TEST(ReadyMadeBoards, HaveAResetFileOfTheBmuWhereTheUnitIsResetThroughIt) {
    std::set<std::string> found;
    for (const BoardRow& row : boardRows)
        for (const host::FpgaDevice& fpga : nodeOf(row.name).devices.fpgas)
            if (fpga.resetControl)
                found.insert(row.unitId);
    EXPECT_EQ(found, (std::set<std::string>{"ZUPA", "ZUPB", "ZUPM", "ZUPN"}));
}

} // namespace
} // namespace mox::testing
