#include "Board/src/Caches.hpp"
#include "unit/Board/IdentityPlatform.hpp"
#include "unit/Board/lookupRows.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t unknownType = 26;
constexpr std::uint32_t unknownVersion = 80;
constexpr std::uint32_t wimType = 19;
constexpr std::uint32_t hardwareIds = 0x10000;

const NamedRow* rowWith(const std::vector<NamedRow>& rows, std::uint32_t key) {
    for (const NamedRow& row : rows) {
        if (row.key == key) {
            return &row;
        }
    }
    return nullptr;
}

LogLine typeLine(std::uint32_t hwSwId, const NamedRow* row) {
    if (row == nullptr) {
        return debugLine("ApiGetUnitType: returning EUnitType_Unknown (hwswid:" + hexText(hwSwId) + ")");
    }
    return debugLine("ApiGetUnitType: hwswid = " + hexText(hwSwId) + ", unit type = " + std::to_string(row->value) +
                     " (" + row->name + ")");
}

LogLine versionLine(std::uint32_t hwSwId, const NamedRow* row) {
    if (row == nullptr) {
        return debugLine("ApiGetUnitVersion: returning EUnitVersion_Unknown (hwswid:" + hexText(hwSwId) + ")");
    }
    return debugLine("ApiGetUnitVersion: hwswid = " + hexText(hwSwId) +
                     ", unit version = " + std::to_string(row->value) + " (" + row->name + ")");
}

class UnitType : public Identification {};
class UnitVersion : public Identification {};

TEST_F(UnitType, OfEachRowIsFoundAndLogged) {
    for (const NamedRow& row : unitTypeRows) {
        EXPECT_EQ(ApiGetUnitTypeFromHwSwId(row.key), row.value);
        EXPECT_THAT(platform.takeLog(), ElementsAre(typeLine(row.key, &row)));
    }
}

TEST_F(UnitType, OfAllHardwareIdsGoesByBits20To27Alone) {
    unsigned int known = 0;
    for (std::uint32_t hardwareId = 0; hardwareId < hardwareIds; ++hardwareId) {
        const std::uint32_t hwSwId = 0xF0000ABC | hardwareId << 12;
        const NamedRow* const row = rowWith(unitTypeRows, hwSwId & 0x0FF00000);
        known += row != nullptr ? 1 : 0;
        ASSERT_EQ(ApiGetUnitTypeFromHwSwId(hwSwId), row != nullptr ? row->value : unknownType) << hexText(hwSwId);
        ASSERT_THAT(platform.takeLog(), ElementsAre(typeLine(hwSwId, row)));
    }
    EXPECT_EQ(known, 6U * 256U);
}

TEST_F(UnitType, OfNoIdentifierIsUnknown) {
    EXPECT_EQ(ApiGetUnitTypeFromHwSwId(0), EUnitType_Unknown);
    EXPECT_THAT(platform.takeLog(), ElementsAre(debugLine("ApiGetUnitType: returning EUnitType_Unknown (hwswid:0x0)")));
}

TEST_F(UnitType, OfAUnitGoesByItsIdentifierEachTime) {
    platform.hwSwId = 0x0FE02123;
    EXPECT_EQ(ApiGetUnitType(4), EUnitType_Lom);
    EXPECT_EQ(ApiGetUnitType(4), EUnitType_Lom);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("ddal_devicetree_get_hw_sw_id(4)", "ddal_devicetree_get_hw_sw_id(4)"));
    const LogLine line = debugLine("ApiGetUnitType: hwswid = 0xfe02123, unit type = 23 (EUnitType_Lom)");
    EXPECT_THAT(platform.takeLog(), ElementsAre(line, line));
}

TEST_F(UnitType, OfTheLocalUnitIsAskedOnce) {
    platform.hwSwId = 0x00209000;
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Zup);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_hw_sw_id(0)"));
    EXPECT_EQ(platform.takeLog().size(), 1U);
    platform.hwSwId = 0x00500000;
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Zup);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_F(UnitType, ThatCannotBeToldIsAskedForAgain) {
    platform.failWith("ddal_devicetree_get_hw_sw_id", -5);
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Unknown);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(warningLine("ApiGetUnitHwSwId(): ddal_devicetree_get_hw_sw_id() returned '0xfffffffb' "
                                        "(not DDAL_OK)"),
                            typeLine(0, nullptr)));
    platform.failWith("ddal_devicetree_get_hw_sw_id", 0);
    platform.hwSwId = 0x0F100000;
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Unknown);
    platform.hwSwId = 0x00600000;
    EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Jep);
    EXPECT_EQ(platform.takeCalls().size(), 3U);
    EXPECT_EQ(platform.takeLog().size(), 2U);
}

TEST_F(UnitVersion, OfEachRowIsFoundAndLogged) {
    for (const NamedRow& row : unitVersionRows) {
        EXPECT_EQ(ApiGetUnitVersionFromHwSwId(row.key), row.value);
        EXPECT_THAT(platform.takeLog(), ElementsAre(typeLine(row.key, rowWith(unitTypeRows, row.key & 0x0FF00000)),
                                                    versionLine(row.key, &row)));
    }
}

