#include <mox/Service.hpp>
#include <pal/AaSem.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysTimer.h>

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

// The end of a service on the workstation's platform itself, whose messages, timers and execution units are real.
namespace mox::testing {
namespace {

using ps::hwapi::common::ERadHwapi_LED;
using ps::hwapi::common::ERadHwapiState_LedState;
using ps::hwapi::common::MsgDelegateBase;
using ps::hwapi::common::Service;

constexpr std::uint16_t ledCpid = 0x0601;
constexpr std::uint16_t work = 0x0701;
constexpr std::uint16_t otherWork = 0x0702;

class Handler : public MsgDelegateBase {
public:
    Handler(std::uint16_t msgId, std::function<void()> action) : MsgDelegateBase(msgId), m_action(std::move(action)) {}
    void HandleMessage(void* /*msg*/) override { m_action(); }

private:
    std::function<void()> m_action;
};

/// A service that does what the test says.
class LivingService : public Service {
public:
    LivingService() : Service("Led", ledCpid, ERadHwapi_LED, ERadHwapiState_LedState) {}
    void Init() override { onInit(); }
    void handle(std::uint16_t msgId, std::function<void()> action) {
        AddMsgDelegate(std::make_unique<Handler>(msgId, std::move(action)));
    }
    EAaSysComRetVal tell(std::uint16_t msgId) const { return AaSysComMsgSend(AaSysComMsgCreate(msgId, 0, GetSicad())); }

    std::function<void()> onInit = [] {};
};

class ServiceEnd : public ::testing::Test {
protected:
    ~ServiceEnd() override { sut->Shutdown(); }

    /// @return what Startup answers once the main EU has ended
    bool run() {
        char program[] = "MOXLedExe";
        char* argv[] = {program, nullptr};
        return sut->Startup(1, argv);
    }

    std::unique_ptr<LivingService> sut = std::make_unique<LivingService>();
    int handled = 0;
};

TEST_F(ServiceEnd, AskedForByAnotherThreadComesWithTheNextMessage) {
    std::thread other;
    sut->handle(work, [this] { ++handled; });
    sut->onInit = [&] {
        other = std::thread([this] {
            sut->Terminate();
            sut->tell(work);
            sut->tell(work);
        });
    };
    EXPECT_TRUE(run());
    other.join();
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(sut->GetServiceStateRad(), 4U);
}

TEST_F(ServiceEnd, DropsTheMessagesThatAreLeft) {
    sut->handle(work, [this] {
        ++handled;
        sut->Terminate();
        sut->tell(work);
    });
    sut->onInit = [this] {
        sut->tell(work);
        sut->tell(work);
    };
    EXPECT_TRUE(run());
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(sut->tell(work), EAaSysComRetVal_NoReceiver) << "its address has gone with the main EU";
}

TEST_F(ServiceEnd, ByAFailureDropsTheMessagesThatAreLeft) {
    sut->handle(work, [this] {
        ++handled;
        throw std::runtime_error("broken");
    });
    sut->onInit = [this] {
        sut->tell(work);
        sut->tell(work);
    };
    EXPECT_FALSE(run());
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(sut->GetServiceStateRad(), 5U);
    EXPECT_EQ(sut->tell(work), EAaSysComRetVal_NoReceiver);
}

TEST_F(ServiceEnd, ByACancellationIsADeathInTheStateOfTheMoment) {
    sut->handle(work, [this] {
        sut->tell(work);
        pthread_cancel(pthread_self());
        pthread_testcancel();
    });
    sut->onInit = [this] { sut->tell(work); };
    EXPECT_FALSE(run());
    EXPECT_EQ(sut->GetServiceStateRad(), 3U);
    EXPECT_EQ(sut->tell(work), EAaSysComRetVal_NoReceiver);
}

TEST_F(ServiceEnd, LeavesPeriodicTimersTickingForNobodyUntilTheShutdown) {
    std::uint32_t timer = 0;
    sut->handle(work, [this] {
        if (++handled == 3) {
            sut->Terminate();
        }
    });
    sut->onInit = [&] { ASSERT_EQ(AaSysTimermCreate(&timer, 1, 1, AaSysComMsgCreate(work, 0, sut->GetSicad())), 0); };
    EXPECT_TRUE(run());
    EXPECT_EQ(handled, 3);

    // Ticks of its own tell that the other timer has ticked on.
    TAaSem ticks = nullptr;
    ASSERT_EQ(AaSemCreateC(&ticks, 0), EAaSemRetVal_NoError);
    const TAaSysTimerCb tick = [](std::uint32_t, void* sem) { AaSemPost(static_cast<TAaSem>(sem)); };
    std::uint32_t own = 0;
    ASSERT_EQ(AaSysTimercCreate(&own, 5, 0, tick, ticks, EAaSysTimePriority_Normal), 0);
    AaSemWait(ticks);
    AaSemDestroy(ticks);
    EXPECT_EQ(AaSysTimerReset(timer), EAaSysTimerRetVal_NoError);

    sut->Shutdown();
    EXPECT_EQ(AaSysTimerReset(timer), EAaSysTimerRetVal_NotFound);
}

TEST_F(ServiceEnd, MayBeAskedForByATimersCallBack) {
    const TAaSysTimerCb terminate = [](std::uint32_t, void* service) {
        auto* const living = static_cast<LivingService*>(service);
        living->Terminate();
        living->tell(work);
    };
    sut->handle(work, [this] { ++handled; });
    sut->onInit = [&] {
        std::uint32_t timer = 0;
        ASSERT_EQ(AaSysTimercCreate(&timer, 0, 0, terminate, sut.get(), EAaSysTimePriority_Normal), 0);
    };
    EXPECT_TRUE(run());
    EXPECT_EQ(handled, 1);
}

TEST_F(ServiceEnd, LeavesTheProcessAbleToRunAnotherOneAtTheSameAddress) {
    for (int life = 1; life <= 3; ++life) {
        sut->handle(otherWork, [this] {
            ++handled;
            sut->Terminate();
        });
        sut->onInit = [this] { EXPECT_EQ(sut->tell(otherWork), EAaSysComRetVal_NoError); };
        EXPECT_TRUE(run());
        EXPECT_EQ(handled, life);
        sut->Shutdown();
        sut.reset();
        sut = std::make_unique<LivingService>();
    }
}

TEST_F(ServiceEnd, IsRememberedByAServiceThatIsStartedAgain) {
    sut->handle(work, [this] { ++handled; });
    sut->onInit = [this] {
        sut->tell(work);
        sut->tell(work);
    };
    sut->Terminate();
    EXPECT_TRUE(run());
    sut->Shutdown();
    EXPECT_TRUE(run());
    EXPECT_EQ(handled, 2) << "one message in each life";
}

} // namespace
} // namespace mox::testing
