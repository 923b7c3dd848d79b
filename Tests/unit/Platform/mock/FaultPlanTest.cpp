#include "mock/AaSemMock.hpp"
#include "mock/Faults.hpp"
#include "mock/FunctionTable.hpp"
#include "mock/Ledger.hpp"

#include <ddal/ddal_watchdog.h>
#include <pal/AaConfig.h>
#include <pal/AaMem.h>
#include <pal/AaSysCom.h>

#include <functional>
#include <stdexcept>
#include <vector>

namespace {

using namespace mox::mock;
using testing::HasSubstr;

/// Creates and destroys `count` semaphores. @return what each creation answered
std::vector<int> createSemaphores(int count) {
    std::vector<int> answers;
    for (int i = 0; i < count; ++i) {
        TAaSem sem = nullptr;
        answers.push_back(AaSemCreateC(&sem, 0));
        if (sem != nullptr)
            AaSemDestroy(sem);
    }
    return answers;
}

std::string refusalOf(const std::function<void()>& plan) {
    try {
        plan();
    } catch (const std::invalid_argument& refused) {
        return refused.what();
    }
    return "accepted";
}

TEST(Fault, FailsTheNextCallOnceUnlessToldOtherwise) {
    const Fault fault = fail("AaSemCreateC").with(EAaSemRetVal_OutOfResources);
    EXPECT_EQ(createSemaphores(3), (std::vector<int>{3, 0, 0}));
    EXPECT_EQ(fault.fired(), 1U);
}

TEST(Fault, FailsTheNthCallFromItsPlanning) {
    createSemaphores(2);
    fail("AaSemCreateC").onCall(3).with(EAaSemRetVal_Error);
    EXPECT_EQ(createSemaphores(4), (std::vector<int>{0, 0, 1, 0}));
}

TEST(Fault, FailsSeveralCallsInARow) {
    const Fault fault = fail("AaSemCreateC").onCall(2).times(2).with(EAaSemRetVal_Error);
    EXPECT_EQ(createSemaphores(4), (std::vector<int>{0, 1, 1, 0}));
    EXPECT_EQ(fault.fired(), 2U);
}

TEST(Fault, FailsAllCallsFromOneOn) {
    fail("AaSemCreateC").fromCall(2).with(EAaSemRetVal_Error);
    EXPECT_EQ(createSemaphores(5), (std::vector<int>{0, 1, 1, 1, 1}));
}

TEST(Fault, EndsWhenItIsCancelled) {
    Fault fault = fail("AaSemCreateC").fromCall(1).with(EAaSemRetVal_Error);
    EXPECT_EQ(createSemaphores(1), (std::vector<int>{1}));
    fault.cancel();
    EXPECT_EQ(createSemaphores(1), (std::vector<int>{0}));
}

TEST(Fault, StandsInFrontOfTheMock) {
    Use<AaSemMock> sem;
    EXPECT_CALL(sem, AaSemPost).Times(0);
    fail("AaSemPost").with(EAaSemRetVal_Error);
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_Error);
}

TEST(Fault, AnswersPointersAndPlainNumbers) {
    fail("AaMemMalloc").with(nullptr);
    EXPECT_EQ(AaMemMalloc(16), nullptr);
    fail("AaSysComEuUserRegister").with(0x7777);
    EXPECT_EQ(AaSysComEuUserRegister(0), 0x7777);
    EXPECT_EQ(ledger().count(Kind::registration), 0U);
}

TEST(Fault, LetsAFunctionWithoutResultDoNothing) {
    void* block = AaMemMalloc(16);
    const Fault fault = fail("AaMemRef").doNothing();
    AaMemRef(block);
    EXPECT_EQ(fault.fired(), 1U);
    EXPECT_EQ(ledger().count(Kind::memory), 1U);
    AaMemUnRef(block);
}

TEST(FaultOfARelease, LeavesTheHandleValidAndNotOpen) {
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 5), EAaSemRetVal_NoError);
    fail("AaSemDestroy").with(EAaSemRetVal_Error);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_Error);
    EXPECT_EQ(ledger().count(Kind::semaphore), 0U);
    int32_t value = 0;
    EXPECT_EQ(AaSemGetValue(sem, &value), EAaSemRetVal_NoError);
    EXPECT_EQ(value, 5);
}

