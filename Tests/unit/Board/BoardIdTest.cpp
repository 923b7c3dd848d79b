#include <mox/Board.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

namespace mox::testing {
namespace {

using Ids = std::set<std::uint32_t>;

const Ids korIds{0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70, 0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xFF};
const Ids zup1Ids{0x12, 0x22, 0x32, 0x42, 0x52, 0x62, 0x72, 0x82, 0x92, 0xA2, 0xB2, 0xC2, 0xD2, 0xE2};
const Ids zup2Ids{0x13, 0x23, 0x33, 0x43, 0x53, 0x63, 0x73, 0x83, 0x93, 0xA3, 0xB3, 0xC3, 0xD3, 0xE3};
const Ids zup3Ids{0x14, 0x24, 0x34, 0x44, 0x54, 0x64, 0x74, 0x84, 0x94, 0xA4, 0xB4, 0xC4, 0xD4, 0xE4};

constexpr std::uint32_t allIds = 0x100;

using Predicate = std::uint32_t (*)(std::uint32_t);

/// @return the ids below `end` that a predicate accepts; any other answer than 0 and 1 is a failure
Ids accepted(Predicate sut, std::uint32_t end) {
    Ids ids;
    for (std::uint32_t id = 0; id < end; ++id) {
        const std::uint32_t answer = sut(id);
        EXPECT_LE(answer, 1U) << "for id " << id;
        if (answer == 1) {
            ids.insert(id);
        }
    }
    return ids;
}

TEST(BoardId, OfAKorIsAPositionInSlotZeroOrTheIdForAnyKor) {
    EXPECT_EQ(accepted(&IsKor, allIds), korIds);
}

TEST(BoardId, OfAZup1IsAPositionInSlotTwo) {
    EXPECT_EQ(accepted(&IsZup1, allIds), zup1Ids);
}

TEST(BoardId, OfAZup2IsAPositionInSlotThree) {
    EXPECT_EQ(accepted(&IsZup2, allIds), zup2Ids);
}

TEST(BoardId, OfAZup3IsAPositionInSlotFour) {
    EXPECT_EQ(accepted(&IsZup3, allIds), zup3Ids);
}

TEST(BoardId, HasEightBits) {
    for (const Predicate sut : {&IsKor, &IsZup1, &IsZup2, &IsZup3}) {
        EXPECT_EQ(accepted(sut, 0x10000), accepted(sut, allIds));
        EXPECT_EQ(sut(0x80000010), 0U);
        EXPECT_EQ(sut(0xFFFFFFFF), 0U);
    }
}

TEST(BoardId, GivesTheSlotIdOfItsPredicate) {
    for (std::uint32_t id = 0; id < allIds; ++id) {
        std::uint32_t expected = 255;
        expected = korIds.count(id) != 0 ? 0 : expected;
        expected = zup1Ids.count(id) != 0 ? 1 : expected;
        expected = zup2Ids.count(id) != 0 ? 2 : expected;
        expected = zup3Ids.count(id) != 0 ? 3 : expected;
        EXPECT_EQ(ApiGetSlotIdFromBoardId(id), expected) << "for id " << id;
    }
    EXPECT_EQ(ApiGetSlotIdFromBoardId(0x110), 255U);
}

} // namespace
} // namespace mox::testing
