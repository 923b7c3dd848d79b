#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gtest/gtest.h>

TEST(SicAddress, HoldsNodeAboveCpid) {
    EXPECT_EQ(AaSysComSicadGet(0x0600, 0x1011), 0x10110600U);
    EXPECT_EQ(AaSysComSicadGet(0xFFFF, 0), 0x0000FFFFU);
    EXPECT_EQ(AaSysComSicadGet(0, 0xFFFF), 0xFFFF0000U);
}

TEST(SicAddress, IsTakenApartAgain) {
    for (const std::uint32_t address : {0U, 0x10110600U, 0xFFFF0000U, 0x0000FFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(AaSysComSicadGetCpid(address), address & 0xFFFFU);
        EXPECT_EQ(AaSysComSicadGetNid(address), address >> 16U);
    }
}

TEST(SicAddress, NamesBoardAndProcessor) {
    EXPECT_EQ(AaSysComNmapGetBoard(0x12345678), 0x12);
    EXPECT_EQ(AaSysComNmapGetCpu(0x12345678), 0x3);
    EXPECT_EQ(AaSysComNmapGetBoard(0xFF0F0000), 0xFF);
    EXPECT_EQ(AaSysComNmapGetCpu(0xFF0F0000), 0);
    EXPECT_EQ(AaSysComNmapGetCpu(0x00F00000), 0xF);
}

TEST(SicAddress, OfANodeThatTheRunDoesNotHaveIsZero) {
    EXPECT_EQ(AaSysComNmapGetSicad(0xEE, 0xE, 0x600), 0U);
}

TEST(OwnNode, IsZeroOnlyWithoutRun) {
    EXPECT_EQ(AaSysComGetOwnNid(), mox::testing::expectedOwnNode());
}
