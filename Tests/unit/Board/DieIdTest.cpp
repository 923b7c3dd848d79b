#include "unit/Board/IdentityPlatform.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;

/// A text of the processor's die.
struct DieText {
    const char* name;
    std::uint32_t (*read)(char*, std::uint32_t);
    const char* ddalFunction;
    std::uint32_t asked;
    const char* failure; ///< line for result -5
};

void PrintTo(const DieText& text, std::ostream* out) {
    *out << text.name;
}

class DieIdentity : public Identification, public ::testing::WithParamInterface<DieText> {};

TEST_P(DieIdentity, IsReadInFullLengthEachTime) {
    const std::string longest(GetParam().asked, 'D');
    platform.answerText(GetParam().ddalFunction, longest);
    char text[200] = {};
    EXPECT_EQ(GetParam().read(text, 200), 1U);
    EXPECT_EQ(text, longest);
    platform.answerText(GetParam().ddalFunction, "5");
    EXPECT_EQ(GetParam().read(text, 200), 1U);
    EXPECT_STREQ(text, "5");
    const std::string call = GetParam().ddalFunction + ("(" + std::to_string(GetParam().asked) + ")");
    EXPECT_THAT(platform.takeCalls(), ElementsAre(call, call));
}

TEST_P(DieIdentity, IsCutWithoutATerminatorAndFilledUpWithZeros) {
    platform.answerText(GetParam().ddalFunction, "0123");
    char text[12];
    std::fill(std::begin(text), std::end(text), '-');
    EXPECT_EQ(GetParam().read(text, 3), 1U);
    EXPECT_EQ(std::string(text, 12), "012---------");
    EXPECT_EQ(GetParam().read(text, 11), 1U);
    EXPECT_EQ(std::string(text, 12), std::string("0123\0\0\0\0\0\0\0-", 12));
}

TEST_P(DieIdentity, ThatCannotBeReadIsLoggedAndLeavesTheDestination) {
    platform.failWith(GetParam().ddalFunction, -5);
    char text[8] = "-------";
    EXPECT_EQ(GetParam().read(text, 8), 0U);
    EXPECT_STREQ(text, "-------");
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    platform.failWith(GetParam().ddalFunction, 1);
    EXPECT_EQ(GetParam().read(text, 8), 0U);
    EXPECT_EQ(platform.takeLog().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    EachText, DieIdentity,
    ::testing::Values(
        DieText{"Id", &ApiGetDieId, "ddal_devicetree_get_die_id", 129,
                "ApiGetDieId(): ddal_devicetree_get_die_id() returned '0xfffffffb' (not DDAL_OK)"},
        DieText{"Quality", &ApiGetDieIdQuality, "ddal_devicetree_get_die_id_quality", 9,
                "ApiGetDieIdQuality(): ddal_devicetree_get_die_id_quality() returned '0xfffffffb' (not DDAL_OK)"}),
    [](const auto& text) { return std::string(text.param.name); });

} // namespace
} // namespace mox::testing
