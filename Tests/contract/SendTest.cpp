#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <cstring>
#include <thread>

using mox::testing::create;
using mox::testing::Eu;
using mox::testing::Message;
using mox::testing::receive;
using mox::testing::Registration;

namespace {

constexpr std::int32_t longTime = 10000000;
constexpr std::uint16_t unusedCpid = 0x7ABC;

} // namespace

TEST(Sending, NamesTheFirstRegistrationOfTheEu) {
    const Registration first;
    const std::uint16_t second = AaSysComUserRegister(0);
    ASSERT_EQ(AaSysComMsgSend(create(1, 0, first.address()).release()), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive(longTime).sender(), first.address());
    AaSysComUserDeregister(second);
}

TEST(Sending, NamesTheFirstRegistrationThatStillStands) {
    Registration sut;
    const std::uint16_t second = AaSysComUserRegister(0x0650);
    const std::uint16_t third = AaSysComUserRegister(0x0651);
    ASSERT_EQ(AaSysComUserDeregister(second), EAaSysComRetVal_NoError);
    ASSERT_EQ(AaSysComUserRegister(0x0650), 0x0650);
    const std::uint32_t to = AaSysComSicadGet(third, AaSysComGetOwnNid());
    sut.deregister();
    ASSERT_EQ(AaSysComMsgSend(create(1, 0, to).release()), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive(longTime).sender(), to) << "the other one is the younger now";
    AaSysComUserDeregister(0x0650);
    AaSysComUserDeregister(third);
}

TEST(Sending, NamesNobodyWithoutRegistration) {
    const Registration mine;
    Eu([to = mine.address()] { AaSysComMsgSend(create(1, 0, to).release()); }).join();
    EXPECT_EQ(receive(longTime).sender(), 0U);
    std::thread([to = mine.address()] { AaSysComMsgSend(create(1, 0, to).release()); }).join();
    EXPECT_EQ(receive(longTime).sender(), 0U);
}

TEST(Sending, OnBehalfOfAnotherNamesThatOne) {
    const Registration mine;
    ASSERT_EQ(AaSysComMsgSendS(create(1, 0, mine.address()).release(), 0x10110777), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive(longTime).sender(), 0x10110777U);
    ASSERT_EQ(AaSysComMsgSendS(create(1, 0, mine.address()).release(), 0), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive(longTime).sender(), 0U);
}

TEST(Sending, MovesTheMessageUnchanged) {
    const Registration mine;
    for (const std::uint32_t size : {0U, 1U, 17U, 4096U, 65535U}) {
        Message sent = create(0xBEEF, size, mine.address());
        if (size > 0)
            std::memset(AaSysComMsgGetPayload(sent.get()), static_cast<int>(size & 0xFFU), size);
        ASSERT_EQ(AaSysComMsgAddTrailer(sent.variable()), EAaSysComRetVal_NoError);
        static_cast<SAaSysComMsgTrailer*>(AaSysComMsgGetTrailer(sent.get()))->crc = 0x1234;
        ASSERT_EQ(AaSysComMsgSend(sent.release()), EAaSysComRetVal_NoError);
        const Message got = receive(longTime);
        EXPECT_EQ(got.id(), 0xBEEF);
        EXPECT_EQ(got.receiver(), mine.address());
        ASSERT_EQ(got.size(), size);
        for (std::uint32_t i = 0; i < size; ++i)
            ASSERT_EQ(static_cast<std::uint8_t*>(AaSysComMsgGetPayload(got.get()))[i], size & 0xFFU);
        ASSERT_EQ(AaSysComMsgGetMef(got.get()), 3U);
        EXPECT_EQ(static_cast<SAaSysComMsgTrailer*>(AaSysComMsgGetTrailer(got.get()))->crc, 0x1234);
    }
}

TEST(Sending, ToNobodyIsToldAtOnce) {
    const std::uint32_t nobody = AaSysComSicadGet(unusedCpid, AaSysComGetOwnNid());
    EXPECT_LT(mox::testing::timeOf([=] {
                  EXPECT_EQ(AaSysComMsgSend(create(1, 0, nobody).release()), EAaSysComRetVal_NoReceiver);
                  EXPECT_EQ(AaSysComMsgSendS(create(1, 70, nobody).release(), 7), EAaSysComRetVal_NoReceiver);
                  EXPECT_EQ(AaSysComMsgForward(create(1).release(), nobody), EAaSysComRetVal_NoReceiver);
                  EXPECT_EQ(AaSysComMsgRelay(create(1).release(), nobody), EAaSysComRetVal_NoReceiver);
              }),
              std::chrono::seconds(1));
}

