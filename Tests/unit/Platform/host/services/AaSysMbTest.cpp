#include "InRun.hpp"

#include <pal/AaSysMb.h>

#include <gmock/gmock.h>
#include <host/pal/Mailboxes.hpp>

#include <cstring>

namespace mox::testing {
namespace {

namespace mailbox = host::mailbox;

constexpr std::uint16_t anId = 0x1197;
constexpr std::uint32_t publisher = 0x100E0042;

class AaSysMb : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        m_self = registerSelf();
        ASSERT_NE(AaSysComSicadGetCpid(m_self), 0);
    }
    static void* message(const std::string& text, std::uint16_t id = anId, std::uint32_t sender = publisher) {
        void* made = AaSysComMsgCreate(id, static_cast<std::uint32_t>(text.size()), 0);
        if (!text.empty())
            std::memcpy(AaSysComMsgGetPayload(made), text.data(), text.size());
        AaSysComMsgSetSender(made, sender);
        return made;
    }
    static int publish(const std::string& text, EAaSysMbPublMode mode = EAaSysMbPublMode_System) {
        return AaSysMbPublish(message(text), mode);
    }
    /// Contents of the messages that have arrived, each followed by a blank.
    std::string received() const {
        std::string contents;
        while (void* one = AaSysComMsgReceive(0, 0)) {
            EXPECT_EQ(AaSysComMsgGetReceiver(one), m_self);
            const char* payload = static_cast<const char*>(AaSysComMsgGetPayload(one));
            contents += std::string(payload ? payload : "", AaSysComMsgGetPayloadSize(one)) + " ";
            AaSysComMsgDestroy(&one);
        }
        return contents;
    }
    std::uint32_t m_self = 0;
};

TEST_F(AaSysMb, SendsPublicationsToWhoSubscribes) {
    EXPECT_EQ(publish("early"), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(publish("one"), 0);
    EXPECT_EQ(publish("two"), 0);
    EXPECT_EQ(AaSysMbPublish(message("other", anId + 1), EAaSysMbPublMode_System), 0);
    EXPECT_EQ(received(), "one two ");
    EXPECT_EQ(AaSysMbUnsubscribe(anId, m_self), 0);
    EXPECT_EQ(publish("late"), 0);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysMb, SendsIdSenderPayloadAndTrailer) {
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    void* made = message("text");
    ASSERT_EQ(AaSysComMsgAddTrailer(&made), 0);
    const SAaSysComMsgTrailer trailer{0x11223344, 0x55, 0x66};
    std::memcpy(AaSysComMsgGetTrailer(made), &trailer, sizeof trailer);
    ASSERT_EQ(AaSysMbPublish(made, EAaSysMbPublMode_Node), 0);
    void* got = AaSysComMsgReceive(0, 0);
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(AaSysComMsgGetId(got), anId);
    EXPECT_EQ(AaSysComMsgGetSender(got), publisher);
    EXPECT_EQ(AaSysComMsgGetPayloadSize(got), 4U);
    ASSERT_NE(AaSysComMsgGetTrailer(got), nullptr);
    EXPECT_EQ(std::memcmp(AaSysComMsgGetTrailer(got), &trailer, sizeof trailer), 0);
    AaSysComMsgDestroy(&got);
}

TEST_F(AaSysMb, SubscribingAgainReplacesTheModes) {
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, EAaSysMbPublMode_Node), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, EAaSysMbPublMode_System), 0);
    publish("node", EAaSysMbPublMode_Node);
    publish("system", EAaSysMbPublMode_System);
    EXPECT_EQ(received(), "system ");
}

TEST_F(AaSysMb, SendsOnceForEachSubscriptionAndEndsAllOfThem) {
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, node, 15), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0x2000, 15), 0);
    publish("x");
    EXPECT_EQ(received(), "x x ");
    EXPECT_EQ(AaSysMbUnsubscribe(anId, m_self), 0);
    publish("y");
    EXPECT_EQ(received(), "");
    EXPECT_EQ(AaSysMbUnsubscribe(anId, m_self), EAaSysMbRetVal_NotFound);
}

