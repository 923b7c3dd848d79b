#include "EchoMessages.hpp"

#include <pal/AaConfig.h>
#include <pal/AaSysCom.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>
#include <testkit/ChildService.hpp>
#include <testkit/Messages.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>

using namespace mox::echo;
using namespace mox::testkit;
using testing::HasSubstr;

namespace {

constexpr unsigned stateParameter = 0x220034;
constexpr unsigned debugFlag = 0x20105;
constexpr unsigned limitMs = 10'000;
constexpr std::uint16_t far = 0x1021;

class EchoOnTwoNodes : public BoardTest {
protected:
    static std::uint32_t echoOn(std::uint16_t nodeId) { return AaSysComSicadGet(cpid, nodeId); }

    /// A forward request: the target's address, then the text.
    static Bytes forwardTo(std::uint32_t target, const std::string& text) {
        Bytes bytes(sizeof target + text.size());
        for (unsigned i = 0; i < sizeof target; ++i) {
            bytes[i] = static_cast<std::uint8_t>(target >> (8 * i));
        }
        std::copy(text.begin(), text.end(), bytes.begin() + sizeof target);
        return bytes;
    }
    static Outcome outcomeOf(const Message& answer) {
        return answer.bytes.size() < 4 ? Outcome::malformed : static_cast<Outcome>(answer.bytes[0]);
    }
    static std::string textOf(const Message& answer, std::size_t from = 0) {
        return {answer.bytes.begin() + static_cast<std::ptrdiff_t>(from), answer.bytes.end()};
    }
    static Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }
};

const BoardOf s_board("EchoOnTwoNodes", Board::named("echo-pair"));

} // namespace

TEST_F(EchoOnTwoNodes, AnswersWithTheSameBytes) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    const Message answer = script.request(echoOn(node()), echoRequest, bytesOf("hello"), echoResponse, limitMs);
    EXPECT_EQ(textOf(answer), "hello");
    EXPECT_EQ(answer.sender, echoOn(node()));
}

TEST_F(EchoOnTwoNodes, AnswersNothingWithNothingAndMuchWithMuch) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    const Bytes much(AASYSCOM_MAX_PAYLOAD, 0x5A);
    EXPECT_TRUE(script.request(echoOn(node()), echoRequest, {}, echoResponse, limitMs).bytes.empty());
    EXPECT_EQ(script.request(echoOn(node()), echoRequest, much, echoResponse, limitMs).bytes, much);
}

TEST_F(EchoOnTwoNodes, ForwardsToAnotherNodeAndAnswersWithItsAnswer) {
    ChildService echo("Echo", stateParameter);
    ChildService other = ChildService::at(far, "Echo", stateParameter);
    Messages script;
    const Message answer =
        script.request(echoOn(node()), forwardRequest, forwardTo(echoOn(far), "by way of"), forwardResponse, limitMs);
    EXPECT_EQ(outcomeOf(answer), Outcome::answered);
    EXPECT_EQ(textOf(answer, 4), "by way of");
}

TEST_F(EchoOnTwoNodes, KeepsForwardedRequestsApart) {
    ChildService echo("Echo", stateParameter);
    ChildService other = ChildService::at(far, "Echo", stateParameter);
    Messages first;
    for (const char* text : {"one", "two", "three"}) {
        first.send(echoOn(node()), forwardRequest, forwardTo(echoOn(far), text));
    }
    for (const char* text : {"one", "two", "three"}) {
        EXPECT_EQ(textOf(first.await(forwardResponse, limitMs), 4), text);
    }
}

TEST_F(EchoOnTwoNodes, AnswersThatNobodyReceivesThere) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    const Message answer =
        script.request(echoOn(node()), forwardRequest, forwardTo(echoOn(far), "x"), forwardResponse, limitMs);
    EXPECT_EQ(outcomeOf(answer), Outcome::notSent);
}

TEST_F(EchoOnTwoNodes, AnswersThatTheTimeIsUpWhenTheOtherIsSilent) {
    ChildService echo("Echo", stateParameter, {"--timeout=50"});
    Messages silent; // receives what is forwarded to it and says nothing
    Messages script;
    const Message answer =
        script.request(echoOn(node()), forwardRequest, forwardTo(silent.address(), "x"), forwardResponse, limitMs);
    EXPECT_EQ(outcomeOf(answer), Outcome::timedOut);
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("no answer within 50 ms"), limitMs));
    EXPECT_TRUE(echo.isRunning());
}

