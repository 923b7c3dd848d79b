#include "mock/Faults.hpp"

#include <mox/Service.hpp>
#include <pal/AaSysCom.h>
#include <testkit/BoardTest.hpp>
#include <testkit/InProcessService.hpp>
#include <testkit/Messages.hpp>

#include <gtest/gtest-spi.h>

namespace {

using namespace mox::testkit;
using namespace ps::hwapi::common;
using testing::HasSubstr;

constexpr std::uint16_t askId = 0x0601;
constexpr std::uint16_t answerId = 0x0602;

/// Answers a number with its square.
class SquareDelegate : public MsgDelegateBase {
public:
    SquareDelegate() : MsgDelegateBase(askId) {}
    void HandleMessage(void* msg) override {
        std::uint32_t number = 0;
        std::memcpy(&number, AaSysComMsgGetPayload(msg), sizeof number);
        number *= number;
        void* answer = AaSysComMsgCreateReply(msg, answerId, sizeof number);
        std::memcpy(AaSysComMsgGetPayload(answer), &number, sizeof number);
        AaSysComMsgSend(answer);
    }
};

class SquareService : public Service {
public:
    SquareService() : Service("Square", 0x0620, ERadHwapi{}, ERadHwapiState(0x220001)) {}
    void Init() override { AddMsgDelegate(std::make_unique<SquareDelegate>()); }
};

class InProcess : public BoardTest {
protected:
    SquareService m_service;
};

TEST_F(InProcess, ServiceAnswersMessages) {
    InProcessService sut(m_service);
    ASSERT_TRUE(sut.isRunning());
    EXPECT_EQ(sut.address(), 0x10110620U);
    {
        Messages script;
        const auto answer = script.request(sut.address(), askId, payload(std::uint32_t{12}), answerId);
        EXPECT_EQ(answer.as<std::uint32_t>(), 144U);
    }
    EXPECT_TRUE(sut.stop());
    EXPECT_FALSE(sut.isRunning());
}

TEST_F(InProcess, ServiceIsStoppedAtTheEndOfItsScope) {
    { const InProcessService sut(m_service); }
    EXPECT_TRUE(log.has(info(anyFeature, HasSubstr("Service initialized"))));
    EXPECT_EQ(m_service.GetServiceStateRad(), 4U);
}

TEST_F(InProcess, ServiceThatCannotStartFailsTheTest) {
    log.failOnUnexpected(CapturedLog::nothing());
    mox::mock::fail("AaSysComEuUserRegister").with(0);
    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &failures);
        InProcessService sut(m_service);
        EXPECT_FALSE(sut.stop());
    }
    ASSERT_EQ(failures.size(), 1);
    EXPECT_THAT(failures.GetTestPartResult(0).message(),
                testing::AllOf(HasSubstr("service Square has ended instead of waiting for messages: state 5\nthe log:"),
                               HasSubstr("\n  error 0x")));
}

} // namespace
