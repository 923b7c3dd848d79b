#include <pal/AaSysCom.h>

#include <gtest/gtest.h>

TEST(GatewayRoute, NeedsARun) {
    SAaSysComGwRoute route{};
    route.remoteSicad = 0x20110000;
    EXPECT_EQ(AaSysComGwAddRouteLpm(&route), 0U);
    EXPECT_EQ(AaSysComGwRemoveRoute(1), EAaSysComRetVal_NotFound);
}

TEST(Link, NeedsARun) {
    EXPECT_EQ(AaSysComLinkRegister(0x10110600, 0x10110700), EAaSysComRetVal_NoRun);
    EXPECT_EQ(AaSysComLinkDeregister(0x10110600, 0x10110700), EAaSysComRetVal_NotFound);
}