TEST(MailboxReach, FollowsModeNodeAndProcess) {
    const host::ProcessAddress own{0x100E, 10};
    const host::ProcessAddress other{0x100E, 11};
    const struct {
        unsigned int mode;
        std::uint8_t wanted;
        std::uint32_t receiver;
        std::uint16_t from;
        host::ProcessAddress process;
        bool reaches;
    } table[] = {
        {1, 15, 0x100E0001, 0, own, true},      {1, 15, 0x100E0001, 0, other, false},
        {1, 14, 0x100E0001, 0, own, false},     {2, 15, 0x100E0001, 0, other, true},
        {2, 15, 0x100F0001, 0, other, false},   {2, 1, 0x100E0001, 0, other, false},
        {4, 15, 0x10FF0001, 0, other, true},    {4, 15, 0x110E0001, 0, other, false},
        {4, 4, 0x10000001, 0, other, true},     {8, 15, 0xFFFF0001, 0, other, true},
        {8, 7, 0xFFFF0001, 0, other, false},    {8, 8, 0x100E0001, 0, own, true},
        {8, 15, 0x100E0001, 0x100E, own, true}, {8, 15, 0x100E0001, 0x100F, own, false},
    };
    for (const auto& row : table) {
        const mailbox::Reach reach{0x100E, own, row.mode};
        const mailbox::Subscription subscription{anId, row.receiver, row.from, row.wanted, row.process};
        EXPECT_EQ(mailbox::reaches(reach, subscription), row.reaches)
            << "mode " << row.mode << " wanted " << int{row.wanted} << std::hex << " receiver " << row.receiver;
    }
}

TEST_F(AaSysMb, KeepsTheNewestPublicationOfAPreparedMailboxForLaterSubscribers) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    EXPECT_EQ(AaSysMbPrepare(anId, publisher), 0);
    publish("old");
    publish("new");
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(received(), "new ");
    publish("next");
    EXPECT_EQ(received(), "next ");
}

TEST_F(AaSysMb, KeepsNothingOfAnotherPublisherOrWithoutPreparation) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    AaSysMbPublish(message("other", anId, publisher + 1), EAaSysMbPublMode_System);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysMb, HandsAKeptPublicationOutOnlyAsFarAsItReaches) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    publish("node", EAaSysMbPublMode_Node);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, EAaSysMbPublMode_System), 0);
    EXPECT_EQ(received(), "");
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, EAaSysMbPublMode_Node), 0);
    EXPECT_EQ(received(), "node ");
}

TEST_F(AaSysMb, KeepsTheTrailerToo) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    void* made = message("");
    ASSERT_EQ(AaSysComMsgAddTrailer(&made), 0);
    const SAaSysComMsgTrailer trailer{1, 2, 3};
    std::memcpy(AaSysComMsgGetTrailer(made), &trailer, sizeof trailer);
    ASSERT_EQ(AaSysMbPublish(made, EAaSysMbPublMode_System), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    void* got = AaSysComMsgReceive(0, 0);
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(AaSysComMsgGetSender(got), publisher);
    EXPECT_EQ(AaSysComMsgGetPayloadSize(got), 0U);
    ASSERT_NE(AaSysComMsgGetTrailer(got), nullptr);
    EXPECT_EQ(std::memcmp(AaSysComMsgGetTrailer(got), &trailer, sizeof trailer), 0);
    AaSysComMsgDestroy(&got);
}

TEST_F(AaSysMb, KeepsTheLongestMessage) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    const std::string longest(AASYSCOM_MAX_PAYLOAD, 'm');
    ASSERT_EQ(publish(longest), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(received() == longest + " ", true);
}

TEST_F(AaSysMb, ARecalledMailboxKeepsNothingAnyMore) {
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    publish("kept");
    EXPECT_EQ(AaSysMbRecall(anId, publisher), 0);
    EXPECT_EQ(AaSysMbRecall(anId, publisher), EAaSysMbRetVal_NotFound);
    publish("not kept");
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(received(), "");
}

