#include "unit/Board/IdentityPlatform.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

#include <ostream>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A text of a unit, and the two functions that read it.
struct UnitText {
    const char* name;
    std::uint32_t (*read)(std::uint32_t, char*, std::uint32_t);
    std::uint32_t (*readLocal)(char*, std::uint32_t);
    const char* ddalFunction;
    const char* asked;   ///< characters that the local function asks for
    const char* longest; ///< a text of as many characters as the device tree has at most
    const char* failure; ///< line for result -5
};

void PrintTo(const UnitText& text, std::ostream* out) {
    *out << text.name;
}

class UnitIdentity : public Identification, public ::testing::WithParamInterface<UnitText> {
protected:
    void answer(const std::string& text) { platform.answerText(GetParam().ddalFunction, text); }
    void failWith(int result) { platform.failWith(GetParam().ddalFunction, result); }
    std::string call(const std::string& arguments) { return GetParam().ddalFunction + ("(" + arguments + ")"); }
};

TEST_P(UnitIdentity, OfAUnitIsWrittenByTheDeviceTree) {
    answer("ABC");
    char text[8] = "-------";
    EXPECT_EQ(GetParam().read(3, text, 5), 1U);
    EXPECT_EQ(std::string(text, 8), std::string("ABC\0\0--\0", 8));
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call("3, 5")));
}

TEST_P(UnitIdentity, OfAUnitIsReadAnewEachTime) {
    char text[8] = {};
    answer("A");
    EXPECT_EQ(GetParam().read(0, text, 8), 1U);
    answer("B");
    EXPECT_EQ(GetParam().read(0, text, 8), 1U);
    EXPECT_STREQ(text, "B");
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call("0, 8"), call("0, 8")));
}

TEST_P(UnitIdentity, ThatCannotBeReadIsLoggedAndLeavesTheDestination) {
    failWith(-5);
    char text[8] = "-------";
    EXPECT_EQ(GetParam().read(3, text, 8), 0U);
    EXPECT_STREQ(text, "-------");
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    failWith(1);
    EXPECT_EQ(GetParam().read(3, text, 8), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
}

TEST_P(UnitIdentity, OfTheLocalUnitIsReadOnceInFullLength) {
    answer(GetParam().longest);
    char text[32] = {};
    EXPECT_EQ(GetParam().readLocal(text, 4), 1U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call(std::string("0, ") + GetParam().asked)));
    answer("other");
    EXPECT_EQ(GetParam().readLocal(text, 32), 1U);
    EXPECT_STREQ(text, GetParam().longest);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_P(UnitIdentity, OfTheLocalUnitIsCutWithoutATerminatorAndFilledUpWithZeros) {
    answer("ABCDE");
    char text[16];
    std::fill(std::begin(text), std::end(text), '-');
    EXPECT_EQ(GetParam().readLocal(text, 0), 1U);
    EXPECT_EQ(std::string(text, 16), std::string(16, '-'));
    EXPECT_EQ(GetParam().readLocal(text, 4), 1U);
    EXPECT_EQ(std::string(text, 16), "ABCD" + std::string(12, '-'));
    EXPECT_EQ(GetParam().readLocal(text, 5), 1U);
    EXPECT_EQ(std::string(text, 16), "ABCDE" + std::string(11, '-'));
    EXPECT_EQ(GetParam().readLocal(text, 15), 1U);
    EXPECT_EQ(std::string(text, 16), "ABCDE" + std::string(10, '\0') + "-");
}

TEST_P(UnitIdentity, OfTheLocalUnitThatCannotBeReadIsReadAgain) {
    failWith(-5);
    answer("ABC");
    char text[8] = "-------";
    EXPECT_EQ(GetParam().readLocal(text, 8), 0U);
    EXPECT_STREQ(text, "-------");
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    failWith(0);
    EXPECT_EQ(GetParam().readLocal(text, 8), 1U);
    EXPECT_STREQ(text, "ABC");
    EXPECT_EQ(platform.takeCalls().size(), 2U);
}

TEST_P(UnitIdentity, OfTheLocalUnitThatIsEmptyIsReadAgain) {
    answer("");
    char text[8] = "-------";
    EXPECT_EQ(GetParam().readLocal(text, 8), 1U);
    EXPECT_STREQ(text, "");
    answer("ABC");
    EXPECT_EQ(GetParam().readLocal(text, 8), 1U);
    EXPECT_STREQ(text, "ABC");
    EXPECT_EQ(platform.takeCalls().size(), 2U);
}

TEST_P(UnitIdentity, OfTheLocalUnitEndsAlsoWhenTheDeviceTreeFillsItsRoom) {
    answer(std::string(200, 'X'));
    char text[32] = {};
    EXPECT_EQ(GetParam().readLocal(text, 32), 1U);
    EXPECT_EQ(std::string(text), std::string(std::stoul(GetParam().asked), 'X'));
}

INSTANTIATE_TEST_SUITE_P(
    EachText, UnitIdentity,
    ::testing::Values(
        UnitText{"UnitId", &ApiGetUnitId, &ApiGetLocalUnitId, "ddal_devicetree_get_unit_id", "7", "ABCDEFG",
                 "ApiGetUnitId(): ddal_devicetree_get_unit_id() returned '0xfffffffb' (not DDAL_OK)"},
        UnitText{"ProductionCode", &ApiGetUnitProductionCode, &ApiGetLocalUnitProductionCode,
                 "ddal_devicetree_get_production_code", "13", "123456A.7890",
                 "ApiGetUnitProductionCode(): ddal_devicetree_get_production_code() returned '0xfffffffb' "
                 "(not DDAL_OK)"},
        UnitText{"SerialNumber", &ApiGetUnitSerialNumber, &ApiGetLocalUnitSerialNumber,
                 "ddal_devicetree_get_serial_number", "17", "0123456789ABCDEF",
                 "ApiGetUnitSerialNumber(): ddal_devicetree_get_serial_number() returned '0xfffffffb' "
                 "(not DDAL_OK)"}),
    [](const auto& text) { return std::string(text.param.name); });

class HardwareIdentifier : public Identification {};

TEST_F(HardwareIdentifier, OfAUnitIsReadAnewEachTime) {
    platform.hwSwId = 0xA1B2C3D4;
    EXPECT_EQ(ApiGetUnitHwSwId(2), 0xA1B2C3D4U);
    EXPECT_EQ(ApiGetUnitHwSwId(2), 0xA1B2C3D4U);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("ddal_devicetree_get_hw_sw_id(2)", "ddal_devicetree_get_hw_sw_id(2)"));
}

