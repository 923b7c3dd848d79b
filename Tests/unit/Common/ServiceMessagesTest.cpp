#include "unit/Common/ServiceUnderTest.hpp"

#include <mox/HwapiAssert.hpp>
#include <mox/InvalidParameterException.hpp>

#include <stdexcept>
#include <typeinfo>

namespace mox::testing {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Return;

constexpr std::uint16_t echoRouteRequest = 0x0AD6;

class ServiceMessageHandling : public ServiceOnPlatform {
protected:
    TestMessage message{0x0601, 0x0F011234, 0x0F028001};
    TestMessage echo{echoRouteRequest};
};

TEST_F(ServiceMessageHandling, OfNothingOnlyReceives) {
    platform.receives(nullptr);
    EXPECT_CALL(platform.sysCom, AaSysComMsgGetId(_)).Times(0);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)"));
}

TEST_F(ServiceMessageHandling, GivesTheMessageToItsDelegateAndDestroysIt) {
    const void* seen = nullptr;
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0600}));
    sut.AddMsgDelegate(
        std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, [&seen](void* msg) { seen = msg; }));
    platform.receives(&message);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                                  "AaSysComMsgDestroy(0x601)"));
    EXPECT_EQ(seen, &message);
}

TEST_F(ServiceMessageHandling, ReadsTheIdOnceAndNothingElseOfAHandledMessage) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}));
    platform.receives(&message);
    EXPECT_CALL(platform.sysCom, AaSysComMsgGetId(&message)).Times(1).WillOnce(Return(std::uint16_t{0x0601}));
    EXPECT_CALL(platform.sysCom, AaSysComMsgGetSender(_)).Times(0);
    EXPECT_CALL(platform.sysCom, AaSysComMsgGetReceiver(_)).Times(0);
    sut.HandleMessages();
}

TEST_F(ServiceMessageHandling, OfAnUnknownIdWarnsAndDestroys) {
    platform.receives(&message);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("AaSysComMsgReceive(-1, 0)",
                            log(3, "Unknown message received: id=0x0601 receiver=0x0F011234 sender=0x0F028001"),
                            "AaSysComMsgDestroy(0x601)"));
}

TEST_F(ServiceMessageHandling, OfAnUnknownIdPadsTheNumbers) {
    TestMessage small{0x000A, 0x0000000B, 0x0000000C};
    platform.receives(&small);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(log(3, "Unknown message received: id=0x000A receiver=0x0000000B sender=0x0000000C")));
}

TEST_F(ServiceMessageHandling, OfAnEchoRouteRequestThatStaysPrintsAndDestroysIt) {
    platform.receives(&echo);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("AaSysComMsgReceive(-1, 0)", log(2, "AASYSCOM_ECHO_ROUTE_REQ_MSG received"),
                            "AaSysComControlHandleEchoRouteReq(0xAD6)", "AaSysComControlPrintRouteReq(0xAD6)",
                            "AaSysComMsgDestroy(0xAD6)"));
}

TEST_F(ServiceMessageHandling, OfAnEchoRouteRequestThatThePlatformTookLeavesItAlone) {
    for (const bool keepsTheHandle : {true, false}) {
        for (const std::int32_t answer : {1, -1}) {
            platform.answers.echoRoute = [=](void** msg) {
                *msg = keepsTheHandle ? *msg : nullptr;
                return answer;
            };
            platform.receives(&echo);
            sut.HandleMessages();
            EXPECT_THAT(platform.takeTrace(),
                        ElementsAre("AaSysComMsgReceive(-1, 0)", log(2, "AASYSCOM_ECHO_ROUTE_REQ_MSG received"),
                                    "AaSysComControlHandleEchoRouteReq(0xAD6)", log(2, "deleteMsg = false")));
            // The double still counts the message as received; hand it back.
            void* handle = &echo;
            AaSysComMsgDestroy(&handle);
            platform.takeTrace();
        }
    }
}

TEST_F(ServiceMessageHandling, OfAnEchoRouteRequestDestroysNothingWhenTheHandleIsGone) {
    platform.answers.echoRoute = [](void** msg) {
        AaSysComMsgDestroy(msg);
        return 0;
    };
    EXPECT_CALL(platform.sysCom, AaSysComControlPrintRouteReq(nullptr)).WillOnce(Return());
    platform.receives(&echo);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeCalls("AaSysComMsgDestroy"), ElementsAre("AaSysComMsgDestroy(0xAD6)"));
}

