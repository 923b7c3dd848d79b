#include "EuFixture.hpp"
#include "host/core/AdaptiveWait.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <initializer_list>
#include <memory>
#include <thread>
#include <vector>

using mox::host::AdaptiveWait;
using mox::testing::create;
using mox::testing::Eu;
using mox::testing::Message;
using mox::testing::receive;
using mox::testing::Registration;
using mox::testing::timeOf;
using std::chrono::milliseconds;

namespace {

constexpr std::int32_t longTime = 10000000;
constexpr std::int32_t shortTime = 30000;

void send(std::uint32_t receiver, std::uint16_t id, std::uint32_t value = 0) {
    Message message = create(id, sizeof(value), receiver);
    message.payload<std::uint32_t>() = value;
    ASSERT_EQ(AaSysComMsgSend(message.release()), EAaSysComRetVal_NoError);
}

Message receiveOf(std::int32_t timeoutUs, std::initializer_list<std::uint16_t> ids) {
    std::vector<std::uint16_t> filter{static_cast<std::uint16_t>(ids.size())};
    filter.insert(filter.end(), ids);
    return Message(AaSysComMsgReceiveSelective(timeoutUs, filter.data()));
}

} // namespace

/// With and without staying awake before the sleep.
class Receiving : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { AdaptiveWait::setEnabled(GetParam()); }
    void TearDown() override { AdaptiveWait::setEnabled(m_before); }

private:
    const bool m_before = AdaptiveWait::enabled();
};

INSTANTIATE_TEST_SUITE_P(AwakeAndAsleep, Receiving, testing::Bool());

TEST_P(Receiving, WithoutTimeDoesNotWait) {
    const Registration mine;
    EXPECT_LT(timeOf([] { EXPECT_FALSE(receive(0)); }), std::chrono::seconds(10)); // or for ever
    send(mine.address(), 1);
    EXPECT_TRUE(receive(0));
}

TEST_P(Receiving, WithATimeLimitWaitsThatLong) {
    const Registration mine;
    const auto passed = timeOf([] { EXPECT_FALSE(receive(shortTime)); });
    EXPECT_GE(passed, milliseconds(29));
    EXPECT_LT(passed, std::chrono::seconds(5));
}

TEST_P(Receiving, WithAVeryShortTimeLimitEnds) {
    const Registration mine;
    for (int i = 0; i < 1000; ++i)
        EXPECT_FALSE(receive(1));
}

TEST_P(Receiving, EndsWhenAMessageComes) {
    for (const std::int32_t timeout : {-1, longTime}) {
        const Registration mine;
        std::atomic<bool> waits{false};
        Eu sender([&, to = mine.address()] {
            ASSERT_TRUE(mox::testing::eventually([&] { return waits.load(); }));
            std::this_thread::sleep_for(milliseconds(5)); // so that the receiver is most likely asleep
            send(to, 42);
        });
        waits = true;
        EXPECT_EQ(receive(timeout).id(), 42);
    }
}

TEST_P(Receiving, WithoutRegistrationEndsAtOnce) {
    EXPECT_LT(timeOf([] {
                  Eu([] { EXPECT_FALSE(receive(-1)); }).join();
                  Eu([] { EXPECT_FALSE(receive(longTime)); }).join();
                  Eu([] { EXPECT_FALSE(receiveOf(-1, {1})); }).join();
                  std::thread([] { EXPECT_FALSE(receive(-1)); }).join();
              }),
              std::chrono::seconds(5));
}

TEST_P(Receiving, KeepsTheOrderOfEachSender) {
    constexpr std::uint32_t each = 20000;
    const Registration mine;
    std::vector<std::unique_ptr<Eu>> senders;
    for (std::uint16_t sender = 0; sender < 4; ++sender)
        senders.push_back(std::make_unique<Eu>([sender, to = mine.address()] {
            for (std::uint32_t i = 0; i < each; ++i)
                send(to, sender, i);
        }));
    std::array<std::uint32_t, 4> next{};
    for (std::uint32_t i = 0; i < 4 * each; ++i) {
        const Message got = receive(longTime);
        ASSERT_TRUE(got) << i;
        ASSERT_EQ(got.payload<std::uint32_t>(), next.at(got.id())++);
    }
    EXPECT_FALSE(receive(0));
}

