#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <cstring>
#include <utility>

using mox::testing::Eu;
using mox::testing::Message;
using mox::testing::receive;
using mox::testing::Registration;

namespace {

constexpr std::int32_t longTime = 10000000;

SAaSysComGwRoute route() {
    SAaSysComGwRoute made{};
    made.protocol = 1;
    made.remoteSicad = 0x20110000;
    made.validBits = 8;
    std::strcpy(made.remoteName, "10.0.0.1");
    std::strcpy(made.localName, "10.0.0.2");
    made.remotePort = 1234;
    made.mtu = 1500;
    return made;
}

/// The indication of a watched endpoint; up is 2 when none comes.
std::pair<std::uint32_t, std::uint32_t> nextLink(std::int32_t timeoutUs = longTime) {
    const Message message = receive(timeoutUs);
    if (!message || message.id() != AASYSCOM_LINK_IND_MSG || message.size() != sizeof(SAaSysComLinkInd))
        return {message.id(), 2U};
    const auto& link = message.payload<SAaSysComLinkInd>();
    return {link.sicad, link.up};
}

} // namespace

TEST(GatewayRoute, IsAddedAndRemovedOnce) {
    const SAaSysComGwRoute one = route();
    const std::uint32_t first = AaSysComGwAddRouteLpm(&one);
    const std::uint32_t second = AaSysComGwAddRouteLpm(&one);
    EXPECT_NE(first, 0U);
    EXPECT_NE(second, 0U);
    EXPECT_NE(first, second);
    EXPECT_EQ(AaSysComGwRemoveRoute(first), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComGwRemoveRoute(first), EAaSysComRetVal_NotFound);
    EXPECT_EQ(AaSysComGwRemoveRoute(second), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComGwRemoveRoute(0), EAaSysComRetVal_NotFound);
}

TEST(GatewayRoute, IsRefusedWhenItIsNone) {
    EXPECT_EQ(AaSysComGwAddRouteLpm(nullptr), 0U);
    SAaSysComGwRoute sut = route();
    sut.validBits = 17; // a node id has 16
    EXPECT_EQ(AaSysComGwAddRouteLpm(&sut), 0U);
    sut = route();
    std::memset(sut.remoteName, 'x', sizeof(sut.remoteName));
    EXPECT_EQ(AaSysComGwAddRouteLpm(&sut), 0U) << "a text without end";
}

TEST(LinkOfTheOwnProcess, IsToldNowAndWheneverItChanges) {
    const Registration mine;
    const std::uint32_t watched = AaSysComSicadGet(0x0640, AaSysComGetOwnNid());
    ASSERT_EQ(AaSysComLinkRegister(watched, mine.address()), EAaSysComRetVal_NoError);
    EXPECT_EQ(nextLink(), std::make_pair(watched, 0U));
    for (int round = 0; round < 3; ++round) {
        const std::uint16_t cpid = AaSysComUserRegister(0x0640);
        ASSERT_EQ(cpid, 0x0640);
        EXPECT_EQ(nextLink(), std::make_pair(watched, 1U));
        AaSysComUserDeregister(cpid);
        EXPECT_EQ(nextLink(), std::make_pair(watched, 0U));
    }
    EXPECT_EQ(AaSysComLinkDeregister(watched, mine.address()), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComLinkDeregister(watched, mine.address()), EAaSysComRetVal_NotFound);
    const std::uint16_t cpid = AaSysComUserRegister(0x0640);
    EXPECT_FALSE(receive(20000));
    AaSysComUserDeregister(cpid);
}

TEST(LinkOfTheOwnProcess, IsToldAsUpWhenItExistsAlready) {
    const Registration mine;
    ASSERT_EQ(AaSysComLinkRegister(mine.address(), mine.address()), EAaSysComRetVal_NoError);
    EXPECT_EQ(nextLink(), std::make_pair(mine.address(), 1U));
    EXPECT_EQ(AaSysComLinkDeregister(mine.address(), mine.address()), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComLinkDeregister(1, 2), EAaSysComRetVal_NotFound);
}

TEST(LinkOfTheOwnProcess, IsToldAsDownWhenItsEuEnds) {
    const Registration mine;
    const std::uint32_t watched = AaSysComSicadGet(0x0641, AaSysComGetOwnNid());
    ASSERT_EQ(AaSysComLinkRegister(watched, mine.address()), EAaSysComRetVal_NoError);
    EXPECT_EQ(nextLink(), std::make_pair(watched, 0U));
    Eu([] { EXPECT_EQ(AaSysComEuUserRegister(0x0641), 0x0641); }).join();
    EXPECT_EQ(nextLink(), std::make_pair(watched, 1U));
    EXPECT_EQ(nextLink(), std::make_pair(watched, 0U));
    AaSysComLinkDeregister(watched, mine.address());
}
