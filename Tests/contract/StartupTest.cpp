#include <pal/AaConfig.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <thread>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<int> g_calls;
std::thread::id g_thread;
bool g_sendsInCallback = false;

void callback1() {
    g_calls.push_back(1);
    g_thread = std::this_thread::get_id();
}
void callback2() {
    g_calls.push_back(2);
}
void callback3() {
    g_calls.push_back(3);
    const std::uint16_t cpid = AaSysComEuUserRegister(0);
    g_sendsInCallback = AaSysComMsgSend(AaSysComMsgCreate(1, 0, AaSysComSicadGet(cpid, AaSysComGetOwnNid()))) ==
                        EAaSysComRetVal_NoError;
    void* message = AaSysComMsgReceive(1000000, 0);
    AaSysComMsgDestroy(&message);
    AaSysComUserDeregister(cpid);
}

class ExecutionEnvironment : public testing::Test {
protected:
    void SetUp() override {
        unsetenv("MOX_RUN");
        g_calls.clear();
    }
    static void start() {
        ASSERT_EQ(AaConfigEarlyStartup(), EAaConfigRetVal_NoError);
        ASSERT_EQ(AaStartupEeStartup(), EAaStartupRetVal_NoError);
    }
};

} // namespace

// Stands first: it needs a process that has not opened its configuration yet.
TEST_F(ExecutionEnvironment, DoesNotStartWithoutConfiguration) {
    EXPECT_EQ(AaStartupEeStartup(), EAaStartupRetVal_NoConfig);
    EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NotStarted);
}

TEST_F(ExecutionEnvironment, StartsAndShutsDownOnce) {
    start();
    EXPECT_EQ(AaStartupEeStartup(), EAaStartupRetVal_AlreadyStarted);
    EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NoError);
    EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NotStarted);
}

TEST_F(ExecutionEnvironment, RefusesANullCallBack) {
    EXPECT_EQ(AaStartupAtEeShutdown(nullptr), EAaStartupRetVal_InvalidValue);
}

TEST_F(ExecutionEnvironment, CallsBackNewestFirstOnTheThreadThatShutsDown) {
    EXPECT_EQ(AaStartupAtEeShutdown(callback1), EAaStartupRetVal_NoError) << "also before start-up";
    start();
    EXPECT_EQ(AaStartupAtEeShutdown(callback2), EAaStartupRetVal_NoError);
    EXPECT_EQ(AaStartupAtEeShutdown(callback3), EAaStartupRetVal_NoError);
    EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NoError);
    EXPECT_THAT(g_calls, ElementsAre(3, 2, 1));
    EXPECT_EQ(g_thread, std::this_thread::get_id());
    EXPECT_TRUE(g_sendsInCallback) << "all families can still be used";
    EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NotStarted);
    EXPECT_EQ(g_calls.size(), 3U);
}

TEST_F(ExecutionEnvironment, CallsTheSameCallBackOnce) {
    start();
    for (const auto callback : {callback1, callback2, callback1, callback2})
        EXPECT_EQ(AaStartupAtEeShutdown(callback), EAaStartupRetVal_NoError);
    AaStartupEeShutdown();
    std::sort(g_calls.begin(), g_calls.end());
    EXPECT_THAT(g_calls, ElementsAre(1, 2));
}

TEST_F(ExecutionEnvironment, ForgetsCallBacksThatItHasCalled) {
    start();
    AaStartupAtEeShutdown(callback1);
    AaStartupEeShutdown();
    g_calls.clear();
    start();
    AaStartupEeShutdown();
    EXPECT_THAT(g_calls, IsEmpty());
}

TEST_F(ExecutionEnvironment, DeregistersWhatIsLeft) {
    start();
    const std::uint16_t cpid = AaSysComEuUserRegister(0x0655);
    ASSERT_EQ(cpid, 0x0655);
    AaStartupEeShutdown();
    EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NotFound);
    start();
    std::thread([] {
        EXPECT_EQ(AaSysComEuUserRegister(0x0655), 0x0655) << "nobody has it any more";
        EXPECT_EQ(AaSysComUserDeregister(0x0655), EAaSysComRetVal_NoError);
    }).join();
    AaStartupEeShutdown();
}
