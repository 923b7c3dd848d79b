#include "unit/Board/IdentityPlatform.hpp"
#include "unit/Board/lookupRows.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

/// A text of the module on an external port.
struct ExtModuleText {
    const char* name;
    std::uint32_t (*read)(std::uint32_t, char*, std::uint32_t);
    const char* ddalFunction;
    std::uint32_t asked;
    const char* failure; ///< line for port 171 and result -2
};

void PrintTo(const ExtModuleText& text, std::ostream* out) {
    *out << text.name;
}

class ExtModuleIdentity : public Identification, public ::testing::WithParamInterface<ExtModuleText> {
protected:
    void answer(const std::string& text) { platform.answerText(GetParam().ddalFunction, text); }
};

TEST_P(ExtModuleIdentity, IsReadInFullLengthEachTime) {
    const std::string longest = std::string("123456789ABCDEFGH").substr(0, GetParam().asked);
    answer(longest);
    char text[32] = {};
    EXPECT_EQ(GetParam().read(9, text, 32), 1U);
    EXPECT_EQ(text, longest);
    answer("MDAB");
    EXPECT_EQ(GetParam().read(9, text, 32), 1U);
    EXPECT_STREQ(text, "MDAB");
    const std::string call = GetParam().ddalFunction + ("(9, " + std::to_string(GetParam().asked) + ")");
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call, call));
}

TEST_P(ExtModuleIdentity, IsCutWithoutATerminatorAndFilledUpWithZeros) {
    answer("MDAE");
    char text[12];
    std::fill(std::begin(text), std::end(text), '-');
    EXPECT_EQ(GetParam().read(0, text, 3), 1U);
    EXPECT_EQ(std::string(text, 12), "MDA---------");
    EXPECT_EQ(GetParam().read(0, text, 11), 1U);
    EXPECT_EQ(std::string(text, 12), std::string("MDAE\0\0\0\0\0\0\0-", 12));
}

TEST_P(ExtModuleIdentity, ThatCannotBeReadIsLoggedAndLeavesTheDestination) {
    platform.failWith(GetParam().ddalFunction, -2);
    char text[8] = "-------";
    EXPECT_EQ(GetParam().read(171, text, 8), 0U);
    EXPECT_STREQ(text, "-------");
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    platform.failWith(GetParam().ddalFunction, 1);
    EXPECT_EQ(GetParam().read(171, text, 8), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    EachText, ExtModuleIdentity,
    ::testing::Values(
        ExtModuleText{"Id", &ApiGetExtModuleId, "ddal_devicetree_get_ext_module_unit_id", 7,
                      "ApiGetExtModuleId(): ddal_devicetree_get_ext_module_unit_id(port_id=0xab) returned "
                      "'0xfffffffe' (not DDAL_OK)"},
        ExtModuleText{"ProductionCode", &ApiGetExtModuleProductionCode,
                      "ddal_devicetree_get_ext_module_production_code", 13,
                      "ApiGetExtModuleProductionCode(): ddal_devicetree_get_ext_module_production_code(port_id=0xab) "
                      "returned '0xfffffffe' (not DDAL_OK)"},
        ExtModuleText{"SerialNumber", &ApiGetExtModuleSerialNumber, "ddal_devicetree_get_ext_module_serial_number", 17,
                      "ApiGetExtModuleSerialNumber(): ddal_devicetree_get_ext_module_serial_number(port_id=0xab) "
                      "returned '0xfffffffe' (not DDAL_OK)"}),
    [](const auto& text) { return std::string(text.param.name); });

class ExtModuleVersion : public Identification {
protected:
    void plug(const std::string& code) { platform.answerText("ddal_devicetree_get_ext_module_unit_id", code); }

    static std::vector<LogLine> search(const std::string& code, std::size_t rows) {
        std::vector<LogLine> lines;
        for (std::size_t i = 0; i < rows; ++i) {
            lines.push_back(debugLine("ApiGetExtModuleVersion(" + std::to_string(i) + ") '" + code + "' = '" +
                                      moduleRows[i].code + "'"));
        }
        return lines;
    }
};

TEST_F(ExtModuleVersion, OfEachCodeIsFoundAndEachRowLogged) {
    for (std::size_t i = 0; i < moduleRows.size(); ++i) {
        plug(moduleRows[i].code);
        EXPECT_EQ(ApiGetExtModuleVersion(2), moduleRows[i].version) << moduleRows[i].code;
        EXPECT_THAT(platform.takeLog(), ElementsAreArray(search(moduleRows[i].code, i + 1)));
    }
    EXPECT_EQ(platform.takeCalls(), std::vector<std::string>(26, "ddal_devicetree_get_ext_module_unit_id(2, 7)"));
}

TEST_F(ExtModuleVersion, OfAnUnknownCodeIs14AndLogged) {
    plug("MDAAVXY");
    EXPECT_EQ(ApiGetExtModuleVersion(12), 14U);
    std::vector<LogLine> expected = search("MDAAVXY", 26);
    expected.push_back(warningLine("ApiGetExtModuleVersion(12): module version not found (name from ddal = MDAAVXY)"));
    EXPECT_THAT(platform.takeLog(), ElementsAreArray(expected));
}

TEST_F(ExtModuleVersion, OfAModuleThatCannotBeReadIs14AndLogged) {
    platform.failWith("ddal_devicetree_get_ext_module_unit_id", -5);
    EXPECT_EQ(ApiGetExtModuleVersion(12), 14U);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(warningLine("ApiGetExtModuleId(): ddal_devicetree_get_ext_module_unit_id(port_id=0xc) "
                                        "returned '0xfffffffb' (not DDAL_OK)"),
                            warningLine("ApiGetExtModuleVersion(12): module version not found (name from ddal = )")));
}

} // namespace
} // namespace mox::testing
