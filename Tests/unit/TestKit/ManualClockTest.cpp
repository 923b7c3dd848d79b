#include <pal/AaSysCom.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <testkit/BoardTest.hpp>
#include <testkit/ManualClock.hpp>
#include <testkit/Messages.hpp>

#include <gtest/gtest-spi.h>

namespace {

using namespace mox::testkit;
using namespace std::chrono_literals;

class ManualClockOnABoard : public BoardTest {};

TEST_F(ManualClockOnABoard, StandsUntilItIsMoved) {
    ManualClock sut;
    const uint64_t before = AaTicks64Get();
    EXPECT_EQ(AaTicks64Get(), before);
    sut.advance(1s);
    EXPECT_GT(AaTicks64Get(), before);
}

TEST_F(ManualClockOnABoard, SendsTheMessagesOfDueTimers) {
    ManualClock sut;
    Messages script;
    void* msg = AaSysComMsgCreate(0x0701, 0, script.address());
    uint32_t timer = 0;
    ASSERT_EQ(AaSysTimermCreate(&timer, 60'000, 0, msg), EAaSysTimerRetVal_NoError);
    sut.advance(59'999ms);
    script.expectNone(0);
    sut.advance(1ms);
    EXPECT_TRUE(script.await(0x0701));
}

TEST_F(ManualClockOnABoard, IsNotMovedBack) {
    ManualClock sut;
    const uint64_t before = AaTicks64Get();
    EXPECT_NONFATAL_FAILURE(sut.advance(-1s), "the clock cannot be moved back by 1000000000 ns");
    EXPECT_EQ(AaTicks64Get(), before);
}

TEST_F(ManualClockOnABoard, FailsTheTestWhenNobodyComesToWait) {
    ManualClock sut;
    EXPECT_NONFATAL_FAILURE(EXPECT_FALSE(sut.awaitWaits(1, 1)), "within 1 ms there were not 1 waits");
}

TEST_F(ManualClockOnABoard, StandsOnWhenASecondOneEnds) {
    ManualClock sut;
    EXPECT_NONFATAL_FAILURE(ManualClock(), "one at a time");
    const uint64_t before = AaTicks64Get();
    EXPECT_EQ(AaTicks64Get(), before);
}

TEST_F(ManualClockOnABoard, TellsTheTimeOfDayThatWasSet) {
    ManualClock sut;
    sut.setUtc(std::chrono::hours(24 * 365));
    SAaTime time{};
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(time.year, 1971U);
}

} // namespace
