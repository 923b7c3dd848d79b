#include "unit/Board/lookupRows.hpp"

#include <mox/BoardTables.hpp>

#include <gtest/gtest.h>

namespace mox::testing {
namespace {

using namespace ps::hwapi::board;

template <typename Rows>
void expectRows(const Rows& sut, const std::vector<NamedRow>& expected) {
    ASSERT_EQ(sut.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(sut[i].value, expected[i].value) << "in row " << i;
        EXPECT_EQ(sut[i].key, expected[i].key) << "in row " << i;
        EXPECT_STREQ(sut[i].name, expected[i].name) << "in row " << i;
    }
}

TEST(BoardTables, HoldTheUnitTypesInTheOrderOfTheSearch) {
    expectRows(UnitTypeList, unitTypeRows);
}

TEST(BoardTables, HoldTheUnitVersionsInTheOrderOfTheSearch) {
    expectRows(UnitVersionList, unitVersionRows);
}

TEST(BoardTables, HoldTheBoardTypesOfTheWimLineInTheOrderOfTheSearch) {
    expectRows(wimBoardTypeList, wimBoardTypeRows);
}

TEST(BoardTables, HoldTheModulesInTheOrderOfTheSearch) {
    ASSERT_EQ(ModuleList.size(), moduleRows.size());
    for (std::size_t i = 0; i < moduleRows.size(); ++i) {
        EXPECT_EQ(ModuleList[i].version, moduleRows[i].version) << "in row " << i;
        EXPECT_STREQ(ModuleList[i].code, moduleRows[i].code) << "in row " << i;
    }
}

TEST(BoardTables, HaveRoomForTheirNames) {
    EXPECT_EQ(sizeof(UnitTypeRow::name), 20U);
    EXPECT_EQ(sizeof(UnitVersionRow::name), 28U);
    EXPECT_EQ(sizeof(WimBoardTypeRow::name), 28U);
}

TEST(BoardTables, GiveTheMatchedRow) {
    EXPECT_EQ(unitTypeRow(0xF0A03FFF), &UnitTypeList[3]);
    EXPECT_EQ(unitVersionRow(0xF0A03FFF), &UnitVersionList[27]);
    EXPECT_EQ(unitVersionRow(0x00216ABC), &UnitVersionList[10]);
    EXPECT_EQ(wimBoardTypeRow(9), &wimBoardTypeList[8]);
}

TEST(BoardTables, GiveNoRowForWhatTheyDoNotHold) {
    EXPECT_EQ(unitTypeRow(0x0F100000), nullptr);
    EXPECT_EQ(unitVersionRow(0), nullptr);
    EXPECT_EQ(unitVersionRow(0x00202000), nullptr);
    EXPECT_EQ(wimBoardTypeRow(0), nullptr);
    EXPECT_EQ(wimBoardTypeRow(10), nullptr);
}

TEST(BoardTables, TellVersionsOfTheWimLineByFewerBits) {
    EXPECT_EQ(unitVersionMask(0x00AFF000), 0x00F00000U);
    EXPECT_EQ(unitVersionMask(0x01A00000), 0x0FFFF000U);
    EXPECT_EQ(unitVersionMask(0x00200000), 0x0FFFF000U);
    EXPECT_EQ(unitVersionMask(0), 0x0FFFF000U);
}

} // namespace
} // namespace mox::testing