TEST(FaultOfARelease, LetsASecondAttemptRelease) {
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 5), EAaSemRetVal_NoError);
    fail("AaSemDestroy").with(EAaSemRetVal_Error);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_Error);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
}

TEST(FaultOfASend, DestroysTheMessage) {
    void* msg = AaSysComMsgCreate(0x1234, 8, 0);
    ASSERT_NE(msg, nullptr);
    fail("AaSysComMsgSend").with(EAaSysComRetVal_NoReceiver);
    EXPECT_EQ(AaSysComMsgSend(msg), EAaSysComRetVal_NoReceiver);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
}

/// Takes what it can get of each kind and gives it back. @return how much that was
int takeEachKind() {
    int taken = 0;
    TAaSem sem = nullptr;
    if (AaSemCreateC(&sem, 1) == EAaSemRetVal_NoError) {
        ++taken;
        AaSemDestroy(sem);
    }
    if (void* block = AaMemMalloc(8)) {
        ++taken;
        AaMemUnRef(block);
    }
    if (void* msg = AaSysComMsgCreate(1, 0, 2)) {
        ++taken;
        AaSysComMsgDestroy(&msg);
    }
    return taken;
}

TEST(FaultOfAnyCall, FailsEachCallOfAScenarioInTurn) {
    std::vector<std::string> failed;
    for (std::uint64_t n = 1;; ++n) {
        const Fault fault = failAny(n);
        const int taken = takeEachKind();
        if (fault.fired() == 0) {
            EXPECT_EQ(taken, 3);
            break;
        }
        failed.push_back(fault.lastFailed());
        EXPECT_EQ(taken, failed.back().find("Destroy") == std::string::npos ? 2 : 3) << failed.back();
    }
    // giving a memory block back cannot fail
    EXPECT_EQ(failed, (std::vector<std::string>{"AaSemCreateC", "AaSemDestroy", "AaMemMalloc", "AaSysComMsgCreate",
                                                "AaSysComMsgDestroy"}));
}

TEST(FaultOfAnyCall, AnswersWithTheFamilysOwnFailure) {
    failAny(1);
    EXPECT_EQ(AaSysComEuUserRegister(0x0600), 0);
    failAny(1);
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_IO_ERROR);
    failAny(1);
    EXPECT_EQ(AaConfigTagSetString("a", "b"), EAaConfigRetVal_OutOfResources);
    failAny(1);
    EXPECT_EQ(AaSysComSicadGetNid(0x10110600), 0x1011) << "a function that cannot fail";
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_Error);
}

TEST(FaultPlan, RefusesAnUnknownFunctionWithTheNearestName) {
    EXPECT_THAT(refusalOf([] { fail("AaSysComMsgSent").with(EAaSysComRetVal_Error); }),
                HasSubstr("did you mean \"AaSysComMsgSend\"?"));
}

TEST(FaultPlan, RefusesValuesThatAreNoResultOfTheFunction) {
    EXPECT_THAT(refusalOf([] { fail("AaMemMalloc").with(0); }), HasSubstr("a pointer, not a number"));
    EXPECT_THAT(refusalOf([] { fail("AaSemPost").with(EAaSysComRetVal_Error); }), HasSubstr("another type"));
    EXPECT_THAT(refusalOf([] { fail("AaSemPost").doNothing(); }), HasSubstr("a number, not nothing"));
    EXPECT_THAT(refusalOf([] { fail("AaMemRef").with(1); }), HasSubstr("nothing, not a number"));
    EXPECT_THAT(refusalOf([] { fail("AaSysComGetOwnNid").with(65536); }), HasSubstr("does not fit"));
    EXPECT_THAT(refusalOf([] { fail("AaSysComGetOwnNid").with(-1); }), HasSubstr("does not fit"));
    EXPECT_EQ(refusalOf([] { fail("AaSysComGetOwnNid").with(65535); }), "accepted");
}

TEST(FaultPlan, RefusesToCountFromZero) {
    EXPECT_THAT(refusalOf([] { fail("AaSemPost").onCall(0).with(EAaSemRetVal_Error); }), HasSubstr("from 1"));
}

} // namespace
