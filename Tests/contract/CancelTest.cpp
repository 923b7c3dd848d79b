#include "EuFixture.hpp"

#include <pal/AaConfig.h>
#include <pal/AaFile.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <string>

using mox::testing::eventually;
using mox::testing::Message;
using mox::testing::openDescriptors;
using mox::testing::receive;
using mox::testing::Registration;

namespace {

struct Call {
    const char* name;
    void (*carryOut)();
};

struct Block {
    const Call* call;
    std::atomic<bool>* returned;
};

/// Runs a call on an EU that is cancelled already but has not come to a cancellation point.
/// @return whether the call returned
bool returnsWhenCancelled(const Call& call) {
    std::atomic<bool> returned{false};
    const Block block{&call, &returned};
    const TAaProEuEntry entry = [](void* argument) -> void* {
        const Block mine = *static_cast<const Block*>(argument);
        pthread_cancel(pthread_self());
        mine.call->carryOut();
        *mine.returned = true;
        return nullptr;
    };
    EXPECT_EQ(AaProEuCreateAndStartJoinable(nullptr, call.name, entry, 65536, 1, &block, sizeof(block), 1),
              EAaProEuRetVal_NoError);
    return returned;
}

std::string fileName() {
    return "/tmp/mox-cancel-test." + std::to_string(getpid());
}

void useFile() {
    TAaFile file = AaFileOpen(fileName().c_str(), "w");
    EXPECT_EQ(AaFileWrite("text", 1, 4, file), 4U);
    EXPECT_EQ(AaFileClose(file), EAaFileRetVal_NoError);
    EXPECT_EQ(AaFileRemove(fileName().c_str()), EAaFileRetVal_NoError);
}

void useNamedSemaphore() {
    TAaSem sem = nullptr;
    EXPECT_EQ(AaSemCreateNamedC(&sem, "cancel-test", 1), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemWait(sem), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemUnlink("cancel-test"), EAaSemRetVal_NoError);
}

void useTags() {
    EXPECT_EQ(AaConfigTagSetString("test.cancel.own", "1"), EAaConfigRetVal_NoError);
    EXPECT_EQ(AaConfigTagPublicSetU32("test.cancel.public", 2), EAaConfigRetVal_NoError);
    unsigned int value = 0;
    EXPECT_EQ(AaConfigTagGetU32("test.cancel.public", &value), EAaConfigRetVal_NoError);
    EXPECT_EQ(value, 2U);
}

void useTimer() {
    std::uint32_t timer = 0;
    EXPECT_EQ(AaSysTimermCreate(&timer, 1000000, 0, AaSysComMsgCreate(1, 0, 0)), 0);
    EXPECT_EQ(AaSysTimerDelete(timer), 0);
}

void runCommand() {
    std::int32_t status = -1;
    EXPECT_EQ(AaProCmdExec("echo something; exit 3", &status), EAaProEuRetVal_NoError);
    EXPECT_EQ(status, 3);
}

void registerAndSend() {
    const std::uint16_t cpid = AaSysComEuUserRegister(0);
    EXPECT_NE(cpid, 0);
    EXPECT_EQ(AaSysComMsgSend(AaSysComMsgCreate(1, 0, AaSysComSicadGet(cpid, AaSysComGetOwnNid()))),
              EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NoError);
    receive();
}

const Call calls[] = {
    {"register and end", [] { EXPECT_NE(AaSysComEuUserRegister(0), 0); }},
    {"register and send", registerAndSend},
    {"log", [] { EXPECT_EQ(AaSysLogPrint(EAaSysLogSeverityLevel_Info, "logged when cancelled"), 0); }},
    {"named semaphore", useNamedSemaphore},
    {"tags", useTags},
    {"file", useFile},
    {"timer", useTimer},
    {"command", runCommand},
    {"local time",
     [] {
         SAaTime time{};
         EXPECT_EQ(AaLocalTimeGet(&time), 0);
     }},
    {"create an EU and wait",
     [] {
         const TAaProEuEntry nothing = [](void*) -> void* { return nullptr; };
         EXPECT_EQ(AaProEuCreateAndStartJoinable(nullptr, "inner", nothing, 65536, 1, nullptr, 0, 1),
                   EAaProEuRetVal_NoError);
     }},
};

/// Calls without end, until it is cancelled.
void* callOnAndOn(void* argument) {
    const Call& call = **static_cast<const Call**>(argument);
    for (;;) {
        call.carryOut();
        pthread_testcancel();
    }
}

} // namespace

TEST(CallWithACancellationPending, IsCarriedOutAsAnyOther) {
    constexpr int times = 80; // the platform keeps some queues
    for (const Call& call : calls) {
        for (int i = 0; i < times; ++i)
            ASSERT_TRUE(returnsWhenCancelled(call)) << call.name;
        const std::size_t before = openDescriptors();
        for (int i = 0; i < times; ++i)
            ASSERT_TRUE(returnsWhenCancelled(call)) << call.name;
        EXPECT_TRUE(eventually([=] { return openDescriptors() <= before; })) << call.name;
    }
}

TEST(CallThatIsCancelled, LeavesThePlatformAble) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the race detector loses track of locks when a thread is cancelled in a system call";
#endif
    for (const Call& call : calls) {
        for (int i = 0; i < 10; ++i) {
            pthread_t thread{};
            const Call* argument = &call;
            ASSERT_EQ(pthread_create(&thread, nullptr, callOnAndOn, &argument), 0);
            usleep(static_cast<useconds_t>(i * 100)); // anywhere in the call
            ASSERT_EQ(pthread_cancel(thread), 0);
            ASSERT_EQ(pthread_join(thread, nullptr), 0) << call.name;
        }
        call.carryOut();
    }
}

TEST(ReceivingWithACancellationPending, EndsTheEuAndItsRegistrations) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the race detector loses track of locks when a thread is cancelled in a system call";
#endif
    const Call call{"receive", [] {
                        EXPECT_EQ(AaSysComEuUserRegister(0x0123), 0x0123);
                        Message(AaSysComMsgReceive(-1, 0)); // nothing will come
                    }};
    EXPECT_FALSE(returnsWhenCancelled(call));
    EXPECT_FALSE(returnsWhenCancelled(call)) << "and leaves its CPID free";
    const Registration next(0x0123);
    ASSERT_EQ(AaSysComMsgSend(AaSysComMsgCreate(7, 0, next.address())), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive().id(), 7);
}

TEST(SendingWithACancellationPending, WakesAReceiverThatSleeps) {
    static std::atomic<std::uint32_t> receiver{0};
    std::atomic<bool> came{false};
    mox::testing::Eu sleeper([&] {
        const Registration mine;
        receiver = mine.address();
        came = static_cast<bool>(receive(30000000));
    });
    ASSERT_TRUE(eventually([] { return receiver != 0; }));
    usleep(100000); // most likely it sleeps, which only makes the test sharper
    EXPECT_TRUE(returnsWhenCancelled(
        {"send", [] { EXPECT_EQ(AaSysComMsgSend(AaSysComMsgCreate(1, 0, receiver)), EAaSysComRetVal_NoError); }}));
    EXPECT_LT(mox::testing::timeOf([&] { sleeper.join(); }), std::chrono::seconds(10));
    EXPECT_TRUE(came);
}
