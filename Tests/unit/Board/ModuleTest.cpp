#include "Board/src/Caches.hpp"
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
using ::testing::IsEmpty;

constexpr std::uint32_t unknownVersion = 64;

/// A text of the local unit's module.
struct ModuleText {
    const char* name;
    std::uint32_t (*read)(char*, std::uint32_t);
    const char* ddalFunction;
    std::uint32_t asked;
    const char* failure; ///< line for result -19
};

void PrintTo(const ModuleText& text, std::ostream* out) {
    *out << text.name;
}

class ModuleIdentity : public Identification, public ::testing::WithParamInterface<ModuleText> {
protected:
    void answer(const std::string& text) { platform.answerText(GetParam().ddalFunction, text); }
    std::string call() { return GetParam().ddalFunction + ("(" + std::to_string(GetParam().asked) + ")"); }
};

TEST_P(ModuleIdentity, IsReadOnceInFullLength) {
    const std::string longest = std::string("123456789ABCDEFGH").substr(0, GetParam().asked);
    answer(longest);
    char text[32] = {};
    EXPECT_EQ(GetParam().read(text, 2), 1U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call()));
    answer("other");
    EXPECT_EQ(GetParam().read(text, 32), 1U);
    EXPECT_EQ(text, longest);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_P(ModuleIdentity, IsCutWithoutATerminatorAndFilledUpWithZeros) {
    answer("MDAE");
    char text[12];
    std::fill(std::begin(text), std::end(text), '-');
    EXPECT_EQ(GetParam().read(text, 3), 1U);
    EXPECT_EQ(std::string(text, 12), "MDA---------");
    EXPECT_EQ(GetParam().read(text, 11), 1U);
    EXPECT_EQ(std::string(text, 12), std::string("MDAE\0\0\0\0\0\0\0-", 12));
}

TEST_P(ModuleIdentity, ThatCannotBeReadIsLoggedAndReadAgain) {
    platform.failWith(GetParam().ddalFunction, -19);
    answer("MDAE");
    char text[8] = "-------";
    EXPECT_EQ(GetParam().read(text, 8), 0U);
    EXPECT_STREQ(text, "-------");
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    platform.failWith(GetParam().ddalFunction, 1);
    EXPECT_EQ(GetParam().read(text, 8), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
    platform.failWith(GetParam().ddalFunction, 0);
    EXPECT_EQ(GetParam().read(text, 8), 1U);
    EXPECT_STREQ(text, "MDAE");
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call(), call(), call()));
}

INSTANTIATE_TEST_SUITE_P(
    EachText, ModuleIdentity,
    ::testing::Values(
        ModuleText{"Id", &ApiGetModuleId, "ddal_devicetree_get_module_unit_id", 7,
                   "ApiGetModuleId(): ddal_devicetree_get_module_unit_id() returned '0xffffffed' (not DDAL_OK)"},
        ModuleText{"ProductionCode", &ApiGetModuleProductionCode, "ddal_devicetree_get_module_production_code", 13,
                   "ApiGetModuleProductionCode(): ddal_devicetree_get_module_production_code() returned '0xffffffed' "
                   "(not DDAL_OK)"},
        ModuleText{"SerialNumber", &ApiGetModuleSerialNumber, "ddal_devicetree_get_module_serial_number", 17,
                   "ApiGetModuleSerialNumber(): ddal_devicetree_get_module_serial_number() returned '0xffffffed' "
                   "(not DDAL_OK)"}),
    [](const auto& text) { return std::string(text.param.name); });

class LocalModuleVersion : public Identification {
protected:
    void plug(const std::string& code) { platform.answerText("ddal_devicetree_get_module_unit_id", code); }

    /// The lines of a search that looks at this many rows.
    static std::vector<LogLine> search(const std::string& code, std::size_t rows) {
        std::vector<LogLine> lines;
        for (std::size_t i = 0; i < rows; ++i) {
            lines.push_back(debugLine("ApiGetModuleVersion(" + std::to_string(i) + ") '" + code + "' = '" +
                                      moduleRows[i].code + "'"));
        }
        return lines;
    }
};

TEST_F(LocalModuleVersion, OfEachCodeIsFoundAndEachRowLogged) {
    for (std::size_t i = 0; i < moduleRows.size(); ++i) {
        ps::hwapi::board::caches.forget();
        plug(moduleRows[i].code);
        EXPECT_EQ(ApiGetModuleVersion(), moduleRows[i].version) << moduleRows[i].code;
        EXPECT_THAT(platform.takeLog(), ElementsAreArray(search(moduleRows[i].code, i + 1)));
    }
}

TEST_F(LocalModuleVersion, IsLookedUpOnce) {
    plug("MDAA");
    EXPECT_EQ(ApiGetModuleVersion(), 6U);
    EXPECT_THAT(platform.takeLog(), ElementsAre(debugLine("ApiGetModuleVersion(0) 'MDAA' = 'MDAA'")));
    EXPECT_EQ(ApiGetModuleVersion(), 6U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_module_unit_id(7)"));
}

TEST_F(LocalModuleVersion, ComparesWholeCodes) {
    for (const char* code : {"MDA", "MDAAA", "mdaa", "MDAAVX", "XMDAA", "MDALVMD"}) {
        ps::hwapi::board::caches.forget();
        plug(code);
        EXPECT_EQ(ApiGetModuleVersion(), unknownVersion);
        EXPECT_THAT(platform.takeLog(), ElementsAreArray(search(code, 26)));
    }
}

TEST_F(LocalModuleVersion, OfAnUnknownCodeIsLookedUpAgainWithoutReadingTheCodeAgain) {
    plug("MDZZ");
    EXPECT_EQ(ApiGetModuleVersion(), unknownVersion);
    EXPECT_EQ(ApiGetModuleVersion(), unknownVersion);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_module_unit_id(7)"));
    EXPECT_EQ(platform.takeLog().size(), 2U * 26U);
}

TEST_F(LocalModuleVersion, OfAModuleThatCannotBeReadIsUnknownUntilItCan) {
    plug("MDALV");
    platform.failWith("ddal_devicetree_get_module_unit_id", -2);
    EXPECT_EQ(ApiGetModuleVersion(), unknownVersion);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(warningLine("ApiGetModuleId(): ddal_devicetree_get_module_unit_id() returned "
                                        "'0xfffffffe' (not DDAL_OK)")));
    platform.failWith("ddal_devicetree_get_module_unit_id", 0);
    EXPECT_EQ(ApiGetModuleVersion(), 45U);
    EXPECT_EQ(platform.takeLog().size(), 26U);
}

} // namespace
} // namespace mox::testing
