// What the ledger counts of things that need a board.
#include "mock/Faults.hpp"
#include "mock/Ledger.hpp"

#include <pal/AaConfig.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTimer.h>
#include <testkit/BoardTest.hpp>
#include <testkit/ManualClock.hpp>
#include <testkit/Messages.hpp>

namespace {

using namespace mox::testkit;
using namespace mox::mock;
using namespace std::chrono_literals;

class LedgerOnABoard : public BoardTest {
protected:
    LedgerOnABoard() { startPlatform(); }
};

void ignoreTimer(uint32_t, void*) {}
void ignoreTag(const char*, const void*, unsigned int) {}

TEST_F(LedgerOnABoard, HasAPeriodicTimerOpenUntilItIsDeleted) {
    uint32_t id = 0;
    ASSERT_EQ(AaSysTimercCreate(&id, 1000, 1000, ignoreTimer, nullptr, EAaSysTimePriority{}), 0);
    EXPECT_EQ(ledger().count(Kind::timer), 1U);
    EXPECT_EQ(AaSysTimerDelete(id), 0);
    EXPECT_EQ(ledger().count(Kind::timer), 0U);
}

TEST_F(LedgerOnABoard, HasAOneShotTimerOpenUntilItsTimeHasCome) {
    ManualClock clock;
    uint32_t id = 0;
    ASSERT_EQ(AaSysTimercCreate(&id, 1000, 0, ignoreTimer, nullptr, EAaSysTimePriority{}), 0);
    clock.advance(600ms);
    EXPECT_EQ(AaSysTimerReset(id), 0);
    clock.advance(600ms);
    EXPECT_EQ(ledger().count(Kind::timer), 1U);
    clock.advance(400ms);
    EXPECT_EQ(ledger().count(Kind::timer), 0U);
}

TEST_F(LedgerOnABoard, HasNoTimerOpenThatExpiredByAClockThatIsGone) {
    uint32_t id = 0;
    {
        ManualClock clock;
        ASSERT_EQ(AaSysTimercCreate(&id, 60'000, 0, ignoreTimer, nullptr, EAaSysTimePriority{}), 0);
        clock.advance(60s);
    }
    EXPECT_EQ(ledger().count(Kind::timer), 0U);
}

TEST_F(LedgerOnABoard, GivesTheMessageOfATimerToTheTimerAndBack) {
    void* msg = AaSysComMsgCreate(0x0701, 0, 0x10110001);
    uint32_t id = 0;
    ASSERT_EQ(AaSysTimermCreate(&id, 60'000, 0, msg), 0);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
    ASSERT_EQ(AaSysTimermDelete(id, &msg), 0);
    EXPECT_EQ(ledger().count(Kind::timer), 0U);
    EXPECT_EQ(ledger().count(Kind::message), 1U);
    EXPECT_EQ(AaSysComMsgDestroy(&msg), EAaSysComRetVal_NoError);
}

TEST_F(LedgerOnABoard, LeavesTheMessageWithTheCallerWhenATimerIsRefused) {
    void* msg = AaSysComMsgCreate(0x0701, 0, 0x10110001);
    uint32_t id = 0;
    fail("AaSysTimermCreate").with(EAaSysTimerRetVal_OutOfResources);
    EXPECT_NE(AaSysTimermCreate(&id, 60'000, 0, msg), 0);
    EXPECT_EQ(ledger().count(Kind::message), 1U);
    EXPECT_EQ(AaSysComMsgDestroy(&msg), EAaSysComRetVal_NoError);
}

TEST_F(LedgerOnABoard, HasATagsCopyOpenUntilItIsReleased) {
    ASSERT_EQ(AaConfigTagSetString("app.text", "abc"), 0);
    char* value = nullptr;
    unsigned int length = 0;
    ASSERT_EQ(AaConfigTagGetString("app.text", &value, &length), 0);
    const auto open = ledger().open();
    EXPECT_EQ(ledger().count(Kind::memory), 1U);
    EXPECT_EQ(open.back().function, "AaConfigTagGetString");
    AaMemUnRef(value);
    EXPECT_EQ(ledger().count(Kind::memory), 0U);
}

TEST_F(LedgerOnABoard, HasSubscriptionsOpenUntilTheyEnd) {
    ASSERT_EQ(AaConfigTagRegister("app.x", ignoreTag), 0);
    ASSERT_EQ(AaConfigTagRegister("app.x", ignoreTag), 0);
    ASSERT_EQ(AaSysMbSubscribe(0x0801, 0x10110001, 0, 15), 0);
    EXPECT_EQ(ledger().count(Kind::subscription), 2U);
    EXPECT_EQ(AaConfigTagUnregister("app.x", ignoreTag), 0);
    EXPECT_EQ(AaSysMbUnsubscribe(0x0801, 0x10110001), 0);
    EXPECT_EQ(ledger().count(Kind::subscription), 0U);
}

TEST_F(LedgerOnABoard, HasAnEndpointOpenUntilItIsGivenBack) {
    const uint16_t cpid = AaSysComEuUserRegister(0);
    ASSERT_NE(cpid, 0);
    EXPECT_EQ(ledger().count(Kind::registration), 1U);
    EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::registration), 0U);
}

void* registerAndEnd(void*) {
    AaSysComEuUserRegister(0);
    return nullptr;
}

TEST_F(LedgerOnABoard, ClosesTheEndpointsOfAnExecutionUnitThatEnds) {
    ASSERT_EQ(AaProEuCreateAndStartJoinable(nullptr, "Short", registerAndEnd, 4096, 5, nullptr, 0, 1),
              EAaProEuRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::registration), 0U);
    EXPECT_EQ(ledger().count(Kind::executionUnit), 0U);
}

TEST_F(LedgerOnABoard, HasAReceivedMessageOpen) {
    const Messages endpoint;
    ASSERT_EQ(AaSysComMsgSend(AaSysComMsgCreate(0x0702, 4, endpoint.address())), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
    void* msg = AaSysComMsgReceive(5'000'000, 0);
    ASSERT_NE(msg, nullptr);
    EXPECT_EQ(ledger().open().back().function, "AaSysComMsgReceive");
    EXPECT_EQ(AaSysComMsgDestroy(&msg), EAaSysComRetVal_NoError);
}

} // namespace