TEST(Sending, ThatFailsTakesTheMessageAllTheSame) {
    constexpr auto send = [](void* msg, std::uint32_t /*receiver*/) { return AaSysComMsgSend(msg); };
    const std::uint32_t nobody = AaSysComSicadGet(unusedCpid, AaSysComGetOwnNid());
    using Send = EAaSysComRetVal (*)(void* msg, std::uint32_t receiver);
    for (const Send sut : {Send{send}, Send{AaSysComMsgSendS}, Send{AaSysComMsgForward}, Send{AaSysComMsgRelay}}) {
        void* stale = create(1, 8, nobody).release();
        EXPECT_EQ(sut(stale, nobody), EAaSysComRetVal_NoReceiver);
        EXPECT_EQ(AaSysComMsgDestroy(&stale), EAaSysComRetVal_InvalidValue) << "destroyed already";
    }
}

TEST(Sending, ToAnotherNodeNeedsARun) {
    const auto expected = mox::testing::expectedOwnNode() != 0 ? EAaSysComRetVal_NoReceiver : EAaSysComRetVal_NoRun;
    EXPECT_EQ(AaSysComMsgSend(create(1, 0, AaSysComSicadGet(unusedCpid, 0x7777)).release()), expected);
}

TEST(Sending, ToNodeZeroAndToTheNodeWithoutIdReachesTheOwnNode) {
    const Registration mine;
    for (const std::uint16_t node : {std::uint16_t{0}, std::uint16_t{0x0F01}, AaSysComGetOwnNid()}) {
        EXPECT_EQ(AaSysComMsgSend(create(node, 0, AaSysComSicadGet(mine.cpid(), node)).release()),
                  EAaSysComRetVal_NoError);
        EXPECT_EQ(receive(longTime).id(), node);
    }
}

TEST(Forwarding, AsksForAnswersToTheForwarder) {
    const Registration mine;
    Message received = create(7, 4, 0x10110001);
    AaSysComMsgSetSender(received.get(), 0x10110002);
    received.payload<std::uint32_t>() = 4711;
    ASSERT_EQ(AaSysComMsgForward(received.release(), mine.address()), EAaSysComRetVal_NoError);
    const Message got = receive(longTime);
    EXPECT_EQ(got.sender(), mine.address());
    EXPECT_EQ(got.receiver(), mine.address());
    EXPECT_EQ(got.id(), 7);
    EXPECT_EQ(got.payload<std::uint32_t>(), 4711U);
}

TEST(Relaying, KeepsTheOriginalSender) {
    const Registration mine;
    Message received = create(7, 4, 0x10110001);
    AaSysComMsgSetSender(received.get(), 0x10110002);
    received.payload<std::uint32_t>() = 4711;
    ASSERT_EQ(AaSysComMsgRelay(received.release(), mine.address()), EAaSysComRetVal_NoError);
    const Message got = receive(longTime);
    EXPECT_EQ(got.sender(), 0x10110002U);
    EXPECT_EQ(got.receiver(), mine.address());
    EXPECT_EQ(got.id(), 7);
    EXPECT_EQ(got.payload<std::uint32_t>(), 4711U);
}

TEST(Replying, ComesBackToWhoAsked) {
    Eu server([] {
        const Registration mine(0x0620);
        const Message request = receive(longTime);
        ASSERT_TRUE(request);
        EXPECT_EQ(AaSysComMsgSend(AaSysComMsgCreateReply(request.get(), 2, 0)), EAaSysComRetVal_NoError);
    });
    const Registration mine;
    const std::uint32_t to = AaSysComSicadGet(0x0620, AaSysComGetOwnNid());
    ASSERT_TRUE(mox::testing::eventually(
        [=] { return AaSysComMsgSend(create(1, 0, to).release()) == EAaSysComRetVal_NoError; }));
    const Message answer = receive(longTime);
    EXPECT_EQ(answer.id(), 2);
    EXPECT_EQ(answer.sender(), to);
}
