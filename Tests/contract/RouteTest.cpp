#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

using mox::testing::create;
using mox::testing::Eu;
using mox::testing::Message;
using mox::testing::receive;
using mox::testing::Registration;

namespace {

constexpr std::int32_t longTime = 10000000;

Message echoRequest(std::uint32_t receiver, std::uint32_t sender, std::uint32_t hopCount = 0,
                    std::uint32_t requester = 0) {
    Message message = create(AASYSCOM_ECHO_ROUTE_REQ_MSG, sizeof(SAaSysComEchoRoute), receiver);
    AaSysComMsgSetSender(message.get(), sender);
    message.payload<SAaSysComEchoRoute>().hopCount = hopCount;
    message.payload<SAaSysComEchoRoute>().requester = requester;
    return message;
}

} // namespace

TEST(EchoRoute, AnswersTheSenderWithTheOwnAddressAsLastHop) {
    const Registration mine;
    Message request = echoRequest(mine.address(), mine.address(), 2);
    request.payload<SAaSysComEchoRoute>().hops[0] = 0x11111111;
    request.payload<SAaSysComEchoRoute>().hops[1] = 0x22222222;
    EXPECT_NE(AaSysComControlHandleEchoRouteReq(request.variable()), 0);
    EXPECT_EQ(request.get(), nullptr);
    const Message answer = receive(longTime);
    EXPECT_EQ(answer.id(), AASYSCOM_ECHO_ROUTE_RESP_MSG);
    ASSERT_EQ(answer.size(), sizeof(SAaSysComEchoRoute));
    const auto& got = answer.payload<SAaSysComEchoRoute>();
    EXPECT_EQ(got.hopCount, 3U);
    EXPECT_THAT(got.hops, testing::ElementsAre(0x11111111, 0x22222222, mine.address(), 0, 0, 0, 0, 0));
}

TEST(EchoRoute, AnswersTheRequesterThatIsNamed) {
    const Registration mine;
    Message request = echoRequest(mine.address(), AaSysComSicadGet(0x7ABC, 0), 0, mine.address());
    EXPECT_NE(AaSysComControlHandleEchoRouteReq(request.variable()), 0);
    EXPECT_EQ(receive(longTime).id(), AASYSCOM_ECHO_ROUTE_RESP_MSG);
}

TEST(EchoRoute, TakesARequestWhoseHopsAreFull) {
    const Registration mine;
    Message request = echoRequest(mine.address(), mine.address(), 8);
    EXPECT_NE(AaSysComControlHandleEchoRouteReq(request.variable()), 0);
    const Message answer = receive(longTime);
    ASSERT_EQ(answer.size(), sizeof(SAaSysComEchoRoute));
    EXPECT_EQ(answer.payload<SAaSysComEchoRoute>().hopCount, 8U);
}

TEST(EchoRoute, LeavesWhatIsNoWellFormedRequest) {
    EXPECT_EQ(AaSysComControlHandleEchoRouteReq(nullptr), 0);
    void* none = nullptr;
    EXPECT_EQ(AaSysComControlHandleEchoRouteReq(&none), 0);
    Message otherId = create(0x0AD5, sizeof(SAaSysComEchoRoute));
    Message answer = create(AASYSCOM_ECHO_ROUTE_RESP_MSG, sizeof(SAaSysComEchoRoute));
    Message empty = create(AASYSCOM_ECHO_ROUTE_REQ_MSG, 0);
    Message tooShort = create(AASYSCOM_ECHO_ROUTE_REQ_MSG, sizeof(SAaSysComEchoRoute) - 1);
    Message tooManyHops = echoRequest(0, 0, 9);
    Message veryManyHops = echoRequest(0, 0, UINT32_MAX);
    for (Message* sut : {&otherId, &answer, &empty, &tooShort, &tooManyHops, &veryManyHops}) {
        void* const before = sut->get();
        EXPECT_EQ(AaSysComControlHandleEchoRouteReq(sut->variable()), 0);
        EXPECT_EQ(sut->get(), before);
    }
}

TEST(EchoRoute, PrintsAnyRequest) {
    AaSysComControlPrintRouteReq(nullptr);
    for (const std::uint32_t size : {0U, 3U, 8U, static_cast<std::uint32_t>(sizeof(SAaSysComEchoRoute))}) {
        const Message request = create(AASYSCOM_ECHO_ROUTE_REQ_MSG, size);
        if (size >= 8)
            static_cast<std::uint32_t*>(AaSysComMsgGetPayload(request.get()))[1] = UINT32_MAX;
        AaSysComControlPrintRouteReq(request.get());
        EXPECT_EQ(request.size(), size);
    }
}

TEST(Hop, TakesMessagesOfItsNodeToTheEndpointThatRelaysThem) {
    const Registration via;
    ASSERT_EQ(AaSysComHopRegister(0x7777, via.address()), EAaSysComRetVal_NoError);
    const std::uint32_t far = AaSysComSicadGet(0x0600, 0x7777);
    EXPECT_EQ(AaSysComMsgSend(create(3, 0, far).release()), EAaSysComRetVal_NoError);
    const Message got = receive(longTime);
    EXPECT_EQ(got.id(), 3);
    EXPECT_EQ(got.receiver(), far) << "so that the hop knows where it goes";
    EXPECT_EQ(AaSysComHopRegister(0x7777, 0), EAaSysComRetVal_NoError);
    EXPECT_NE(AaSysComMsgSend(create(3, 0, far).release()), EAaSysComRetVal_NoError);
}
