#include <pal/AaSysCom.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <testkit/BoardTest.hpp>
#include <testkit/ManualClock.hpp>
#include <testkit/Messages.hpp>

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
    EXPECT_TRUE(script.await(0x0701, 5000));
}

TEST_F(ManualClockOnABoard, TellsTheTimeOfDayThatWasSet) {
    ManualClock sut;
    sut.setUtc(std::chrono::hours(24 * 365));
    SAaTime time{};
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(time.year, 1971U);
}

} // namespace