TEST_P(Receiving, PlaysPingPong) {
    const Registration mine;
    Eu echo([] {
        const Registration echoes(0x0630);
        for (;;) {
            Message got = receive(-1);
            if (got.id() == 0)
                return;
            Message answer(AaSysComMsgCreateReply(got.get(), got.id(), 0));
            AaSysComMsgSend(answer.release());
        }
    });
    const std::uint32_t to = AaSysComSicadGet(0x0630, AaSysComGetOwnNid());
    ASSERT_TRUE(mox::testing::eventually(
        [=] { return AaSysComMsgSend(create(1, 0, to).release()) == EAaSysComRetVal_NoError; }));
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(receive(longTime).id(), 1);
        ASSERT_EQ(AaSysComMsgSend(create(1, 0, to).release()), EAaSysComRetVal_NoError);
    }
    ASSERT_EQ(receive(longTime).id(), 1);
    AaSysComMsgSend(create(0, 0, to).release());
}

TEST_P(Receiving, SelectivelyLeavesTheOthersInTheirOrder) {
    const Registration mine;
    for (const int id : {5, 1, 6, 2, 5, 3})
        send(mine.address(), static_cast<std::uint16_t>(id));
    EXPECT_EQ(receiveOf(0, {2}).id(), 2);
    EXPECT_EQ(receiveOf(0, {9, 3, 6}).id(), 6);
    EXPECT_FALSE(receiveOf(0, {9}));
    for (const int id : {5, 1, 5, 3})
        EXPECT_EQ(receive(0).id(), id);
    EXPECT_FALSE(receive(0));
}

TEST_P(Receiving, WithoutFilterTakesAnyMessage) {
    const Registration mine;
    send(mine.address(), 5);
    send(mine.address(), 6);
    const std::uint16_t none = 0;
    EXPECT_EQ(Message(AaSysComMsgReceiveSelective(0, nullptr)).id(), 5);
    EXPECT_EQ(Message(AaSysComMsgReceiveSelective(0, &none)).id(), 6);
    EXPECT_FALSE(Message(AaSysComMsgReceiveSelective(shortTime, nullptr)));
}

TEST_P(Receiving, SelectivelyWaitsPastOthers) {
    const Registration mine;
    send(mine.address(), 1, 10);
    const auto passed = timeOf([] { EXPECT_FALSE(receiveOf(shortTime, {2})); });
    EXPECT_GE(passed, milliseconds(29));
    for (const std::int32_t timeout : {-1, longTime}) {
        Eu sender([to = mine.address()] {
            for (std::uint32_t i = 0; i < 50; ++i)
                send(to, 1, 11 + i);
            send(to, 2);
            send(to, 3);
        });
        EXPECT_EQ(receiveOf(timeout, {2}).id(), 2);
        EXPECT_EQ(receiveOf(timeout, {3}).id(), 3);
        EXPECT_EQ(receive(0).payload<std::uint32_t>(), 10U) << "the oldest of the others";
        for (std::uint32_t i = 0; i < 50; ++i)
            ASSERT_EQ(receive(0).payload<std::uint32_t>(), 11 + i);
        send(mine.address(), 1, 10);
    }
}

TEST_P(Receiving, SelectivelyAndPlainlyInTurnLosesNothing) {
    constexpr std::uint32_t each = 5000;
    const Registration mine;
    Eu sender([to = mine.address()] {
        for (std::uint32_t i = 0; i < each; ++i) {
            send(to, 1, i);
            send(to, 2, i);
        }
    });
    std::array<std::uint32_t, 3> next{};
    for (std::uint32_t i = 0; i < 2 * each; ++i) {
        const Message got = i % 3 == 0 && next[2] < each ? receiveOf(longTime, {2}) : receive(longTime);
        ASSERT_TRUE(got);
        ASSERT_EQ(got.payload<std::uint32_t>(), next.at(got.id())++);
    }
}
