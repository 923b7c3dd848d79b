#include <mox/Board.h>
#include <pal/AaConfig.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>

#include <gmock/gmock.h>

#include <string>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using testkit::Board;
using testkit::BoardOf;
using testkit::BoardTest;
using testkit::debug;
using testkit::info;
using testkit::warning;

constexpr unsigned int featureId = 0x20063;

/// @return what a function copies
template <typename Read, typename... Arguments>
std::string textOf(Read read, Arguments... arguments) {
    char text[256] = {};
    return read(arguments..., text, 256) == 1 ? text : "(failed)";
}

class IdentificationOnKora : public BoardTest {};
const BoardOf s_kora("IdentificationOnKora", Board::named("kora"));

TEST_F(IdentificationOnKora, TellsTypeAndVersion) {
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0x00500000U);
    EXPECT_EQ(ApiGetLocalUnitHwId(), 0x0500U);
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Kor);
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Kora);
    EXPECT_EQ(ApiIsYolmpr(), 0U);
}

TEST_F(IdentificationOnKora, TellsItsIdentity) {
    EXPECT_EQ(textOf(&ApiGetLocalUnitId), "KORA");
    EXPECT_EQ(textOf(&ApiGetLocalUnitProductionCode), "471234A.101");
    EXPECT_EQ(textOf(&ApiGetLocalUnitSerialNumber), "K1160100001");
    EXPECT_EQ(textOf(&ApiGetUnitId, 0U), "KORA");
    EXPECT_EQ(textOf(&ApiGetDieId), "00112233445566778899aabbccddeeff");
    EXPECT_EQ(textOf(&ApiGetDieIdQuality), "good");
}

TEST_F(IdentificationOnKora, TellsItsModule) {
    EXPECT_EQ(textOf(&ApiGetModuleId), "MDAA");
    EXPECT_EQ(textOf(&ApiGetModuleSerialNumber), "M1160100001");
    EXPECT_EQ(ApiGetModuleVersion(), 6U);
    char shown[16] = {};
    EXPECT_STREQ(
        ApiGetModuleDisplayProductCodeEx(ApiGetModuleVersion(), textOf(&ApiGetModuleProductionCode).c_str(), shown, 16),
        "611001A");
}

TEST_F(IdentificationOnKora, TellsItsPlace) {
    EXPECT_EQ(ApiGetCurrentBoard(), 0x10);
    EXPECT_EQ(ApiGetCurrentCpu(), 1);
    EXPECT_EQ(ApiGetSlotIdFromBoardId(ApiGetCurrentBoard()), 0U);
    EXPECT_EQ(ApiGetPduBoardId(), 0x1048U);
    EXPECT_TRUE(log.has(info(featureId, "ApiGetPduBoardId: PDU device: 0x1048")));
}

TEST_F(IdentificationOnKora, WarnsOfAUnitAndAModuleThatAreNotThere) {
    EXPECT_EQ(ApiGetUnitType(99), EUnitType_Unknown);
    EXPECT_TRUE(log.has(warning(featureId, HasSubstr("ddal_devicetree_get_hw_sw_id() returned '0x"))));
    EXPECT_EQ(ApiGetExtModuleVersion(99), 14U);
    EXPECT_TRUE(log.hasInOrder(
        {warning(featureId, HasSubstr("ddal_devicetree_get_ext_module_unit_id(port_id=0x63) returned '0x")),
         warning(featureId, "ApiGetExtModuleVersion(99): module version not found (name from ddal = )")}));
}

TEST_F(IdentificationOnKora, LogsWhatItFindsWhileItsFlagIsSet) {
    EXPECT_EQ(ApiGetUnitType(0), EUnitType_Kor);
    const auto found = debug(featureId, "ApiGetUnitType: hwswid = 0x500000, unit type = 9 (EUnitType_Kor)");
    EXPECT_TRUE(log.hasNot(found));
    testkit::startPlatform();
    AaConfigRadSetValue(featureId, 1);
    EXPECT_EQ(ApiGetUnitType(0), EUnitType_Kor);
    EXPECT_TRUE(log.has(found));
}

class IdentificationOnWim : public BoardTest {};
const BoardOf s_wim("IdentificationOnWim", Board::named("wim"));

TEST_F(IdentificationOnWim, TellsTypeVersionAndPlaceWithoutRapidIo) {
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Wim);
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Wim);
    EXPECT_EQ(ApiGetCurrentBoard(), 0x10);
    EXPECT_EQ(ApiGetCurrentCpu(), 1);
}

TEST_F(IdentificationOnWim, TellsItsBoardTypeOrTheOneForTests) {
    testkit::startPlatform();
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Single);
    AaConfigRadSetValue(0x20086, 2);
    EXPECT_EQ(ApiGetWimBoardType(), EWimBoardType_Master);
    EXPECT_EQ(ApiGetWimModuleVersion(), 35U);
}

TEST_F(IdentificationOnWim, TellsTheRadioTechnologyOfItsCards) {
    EXPECT_EQ(ApiGetLocalWimRatType(), 1U);
    EXPECT_TRUE(log.hasInOrder({info(featureId, HasSubstr("(success); slot 0, value 1 (TDD)")),
                                info(featureId, HasSubstr("(success); slot 1, value 0 (card not present)")),
                                info(featureId, HasSubstr("(success); slot 2, value 0 (card not present)"))}));
}

TEST_F(IdentificationOnWim, TellsTheRadioTechnologyOfItsTag) {
    testkit::startPlatform();
    ASSERT_EQ(AaConfigTagSetString("sys.lfs.fpga.technology", "wcdma_2100"), EAaConfigRetVal_NoError);
    EXPECT_EQ(ApiGetLocalWimRatType(), 2U);
    EXPECT_TRUE(log.hasNot(info(featureId, HasSubstr("ddal_sysinfo_get_uint"))));
}

TEST_F(IdentificationOnWim, HasNoModule) {
    EXPECT_EQ(ApiGetModuleVersion(), 64U);
    EXPECT_TRUE(log.has(warning(featureId, HasSubstr("ddal_devicetree_get_module_unit_id() returned '0x"))));
}

} // namespace
} // namespace mox::testing
