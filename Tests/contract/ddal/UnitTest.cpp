#include "UnitFixture.hpp"

#include <ddal/ddal_rio.h>
#include <ddal/ddal_unit.h>

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

class UnitInTheShelf : public OnUnit {};
const testkit::BoardOf s_shelf("UnitInTheShelf", testkit::Board::text(unitBoard));

TEST_F(UnitInTheShelf, KnowsItsSlot) {
    std::int32_t slot = -1;
    EXPECT_EQ(ddal_id_get_slot_id(&slot), DDAL_OK);
    EXPECT_EQ(slot, 3);
    EXPECT_EQ(ddal_id_get_slot_id(nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(UnitInTheShelf, HasNoBoardTypeWhenItIsOfAnotherLine) {
    EXPECT_EQ(ddal_unit_get_board(), DDAL_NO_DEVICE);
}

class UnitOfTheWimLine : public OnUnit {};
const testkit::BoardOf s_wim("UnitOfTheWimLine", testkit::Board::text(unitBoard).at(secondNode));

TEST_F(UnitOfTheWimLine, HasABoardType) {
    EXPECT_EQ(ddal_unit_get_board(), 8);
}

TEST_F(UnitOfTheWimLine, HasNoRapidIo) {
    std::uint16_t id = 7;
    std::uint32_t count = 7;
    EXPECT_EQ(ddal_rio_get_own_id(&id), DDAL_NO_DEVICE);
    EXPECT_EQ(ddal_rio_get_node_ids(&id, 1, &count), DDAL_NO_DEVICE);
    EXPECT_EQ(id, 7);
    EXPECT_EQ(count, 7u);
}

class RapidIoOfAUnit : public OnUnit {};
const testkit::BoardOf s_rapidIo("RapidIoOfAUnit", testkit::Board::text(unitBoard));

TEST_F(RapidIoOfAUnit, GivesTheOwnIdentifier) {
    std::uint16_t id = 0;
    EXPECT_EQ(ddal_rio_get_own_id(&id), DDAL_OK);
    EXPECT_EQ(id, 0x1011);
    EXPECT_EQ(ddal_rio_get_own_id(nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(RapidIoOfAUnit, ListsEachEndpointOnceAndInOrder) {
    std::vector<std::uint16_t> ids(3);
    std::uint32_t count = 0;
    EXPECT_EQ(ddal_rio_get_node_ids(ids.data(), 3, &count), DDAL_OK);
    EXPECT_EQ(count, 3u);
    EXPECT_THAT(ids, ElementsAre(0x0031, 0x1011, 0x1041));
}

TEST_F(RapidIoOfAUnit, SaysHowMuchRoomTheListNeeds) {
    std::vector<std::uint16_t> ids(3, 0xFFFF);
    std::uint32_t count = 0;
    EXPECT_EQ(ddal_rio_get_node_ids(ids.data(), 2, &count), DDAL_NO_SPACE);
    EXPECT_EQ(count, 3u);
    EXPECT_THAT(ids, Each(0xFFFF));
    EXPECT_EQ(ddal_rio_get_node_ids(nullptr, 2, &count), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_rio_get_node_ids(ids.data(), 2, nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(RapidIoOfAUnit, DoesNotSimulateTheFabric) {
    EXPECT_EQ(ddal_rio_switch_port_disable(1, 1), DDAL_NOT_SUPPORTED);
    EXPECT_TRUE(log.has(testkit::warning(0, "ddal_rio_switch_port_disable: not available on this workstation")));
}

} // namespace
} // namespace mox::testing