TEST_F(ServiceMessageHandling, OfAnEchoRouteRequestPassesADelegateOfThatIdBy) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, echoRouteRequest));
    platform.receives(&echo);
    sut.HandleMessages();
    for (const std::string& event : platform.takeTrace()) {
        EXPECT_NE(event, "HandleMessage(0xAD6)");
        EXPECT_NE(event, state(3));
    }
}

TEST_F(ServiceMessageHandling, WithTheCommonStatesSwitchedOffWritesNoState) {
    sut.SetUseCommonServiceState(0);
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}));
    platform.receives(&message);
    sut.HandleMessages();
    EXPECT_THAT(platform.takeCalls("AaConfigRadSetValue"), IsEmpty());
}

class ServiceMessageFailure : public ServiceMessageHandling {
protected:
    void handle(std::function<void(void*)> handler) {
        sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, std::move(handler)));
        platform.receives(&message);
        sut.HandleMessages();
    }
};

TEST_F(ServiceMessageFailure, ARuntimeErrorIsThrownOnAsACopyAfterTheMessageIsGone) {
    class FanStuck : public Service::RuntimeException {
        using RuntimeException::RuntimeException;
    };
    try {
        handle([](void*) { throw FanStuck("stuck", "Led/src/Led", 17); });
        FAIL() << "no exception";
    } catch (const Service::RuntimeException& failure) {
        EXPECT_EQ(typeid(failure), typeid(Service::RuntimeException));
        EXPECT_STREQ(failure.what(), "Runtime error");
        EXPECT_EQ(failure.getDescription(), "stuck");
        EXPECT_EQ(failure.getFile(), "Led/src/Led");
        EXPECT_EQ(failure.getLine(), 17U);
        EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                                      "AaSysComMsgDestroy(0x601)"));
    }
}

struct OtherRow {
    const char* what;
    std::function<void(void*)> handler;
};

void PrintTo(const OtherRow& row, std::ostream* out) {
    *out << row.what;
}

class ServiceMessageOtherFailure : public ServiceMessageFailure, public ::testing::WithParamInterface<OtherRow> {};

TEST_P(ServiceMessageOtherFailure, IsLoggedAndThrownOnAsARuntimeErrorAfterTheMessageIsGone) {
    try {
        handle(GetParam().handler);
        FAIL() << "no exception";
    } catch (const Service::RuntimeException& failure) {
        EXPECT_EQ(failure.getDescription(), "std::exception in Run()");
        EXPECT_EQ(failure.getFile(), "Common/src/Service");
        EXPECT_GT(failure.getLine(), 0U);
        EXPECT_THAT(platform.takeTrace(),
                    ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                log(4, "Message handling failed 0x0601"), "AaSysComMsgDestroy(0x601)"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ServiceMessageOtherFailure,
    ::testing::Values(OtherRow{"standard", [](void*) { throw std::out_of_range("x"); }},
                      OtherRow{"init failed", [](void*) { throw Service::InitFailedException("x", "f", 1); }},
                      OtherRow{"family",
                               [](void*) { throw ps::hwapi::common::InvalidParameterException("x", "f", 1); }},
                      OtherRow{"assertion", [](void*) { throw ps::hwapi::common::AssertionException(); }}));

TEST_F(ServiceMessageFailure, AnythingElsePassesThroughUnchangedAndTheMessageIsDestroyed) {
    EXPECT_THROW(handle([](void*) { throw 42; }), int);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                                  "AaSysComMsgDestroy(0x601)"));
}

class ServiceLoopPass : public ServiceMessageHandling {};

TEST_F(ServiceLoopPass, GoesOnUntilTerminated) {
    platform.receives(nullptr);
    platform.receives(nullptr);
    EXPECT_TRUE(sut.Run());
    sut.Terminate();
    EXPECT_FALSE(sut.Run());
}

TEST_F(ServiceLoopPass, EndsAfterTheMessageThatTerminates) {
    sut.AddMsgDelegate(
        std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, [this](void*) { sut.Terminate(); }));
    platform.receives(&message);
    EXPECT_FALSE(sut.Run());
    EXPECT_THAT(platform.takeCalls("AaSysComMsgDestroy"), ElementsAre("AaSysComMsgDestroy(0x601)"));
}

} // namespace
} // namespace mox::testing
