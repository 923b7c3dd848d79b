#include "UnitFixture.hpp"

#include <ddal/ddal_devicetree.h>

#include <algorithm>

namespace mox::testing {
namespace {

class Devicetree : public OnUnit {};
const testkit::BoardOf s_board("Devicetree", testkit::Board::text(unitBoard));

using ReadText = int (*)(std::uint32_t length, char* text);

struct TextRow {
    const char* name;
    ReadText read;
    const char* text;
};

const TextRow textRows[] = {
    {"unit id", [](std::uint32_t n, char* t) { return ddal_devicetree_get_unit_id(0, n, t); }, "KORE"},
    {"production code", [](std::uint32_t n, char* t) { return ddal_devicetree_get_production_code(0, n, t); },
     "471238A.101"},
    {"serial number", [](std::uint32_t n, char* t) { return ddal_devicetree_get_serial_number(0, n, t); },
     "K516010000123456"},
    {"other unit id", [](std::uint32_t n, char* t) { return ddal_devicetree_get_unit_id(7, n, t); }, "ZUPA"},
    {"other unit's code", [](std::uint32_t n, char* t) { return ddal_devicetree_get_production_code(7, n, t); }, ""},
    {"other serial number", [](std::uint32_t n, char* t) { return ddal_devicetree_get_serial_number(7, n, t); }, "Z1"},
    {"module id", ddal_devicetree_get_module_unit_id, "MDAAV"},
    {"module code", ddal_devicetree_get_module_production_code, "511002A.101"},
    {"module serial number", ddal_devicetree_get_module_serial_number, "M1"},
    {"external module id", [](std::uint32_t n, char* t) { return ddal_devicetree_get_ext_module_unit_id(4, n, t); },
     "MDAB"},
    {"external module code",
     [](std::uint32_t n, char* t) { return ddal_devicetree_get_ext_module_production_code(4, n, t); }, "E4.101"},
    {"external serial number",
     [](std::uint32_t n, char* t) { return ddal_devicetree_get_ext_module_serial_number(0, n, t); }, "E0"},
    {"die id", ddal_devicetree_get_die_id, "00112233445566778899aabbccddeeff"},
    {"die id quality", ddal_devicetree_get_die_id_quality, "good"},
};

TEST_F(Devicetree, GivesEachTextAsDescribed) {
    for (const TextRow& row : textRows) {
        SCOPED_TRACE(row.name);
        char text[129] = "untouched";
        EXPECT_EQ(row.read(sizeof text, text), DDAL_OK);
        EXPECT_STREQ(text, row.text);
    }
}

TEST_F(Devicetree, CutsATextToItsRoomWithoutATerminator) {
    for (const TextRow& row : textRows) {
        SCOPED_TRACE(row.name);
        const std::string whole = row.text;
        for (std::uint32_t length = 1; length <= whole.size() + 1; ++length) {
            char text[130];
            std::fill(std::begin(text), std::end(text), '#');
            EXPECT_EQ(row.read(length, text), DDAL_OK);
            const std::string expected = (whole + std::string(1, '\0')).substr(0, length) + "#";
            EXPECT_EQ(std::string(text, length + 1), expected) << length;
        }
    }
}

TEST_F(Devicetree, RefusesToWriteNowhere) {
    for (const TextRow& row : textRows) {
        SCOPED_TRACE(row.name);
        char text = '#';
        EXPECT_EQ(row.read(8, nullptr), DDAL_INVALID_PARAMETER);
        EXPECT_EQ(row.read(0, &text), DDAL_INVALID_PARAMETER);
        EXPECT_EQ(text, '#');
    }
    EXPECT_EQ(ddal_devicetree_get_hw_sw_id(0, nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(Devicetree, GivesTheIdentifierOfEachUnit) {
    std::uint32_t id = 0;
    EXPECT_EQ(ddal_devicetree_get_hw_sw_id(0, &id), DDAL_OK);
    EXPECT_EQ(id, 0x00505001u);
    EXPECT_EQ(ddal_devicetree_get_hw_sw_id(7, &id), DDAL_OK);
    EXPECT_EQ(id, 0x00203000u);
}

TEST_F(Devicetree, KnowsNoOtherUnitsAndPorts) {
    char text[] = "before";
    std::uint32_t id = 17;
    EXPECT_EQ(ddal_devicetree_get_unit_id(1, sizeof text, text), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_devicetree_get_hw_sw_id(8, &id), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_devicetree_get_ext_module_unit_id(1, sizeof text, text), DDAL_NOT_FOUND);
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(id, 17u);
}

TEST_F(Devicetree, IsTheSameInAnotherProcess) {
    EXPECT_EQ(runPeer({"unit"}).out, "0 KORE");
    EXPECT_EQ(runPeer({"unit"}, {{"MOX_NODE", "1021"}}).out, "0 WIMA");
}

class DevicetreeOfAPlainUnit : public OnUnit {};
const testkit::BoardOf s_plain("DevicetreeOfAPlainUnit", testkit::Board::text(unitBoard).at(secondNode));

TEST_F(DevicetreeOfAPlainUnit, HasNoModule) {
    char text[] = "before";
    EXPECT_EQ(ddal_devicetree_get_module_unit_id(sizeof text, text), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_devicetree_get_module_production_code(sizeof text, text), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_devicetree_get_module_serial_number(sizeof text, text), DDAL_NOT_FOUND);
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(ddal_devicetree_get_die_id(sizeof text, text), DDAL_OK);
    EXPECT_STREQ(text, "");
}

TEST_F(DevicetreeOfAPlainUnit, SeesAModuleThatIsPluggedIn) {
    char text[8] = "";
    ASSERT_EQ(ddal_devicetree_get_module_unit_id(sizeof text, text), DDAL_NOT_FOUND);
    const char* plugged = R"({"id": 4129, "unit": {"id": "WIMA", "hwSwId": 0}, "module": {"id": "MDAB"}})";
    ASSERT_TRUE(run().store().put(host::Table::nodes, "1021", plugged));
    EXPECT_EQ(ddal_devicetree_get_module_unit_id(sizeof text, text), DDAL_OK);
    EXPECT_STREQ(text, "MDAB");
}

} // namespace
} // namespace mox::testing
