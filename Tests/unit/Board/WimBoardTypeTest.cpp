#include "unit/Board/IdentityPlatform.hpp"
#include "unit/Board/lookupRows.hpp"

#include <mox/Board.h>
#include <mox/ERadHwapi.hpp>

#include <gmock/gmock.h>

#include <utility>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;

class WimBoardType : public Identification {};

LogLine found(const NamedRow& row) {
    return debugLine("ApiGetWimBoardType: boardType = " + hexText(row.key) +
                     ", wim board type = " + std::to_string(row.value) + " (" + row.name + ")");
}

LogLine notFound(std::uint32_t rawType) {
    return debugLine("ApiGetWimBoardType: returning EWimBoardType_Unknown (boardType:" + hexText(rawType) + ")");
}

TEST_F(WimBoardType, OfEachRawTypeIsFoundAndLogged) {
    for (const NamedRow& row : wimBoardTypeRows) {
        platform.boardType = static_cast<int>(row.key);
        EXPECT_EQ(ApiGetWimBoardType(), row.value) << row.key;
        EXPECT_THAT(platform.takeLog(), ElementsAre(found(row)));
        EXPECT_THAT(platform.takeCalls(), ElementsAre("AaConfigRadGetValue(0x20086)", "ddal_unit_get_board()"));
    }
}

TEST_F(WimBoardType, OfAnyOtherRawTypeIsUnknown) {
    for (const int rawType : {0, 10, 11, 255, 0x101, -19}) {
        platform.boardType = rawType;
        EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Unknown);
        EXPECT_THAT(platform.takeLog(), ElementsAre(notFound(static_cast<std::uint32_t>(rawType))));
    }
}

TEST_F(WimBoardType, IsTheOneOfTheParameterForTestsWithoutAskingTheBoard) {
    platform.boardType = 1;
    for (const NamedRow& row : wimBoardTypeRows) {
        platform.radValue = row.key;
        EXPECT_EQ(ApiGetWimBoardType(), row.value);
        EXPECT_THAT(platform.takeLog(), ElementsAre(found(row)));
        EXPECT_THAT(platform.takeCalls(), ElementsAre("AaConfigRadGetValue(0x20086)"));
    }
    platform.radValue = 0x80000001;
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Unknown);
    EXPECT_THAT(platform.takeLog(), ElementsAre(notFound(0x80000001)));
}

TEST_F(WimBoardType, FollowsTheParameterFromCallToCall) {
    platform.boardType = 2;
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Master);
    platform.radValue = 4;
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Pico);
    platform.radValue = 0;
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Master);
    EXPECT_EQ(platform.takeLog().size(), 3U);
}

TEST_F(WimBoardType, IsReplacedByTheParameterOfThatName) {
    EXPECT_EQ(ps::hwapi::common::ERadHwapi_AllowSettingBoardType, 0x20086);
}

TEST_F(WimBoardType, GivesTheModuleVersion) {
    const std::pair<int, std::uint32_t> rows[] = {{1, 34}, {2, 35}, {3, 36}, {4, 34},  {5, 42},  {6, 34},
                                                  {7, 34}, {8, 34}, {9, 34}, {10, 64}, {-5, 64}, {0, 64}};
    for (const auto& [rawType, version] : rows) {
        platform.boardType = rawType;
        EXPECT_EQ(ApiGetWimModuleVersion(), version) << "for raw type " << rawType;
        EXPECT_EQ(platform.takeLog().size(), 1U);
    }
}

TEST_F(WimBoardType, OfTheParameterForTestsGivesTheModuleVersion) {
    platform.radValue = 9;
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Pico_DB);
    EXPECT_EQ(ApiGetWimModuleVersion(), 34U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("AaConfigRadGetValue(0x20086)", "AaConfigRadGetValue(0x20086)"));
    EXPECT_THAT(platform.takeLog(), ElementsAre(found(wimBoardTypeRows[8]), found(wimBoardTypeRows[8])));
}

} // namespace
} // namespace mox::testing