TEST_F(HardwareIdentifier, ThatCannotBeReadIsZeroAndLogged) {
    for (const int result : {-5, -2, 1}) {
        platform.failWith("ddal_devicetree_get_hw_sw_id", result);
        EXPECT_EQ(ApiGetUnitHwSwId(2), 0U);
        EXPECT_THAT(platform.takeLog(),
                    ElementsAre(warningLine("ApiGetUnitHwSwId(): ddal_devicetree_get_hw_sw_id() returned '" +
                                            hexText(static_cast<std::uint32_t>(result)) + "' (not DDAL_OK)")));
    }
}

TEST_F(HardwareIdentifier, OfTheLocalUnitIsReadOnce) {
    platform.hwSwId = 0x00500000;
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0x00500000U);
    platform.hwSwId = 0x00600000;
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0x00500000U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_hw_sw_id(0)"));
}

TEST_F(HardwareIdentifier, OfTheLocalUnitIsReadUntilItIsKnown) {
    platform.hwSwId = 0x00500000;
    platform.failWith("ddal_devicetree_get_hw_sw_id", -5);
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
    platform.failWith("ddal_devicetree_get_hw_sw_id", 0);
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0x00500000U);
    EXPECT_EQ(platform.takeCalls().size(), 2U);
}

TEST_F(HardwareIdentifier, HoldsTheHardwareIdInBits12To27) {
    platform.hwSwId = 0xF1234FFF;
    EXPECT_EQ(ApiGetUnitHwId(5), 0x1234U);
    EXPECT_EQ(ApiGetUnitHwId(5), 0x1234U);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("ddal_devicetree_get_hw_sw_id(5)", "ddal_devicetree_get_hw_sw_id(5)"));
    platform.hwSwId = 0xFFFFFFFF;
    EXPECT_EQ(ApiGetUnitHwId(5), 0xFFFFU);
    platform.hwSwId = 0xF0000FFF;
    EXPECT_EQ(ApiGetUnitHwId(5), 0U);
}

TEST_F(HardwareIdentifier, OfTheLocalUnitGivesTheHardwareIdOnce) {
    platform.failWith("ddal_devicetree_get_hw_sw_id", -5);
    platform.hwSwId = 0x0FE01000;
    EXPECT_EQ(ApiGetLocalUnitHwId(), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
    platform.failWith("ddal_devicetree_get_hw_sw_id", 0);
    EXPECT_EQ(ApiGetLocalUnitHwId(), 0xFE01U);
    platform.hwSwId = 0x00500000;
    EXPECT_EQ(ApiGetLocalUnitHwId(), 0xFE01U);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("ddal_devicetree_get_hw_sw_id(0)", "ddal_devicetree_get_hw_sw_id(0)"));
}

TEST_F(HardwareIdentifier, IsReadForEachOfTheLocalValuesByItself) {
    platform.hwSwId = 0x00505000;
    EXPECT_EQ(ApiGetLocalUnitHwSwId(), 0x00505000U);
    EXPECT_EQ(ApiGetLocalUnitHwId(), 0x0505U);
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Kor);
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Kore);
    EXPECT_EQ(platform.takeCalls(), std::vector<std::string>(4, "ddal_devicetree_get_hw_sw_id(0)"));
    EXPECT_EQ(platform.takeLog().size(), 3U);
}

} // namespace
} // namespace mox::testing
