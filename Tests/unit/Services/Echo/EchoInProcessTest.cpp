#include "EchoMessages.hpp"
#include "EchoService.hpp"
#include "mock/AaSysTimerMock.hpp"
#include "mock/Faults.hpp"
#include "mock/Use.hpp"

#include <pal/AaSysCom.h>
#include <testkit/BoardTest.hpp>
#include <testkit/InProcessService.hpp>
#include <testkit/Messages.hpp>

#include <gmock/gmock.h>

using namespace mox::echo;
using namespace mox::testkit;
using testing::_;

namespace {

constexpr unsigned limitMs = 10'000;

/// The service in the test's process, whose platform calls can be looked at; the asked service is an endpoint of the
/// test, which answers when the test says so.
class EchoInProcess : public BoardTest {
protected:
    EchoInProcess() {
        ON_CALL(timers, AaSysTimermCreate(_, _, _, _))
            .WillByDefault([this](std::uint32_t* timerId, std::uint32_t timeoutMs, std::uint32_t periodMs, void* msg) {
                const auto* const first = static_cast<const std::uint8_t*>(AaSysComMsgGetPayload(msg));
                timeout.assign(first, first + AaSysComMsgGetPayloadSize(msg));
                return mox::mock::real::AaSysTimermCreate(timerId, timeoutMs, periodMs, msg);
            });
    }

    /// Has the service ask the other one.
    /// @return what it asked
    Message forward(const Messages& client, Messages& other) const {
        client.send(echo.address(), forwardRequest, payload(other.address()));
        return other.await(echoRequest, limitMs);
    }

    Bytes timeout; ///< payload of the newest time-out message
    mox::mock::Use<mox::mock::AaSysTimerMock> timers;
    EchoService service;
    InProcessService echo{service, {"--timeout=3600000"}};
};

std::uint32_t outcomeOf(const Message& answer) {
    return answer.as<std::uint32_t>();
}

} // namespace

TEST_F(EchoInProcess, EndsARequestWhoseTimeIsUp) {
    Messages client;
    Messages other;
    forward(client, other);
    log.expect(warning(anyFeature, testing::HasSubstr("no answer within 3600000 ms")));
    client.send(echo.address(), forwardTimeout, timeout);
    EXPECT_EQ(outcomeOf(client.await(forwardResponse, limitMs)), std::uint32_t(Outcome::timedOut));
}

TEST_F(EchoInProcess, LetsARequestLiveThatHasTheAddressOfACompletedOne) {
    Messages client;
    Messages other;
    const Message asked = forward(client, other);
    ASSERT_EQ(timeout.size(), sizeof(void*) + sizeof(std::uint32_t));
    ++timeout.back(); // the ticket of another request
    client.send(echo.address(), forwardTimeout, timeout);
    other.send(asked.sender, echoResponse, asked.bytes);
    EXPECT_EQ(outcomeOf(client.await(forwardResponse, limitMs)), std::uint32_t(Outcome::answered));
}

TEST_F(EchoInProcess, GivesEachRequestItsOwnAnswer) {
    Messages first;
    Messages second;
    Messages other;
    const Message askedFirst = forward(first, other);
    const Message askedSecond = forward(second, other);
    other.send(askedFirst.sender, echoResponse, Bytes(3, 0)); // too short for a ticket
    other.send(askedSecond.sender, echoResponse, askedSecond.bytes);
    EXPECT_EQ(outcomeOf(second.await(forwardResponse, limitMs)), std::uint32_t(Outcome::answered));
    other.send(askedFirst.sender, echoResponse, askedFirst.bytes);
    EXPECT_EQ(outcomeOf(first.await(forwardResponse, limitMs)), std::uint32_t(Outcome::answered));
}

TEST_F(EchoInProcess, AnswersAtOnceWhenThereIsNoTimer) {
    mox::mock::fail("AaSysTimermCreate").with(EAaSysTimerRetVal_OutOfResources);
    Messages client;
    Messages other;
    client.send(echo.address(), forwardRequest, payload(other.address()));
    EXPECT_EQ(outcomeOf(client.await(forwardResponse, limitMs)), std::uint32_t(Outcome::notSent));
    other.expectNone(0);
}

TEST_F(EchoInProcess, AnswersAtOnceWhenThereIsNoMessageForTheTimer) {
    mox::mock::fail("AaSysComMsgCreate").onCall(2).with(nullptr); // the first is the client's
    Messages client;
    Messages other;
    client.send(echo.address(), forwardRequest, payload(other.address()));
    EXPECT_EQ(outcomeOf(client.await(forwardResponse, limitMs)), std::uint32_t(Outcome::notSent));
    other.expectNone(0);
}

TEST_F(EchoInProcess, EndsTheTimersOfWaitingRequestsWhileThePlatformStillRuns) {
    int result = -1;
    EXPECT_CALL(timers, AaSysTimerDelete(_)).WillOnce([&result](std::uint32_t timerId) {
        return result = mox::mock::real::AaSysTimerDelete(timerId);
    });
    {
        const Messages client;
        Messages other;
        forward(client, other);
    }
    EXPECT_TRUE(echo.stop());
    EXPECT_EQ(result, 0);
}