TEST_F(AaSysMb, ForgetsASubscriberThatIsGone) {
    ASSERT_EQ(AaSysMbSubscribe(anId, 0x100E0007, 0, 15), 0);
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    EXPECT_EQ(publish("x"), 0);
    EXPECT_EQ(received(), "x ");
    EXPECT_TRUE(logged(2, "subscriber 0x100E0007 of message 0x1197 is gone"));
    EXPECT_EQ(mailbox::subscriptionsTo(anId).size(), 1U);
    EXPECT_EQ(AaSysMbUnsubscribe(anId, 0x100E0007), EAaSysMbRetVal_NotFound);
}

TEST_F(AaSysMb, ForgetsWhatAProcessHasAtItsShutDown) {
    ASSERT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), 0);
    ASSERT_EQ(AaSysMbPrepare(anId, publisher), 0);
    mailbox::Subscription foreign{anId, 0x100E0009, 0, 15, {node, 1}};
    mailbox::put(foreign);
    AaStartupEeShutdown();
    const auto left = mailbox::allSubscriptions();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].receiver, 0x100E0009U);
    EXPECT_TRUE(mailbox::allMailboxes().empty());
    mailbox::erase(foreign);
}

TEST_F(AaSysMb, StandsInTheStoreAsDocumented) {
    mailbox::Subscription subscription{anId, 0x100E8000, 0, 15, {0x100E, 4711}};
    mailbox::put(subscription);
    const std::string key("\x11\x97\x10\x0E\x80\x00\x00\x00", 8);
    const std::string value("\x0F\x0E\x10\x67\x12\x00\x00", 7);
    EXPECT_EQ(host::Run::current()->store().get(host::Table::subscribers, key), value);
    EXPECT_TRUE(mailbox::erase(subscription));
}

TEST_F(AaSysMb, RefusesWhatCannotBe) {
    EXPECT_EQ(AaSysMbSubscribe(anId, 0, 0, 15), EAaSysMbRetVal_InvalidValue);
    EXPECT_EQ(AaSysMbSubscribe(anId, m_self, 0, 0), EAaSysMbRetVal_InvalidValue);
    EXPECT_EQ(AaSysMbSubscribe(anId, m_self, 0, 16), EAaSysMbRetVal_InvalidValue);
    EXPECT_EQ(AaSysMbPrepare(anId, 0), EAaSysMbRetVal_InvalidValue);
    EXPECT_EQ(AaSysMbPublish(nullptr, EAaSysMbPublMode_Node), EAaSysMbRetVal_InvalidValue);
    for (const int mode : {0, 3, 15})
        EXPECT_EQ(publish("x", static_cast<EAaSysMbPublMode>(mode)), EAaSysMbRetVal_InvalidValue) << mode;
}

TEST_F(AaSysMb, TakesTheMessageWhateverTheResult) {
    void* made = message("x");
    EXPECT_EQ(AaSysMbPublish(made, static_cast<EAaSysMbPublMode>(0)), EAaSysMbRetVal_InvalidValue);
    EXPECT_NE(AaSysComMsgDestroy(&made), 0);
}

TEST_F(AaSysMb, DoesNothingOnceTheEnvironmentHasEnded) {
    host::setEnvironmentState(host::EnvironmentState::ended);
    EXPECT_EQ(AaSysMbSubscribe(anId, m_self, 0, 15), EAaSysMbRetVal_NotStarted);
    EXPECT_EQ(AaSysMbUnsubscribe(anId, m_self), EAaSysMbRetVal_NotStarted);
    EXPECT_EQ(AaSysMbPrepare(anId, publisher), EAaSysMbRetVal_NotStarted);
    EXPECT_EQ(publish("x"), EAaSysMbRetVal_NotStarted);
    EXPECT_EQ(AaSysMbRecall(anId, publisher), EAaSysMbRetVal_NotStarted);
}

} // namespace
} // namespace mox::testing