TEST_F(EchoOnTwoNodes, AnswersAfterItsTimeWithoutHarm) {
    ChildService echo("Echo", stateParameter, {"--timeout=50"});
    Messages late;
    Messages script;
    script.request(echoOn(node()), forwardRequest, forwardTo(late.address(), "x"), forwardResponse, limitMs);
    const Message asked = late.await(echoRequest, limitMs);
    late.send(asked.sender, echoResponse, asked.bytes);
    EXPECT_EQ(textOf(script.request(echoOn(node()), echoRequest, bytesOf("on"), echoResponse, limitMs)), "on");
    script.expectNone(50);
}

TEST_F(EchoOnTwoNodes, RefusesARequestWithoutAddress) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    const Message answer = script.request(echoOn(node()), forwardRequest, bytesOf("abc"), forwardResponse, limitMs);
    EXPECT_EQ(outcomeOf(answer), Outcome::malformed);
}

TEST_F(EchoOnTwoNodes, GoesOnAfterAMessageThatNobodyHandles) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    script.send(echoOn(node()), 0x9999);
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("Unknown message received: id=0x9999 receiver=0x10110600"), limitMs));
    EXPECT_EQ(textOf(script.request(echoOn(node()), echoRequest, bytesOf("on"), echoResponse, limitMs)), "on");
}

TEST_F(EchoOnTwoNodes, GoesOnAfterATimeoutOfAStranger) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    script.send(echoOn(node()), forwardTimeout);
    script.send(echoOn(node()), forwardTimeout, Bytes(3, 0x5A));
    script.send(echoOn(node()), forwardTimeout, Bytes(64, 0x5A));
    EXPECT_EQ(textOf(script.request(echoOn(node()), echoRequest, bytesOf("on"), echoResponse, limitMs)), "on");
}

TEST_F(EchoOnTwoNodes, SaysMoreWhileItsDebugFlagIsSet) {
    ChildService echo("Echo", stateParameter);
    Messages script;
    script.request(echoOn(node()), echoRequest, bytesOf("quiet"), echoResponse, limitMs);
    ASSERT_EQ(AaConfigRadSetValue(debugFlag, 1), 0);
    script.request(echoOn(node()), echoRequest, bytesOf("loud"), echoResponse, limitMs);
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("echo of 4 bytes"), limitMs));
    EXPECT_THAT(echo.output(), testing::Not(testing::Contains(HasSubstr("echo of 5 bytes"))));
}

TEST_F(EchoOnTwoNodes, StartsAgainAfterItWasKilled) {
    ChildService first("Echo", stateParameter);
    first.signal(SIGKILL);
    EXPECT_EQ(first.awaitEnd(), 128 + SIGKILL);
    ChildService second("Echo", stateParameter);
    Messages script;
    EXPECT_EQ(textOf(script.request(echoOn(node()), echoRequest, bytesOf("back"), echoResponse, limitMs)), "back");
}

TEST_F(EchoOnTwoNodes, FailsWhileAnotherHasItsAddress) {
    ChildService first("Echo", stateParameter);
    ChildService second(ChildRequest{"Echo", 0, {}, 0});
    EXPECT_EQ(second.awaitEnd(), 1);
    EXPECT_TRUE(second.awaitOutput(HasSubstr("Initialization failed : Failed to register static CPID"), limitMs));
    EXPECT_TRUE(second.awaitOutput(HasSubstr("Echo main EU died unexpectedly"), limitMs));
    EXPECT_TRUE(first.isRunning());
}

TEST_F(EchoOnTwoNodes, RefusesATimeLimitThatIsNone) {
    ChildService echo(ChildRequest{"Echo", 0, {"--timeout=soon"}, 0});
    EXPECT_EQ(echo.awaitEnd(), 1);
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("--timeout=soon: expected milliseconds from 1 to 3600000"), limitMs));
}

TEST_F(EchoOnTwoNodes, PrintsItsUsageWithoutStarting) {
    ChildService echo(ChildRequest{"Echo", 0, {"--help"}, 0});
    EXPECT_EQ(echo.awaitEnd(), 0);
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("MOXEchoExe [options]"), limitMs));
    EXPECT_TRUE(echo.awaitOutput(HasSubstr("--timeout=MS"), limitMs));
    EXPECT_THAT(echo.output(), testing::Not(testing::Contains(HasSubstr("EE Start"))));
}