TEST_F(UnitVersion, OfAllHardwareIdsGoesByBits12To27) {
    unsigned int known = 0;
    for (std::uint32_t hardwareId = 0; hardwareId < hardwareIds; ++hardwareId) {
        const std::uint32_t hwSwId = 0xF0000DEF | hardwareId << 12;
        const NamedRow* const type = rowWith(unitTypeRows, hwSwId & 0x0FF00000);
        const bool isWim = type != nullptr && type->value == wimType;
        const NamedRow* const row = rowWith(unitVersionRows, hwSwId & (isWim ? 0x00F00000 : 0x0FFFF000));
        known += row != nullptr ? 1 : 0;
        ASSERT_EQ(ApiGetUnitVersionFromHwSwId(hwSwId), row != nullptr ? row->value : unknownVersion) << hexText(hwSwId);
        ASSERT_THAT(platform.takeLog(), ElementsAre(typeLine(hwSwId, type), versionLine(hwSwId, row)));
    }
    EXPECT_EQ(known, 31U + 256U);
}

TEST_F(UnitVersion, OfAWimIsTheSameForAllRevisions) {
    for (std::uint32_t revision = 0; revision < 0x100; ++revision) {
        ASSERT_EQ(ApiGetUnitVersionFromHwSwId(0x00A00000 | revision << 12), EUnitVersion_Wim);
    }
    EXPECT_EQ(platform.takeLog().back(),
              debugLine("ApiGetUnitVersion: hwswid = 0xaff000, unit version = 51 (EUnitVersion_Wim)"));
}

TEST_F(UnitVersion, OfNoIdentifierIsUnknown) {
    EXPECT_EQ(ApiGetUnitVersionFromHwSwId(0), EUnitVersion_Unknown);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(debugLine("ApiGetUnitType: returning EUnitType_Unknown (hwswid:0x0)"),
                            debugLine("ApiGetUnitVersion: returning EUnitVersion_Unknown (hwswid:0x0)")));
}

TEST_F(UnitVersion, IsFoundInARowBehindLargerOnes) {
    EXPECT_EQ(ApiGetUnitVersionFromHwSwId(0x00216000), EUnitVersion_Zupk);
    EXPECT_EQ(platform.takeLog().back(),
              debugLine("ApiGetUnitVersion: hwswid = 0x216000, unit version = 61 (EUnitVersion_Zupk)"));
}

TEST_F(UnitVersion, OfAUnitGoesByItsIdentifierEachTime) {
    platform.hwSwId = 0x00505FFF;
    EXPECT_EQ(ApiGetUnitVersion(7), EUnitVersion_Kore);
    EXPECT_EQ(ApiGetUnitVersion(7), EUnitVersion_Kore);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("ddal_devicetree_get_hw_sw_id(7)", "ddal_devicetree_get_hw_sw_id(7)"));
    EXPECT_EQ(platform.takeLog().size(), 4U);
}

TEST_F(UnitVersion, OfTheLocalUnitIsAskedOnce) {
    platform.hwSwId = 0x0FD02000;
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Daxb);
    EXPECT_EQ(platform.takeLog().size(), 2U);
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Daxb);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_hw_sw_id(0)"));
}

TEST_F(UnitVersion, ThatCannotBeToldIsAskedForAgain) {
    platform.failWith("ddal_devicetree_get_hw_sw_id", -2);
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Unknown);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(warningLine("ApiGetUnitHwSwId(): ddal_devicetree_get_hw_sw_id() returned '0xfffffffe' "
                                        "(not DDAL_OK)"),
                            typeLine(0, nullptr), versionLine(0, nullptr)));
    platform.failWith("ddal_devicetree_get_hw_sw_id", 0);
    platform.hwSwId = 0x00600000;
    EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Jepa);
    EXPECT_EQ(platform.takeCalls().size(), 2U);
    EXPECT_EQ(platform.takeLog().size(), 2U);
}

TEST_F(UnitVersion, OfNoRowIsThatOfAYolmpr) {
    for (const NamedRow& row : unitVersionRows) {
        ps::hwapi::board::caches.forget();
        platform.hwSwId = row.key;
        EXPECT_EQ(ApiIsYolmpr(), 0U) << row.name;
        EXPECT_EQ(ApiIsYolmpr(), 0U) << row.name;
    }
    EXPECT_EQ(platform.takeCalls().size(), unitVersionRows.size());
    EXPECT_EQ(platform.takeLog().size(), 2 * unitVersionRows.size());
}

TEST_F(UnitVersion, Number81AloneIsThatOfAYolmpr) {
    for (const std::int32_t version : {81, 79, 82, 0, 19}) {
        ps::hwapi::board::caches.forget();
        ps::hwapi::board::caches.unitVersion.get([version] { return version; });
        EXPECT_EQ(ApiIsYolmpr(), version == 81 ? 1U : 0U) << version;
    }
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

} // namespace
} // namespace mox::testing
