#include "unit/Common/ServicePlatform.hpp"

#include <mox/ERadHwapi.hpp>
#include <mox/RadParameters.hpp>
#include <mox/Startup.h>

#include <algorithm>

namespace mox::testing {
namespace {

using namespace ps::hwapi::common;

struct Row {
    unsigned int index;
    const char* name;
    unsigned int defaultValue;
};

const std::vector<Row> hwaRows{
#include "data/RadParametersHwa.inc"
};

const std::vector<Row> stateRows{
#include "data/RadParametersHwaState.inc"
};

std::vector<std::string> expectedCalls(const std::string& room, unsigned int base, const std::vector<Row>& rows) {
    std::vector<std::string> calls{room};
    for (const Row& row : rows) {
        calls.push_back(
            call("AaConfigRadSetDefault", hex(base + row.index), row.name, std::to_string(row.defaultValue)));
    }
    return calls;
}

TEST(RadParametersOfDomainHwa, AreNamedOneByOneAfterTheRoomIsSet) {
    ServicePlatform platform;
    ApiStartupInitializeRadParameters();
    EXPECT_EQ(platform.takeTrace(), expectedCalls(call("AaConfigRadSetMaxTagCount", "2", "0x20106"), 0x20000, hwaRows));
}

TEST(RadParametersOfDomainHwa, Are170WithTwelveDefaultsOtherThan0) {
    ASSERT_EQ(hwaRows.size(), 170U);
    EXPECT_EQ(hwaParameters.size(), 170U);
    EXPECT_EQ(std::count_if(hwaRows.begin(), hwaRows.end(), [](const Row& row) { return row.defaultValue != 0; }), 12);
}

TEST(RadParametersOfDomainHwa, LeaveTheUnassignedIndicesOut) {
    for (unsigned int index = 0; index <= 176; ++index) {
        const bool isAssigned = index != 116 && !(index >= 170 && index <= 175);
        const auto named = std::count_if(hwaParameters.begin(), hwaParameters.end(),
                                         [index](const RadParameter& row) { return row.id == 0x20000 + index; });
        EXPECT_EQ(named, isAssigned ? 1 : 0) << index;
    }
}

TEST(RadParametersOfDomainHwa, HaveOneNameThatStandsTwice) {
    const auto isEac = [](const RadParameter& row) { return std::string(row.name) == "EAC"; };
    EXPECT_EQ(std::count_if(hwaParameters.begin(), hwaParameters.end(), isEac), 2);
    EXPECT_EQ(std::find_if(hwaParameters.begin(), hwaParameters.end(), isEac)->id, ERadHwapi_EAC);
    EXPECT_EQ(hwaParameters.back().id, ERadHwapi_EACSecond);
}

TEST(RadParametersOfDomainHwaState, AreNamedOneByOneAfterTheRoomIsSet) {
    ServicePlatform platform;
    ApiStartupInitializeStateRadParameters();
    EXPECT_EQ(platform.takeTrace(),
              expectedCalls(call("AaConfigRadSetMaxTagCount", "34", "0x220035"), 0x220000, stateRows));
}

TEST(RadParametersOfDomainHwaState, Are37) {
    ASSERT_EQ(stateRows.size(), 37U);
    EXPECT_EQ(hwaStateParameters.size(), 37U);
}

TEST(RadParameterIds, HaveEnumeratorsOfTheirNames) {
    EXPECT_EQ(ERadHwapi_CTRL, 0x20000U);
    EXPECT_EQ(ERadHwapi_LED, 0x2002AU);
    EXPECT_EQ(ERadHwapi_Disabled1291n, 0x2005CU);
    EXPECT_EQ(ERadHwapi_AllowSettingBoardType, 0x20086U);
    EXPECT_EQ(ERadHwapi_EAC, 0x20038U);
    EXPECT_EQ(ERadHwapi_EACSecond, 0x200B0U);
    EXPECT_EQ(ERadHwapiState_CpriState, 0x220000U);
    EXPECT_EQ(ERadHwapiState_ResetSState, 0x220013U);
    EXPECT_EQ(ERadHwapiState_PowerState, 0x220033U);
}

TEST(RadParameterIds, ThatAreOnlyReadAreNotRegistered) {
    EXPECT_EQ(unregistered::syscomConfigForHwBringup, 0x200ECU);
    EXPECT_EQ(unregistered::enableBtsLxc, 0x200EDU);
    for (const RadParameter& row : hwaParameters) {
        EXPECT_NE(row.id, unregistered::syscomConfigForHwBringup);
        EXPECT_NE(row.id, unregistered::enableBtsLxc);
    }
}

TEST(RadParameterIds, HoldAnyNumberOfTheirDomain) {
    EXPECT_EQ(static_cast<unsigned int>(static_cast<ERadHwapi>(0xFFFFFFFF)), 0xFFFFFFFFU);
    EXPECT_EQ(sizeof(ERadHwapi), 4U);
    EXPECT_EQ(sizeof(ERadHwapiState), 4U);
}

} // namespace
} // namespace mox::testing
