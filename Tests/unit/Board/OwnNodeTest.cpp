#include "Board/src/Caches.hpp"
#include "unit/Board/IdentityPlatform.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

#include <ostream>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The board or the processor: all that is told of the own node's place.
struct Place {
    const char* name;
    std::uint8_t (*read)();
    std::uint16_t IdentityPlatform::*answer;
    const char* mapFunction;
    const char* failure; ///< line for result -19
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << place.name;
}

class OwnNode : public Identification, public ::testing::WithParamInterface<Place> {
protected:
    /// Makes the local unit's type known.
    void beUnit(std::uint32_t hwSwId) {
        platform.hwSwId = hwSwId;
        ApiGetLocalUnitType();
        platform.takeCalls();
        platform.takeLog();
    }
    void answer(std::uint16_t number) { platform.*GetParam().answer = number; }
    std::string map(const std::string& sicad) { return GetParam().mapFunction + ("(" + sicad + ")"); }
};

TEST_P(OwnNode, IsThePlaceOfItsRapidIoId) {
    beUnit(0x00500000);
    platform.ownNid = 0x1A2B;
    platform.rioId = 0x1234;
    answer(0x12);
    EXPECT_EQ(GetParam().read(), 0x12);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("AaSysComGetOwnNid()", "ddal_rio_get_own_id()",
                                                  "AaSysComSicadGet(0x0, 0x1234)", map("0x12340000")));
}

TEST_P(OwnNode, OfAWimIsThePlaceOfItsNodeId) {
    beUnit(0x00A00000);
    platform.ownNid = 0x1A2B;
    platform.rioId = 0x1234;
    answer(0x1A);
    EXPECT_EQ(GetParam().read(), 0x1A);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("AaSysComGetOwnNid()", "AaSysComSicadGet(0x0, 0x1a2b)", map("0x1a2b0000")));
}

TEST_P(OwnNode, OfAnUnknownUnitGoesByItsRapidIoId) {
    platform.failWith("ddal_devicetree_get_hw_sw_id", -5);
    answer(0x12);
    EXPECT_EQ(GetParam().read(), 0x12);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("AaSysComGetOwnNid()", "ddal_devicetree_get_hw_sw_id(0)",
                                                  "ddal_rio_get_own_id()", "AaSysComSicadGet(0x0, 0x0)", map("0x0")));
    EXPECT_EQ(platform.takeLog().size(), 2U);
}

TEST_P(OwnNode, IsAskedForOnce) {
    beUnit(0x00500000);
    answer(0xFF);
    EXPECT_EQ(GetParam().read(), 0xFF);
    answer(0x11);
    platform.takeCalls();
    EXPECT_EQ(GetParam().read(), 0xFF);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_P(OwnNode, WhoseRapidIoIdCannotBeReadIsAskedForAgain) {
    beUnit(0x00500000);
    answer(0x12);
    platform.failWith("ddal_rio_get_own_id", -19);
    EXPECT_EQ(GetParam().read(), 0);
    EXPECT_THAT(platform.takeLog(), ElementsAre(warningLine(GetParam().failure)));
    EXPECT_THAT(platform.takeCalls(), ElementsAre("AaSysComGetOwnNid()", "ddal_rio_get_own_id()"));
    platform.failWith("ddal_rio_get_own_id", 1);
    EXPECT_EQ(GetParam().read(), 0);
    EXPECT_EQ(platform.takeLog().size(), 1U);
    EXPECT_THAT(platform.takeCalls(), ElementsAre("AaSysComGetOwnNid()", "ddal_rio_get_own_id()"));
    platform.failWith("ddal_rio_get_own_id", 0);
    EXPECT_EQ(GetParam().read(), 0x12);
}

TEST_P(OwnNode, WithoutANumberIsAskedForAgain) {
    beUnit(0x00500000);
    EXPECT_EQ(GetParam().read(), 0);
    answer(0x12);
    EXPECT_EQ(GetParam().read(), 0x12);
    EXPECT_EQ(platform.takeCalls().size(), 8U);
}

INSTANTIATE_TEST_SUITE_P(
    EachNumber, OwnNode,
    ::testing::Values(Place{"Board", &ApiGetCurrentBoard, &IdentityPlatform::board, "AaSysComNmapGetBoard",
                            "ApiGetCurrentBoard(): ddal_rio_get_own_id() returned '0xffffffed' (not DDAL_OK)"},
                      Place{"Cpu", &ApiGetCurrentCpu, &IdentityPlatform::cpu, "AaSysComNmapGetCpu",
                            "ApiGetCurrentCpu(): ddal_rio_get_own_id() returned '0xffffffed' (not DDAL_OK)"}),
    [](const auto& place) { return std::string(place.param.name); });

class PduOfTheOwnNode : public Identification {};

TEST_F(PduOfTheOwnNode, IsTheOneInTheSameShelf) {
    const std::pair<std::uint16_t, std::uint32_t> rows[] = {
        {0x0000, 0x0048}, {0x1234, 0x1048}, {0xFFFF, 0xF048}, {0x0FFF, 0x0048}, {0xA0B0, 0xA048}};
    for (const auto& [nid, boardId] : rows) {
        platform.ownNid = nid;
        EXPECT_EQ(ApiGetPduBoardId(), boardId);
        EXPECT_THAT(platform.takeCalls(), ElementsAre("AaSysComGetOwnNid()"));
        EXPECT_EQ(platform.takeLog().size(), 1U);
    }
}

TEST_F(PduOfTheOwnNode, IsLoggedEachTime) {
    platform.ownNid = 0xA0B0;
    ApiGetPduBoardId();
    ApiGetPduBoardId();
    const LogLine line = infoLine("ApiGetPduBoardId: PDU device: 0xA048");
    EXPECT_THAT(platform.takeLog(), ElementsAre(line, line));
}

} // namespace
} // namespace mox::testing
