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

} // namespace
} // namespace mox::testing
