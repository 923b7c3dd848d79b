#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>
#include <testkit/ChildService.hpp>
#include <testkit/Messages.hpp>

#include <csignal>

namespace {

using namespace mox::testkit;
using testing::HasSubstr;

constexpr unsigned int echoState = 0x220034;
constexpr std::uint16_t echoRequest = 0x0601;
constexpr std::uint16_t echoResponse = 0x0602;

class EchoOnAPair : public BoardTest {};
const BoardOf s_pair("EchoOnAPair", Board::named("echo-pair"));

TEST_F(EchoOnAPair, AnswersOnTheTestsOwnNode) {
    ChildService sut("Echo", echoState);
    Messages script;
    EXPECT_EQ(script.request(0x10110600, echoRequest, {4, 2}, echoResponse).bytes, (Bytes{4, 2}));
    EXPECT_TRUE(sut.awaitState(2));
    EXPECT_TRUE(sut.isRunning());
}

TEST_F(EchoOnAPair, AnswersFromTheOtherNode) {
    const ChildService sut = ChildService::at(0x1021, "Echo", echoState);
    EXPECT_EQ(sut.radValue(echoState), 2U);
    Messages script;
    const Message answer = script.request(0x10210600, echoRequest, {7}, echoResponse);
    EXPECT_EQ(answer.sender, 0x10210600U);
    EXPECT_EQ(answer.bytes, (Bytes{7}));
}

TEST_F(EchoOnAPair, ShowsWhatItPrintsAndHowItEnds) {
    ChildService sut("Echo", echoState);
    EXPECT_TRUE(sut.awaitOutput(HasSubstr("Service initialized")));
    EXPECT_FALSE(sut.awaitOutput(HasSubstr("never printed"), 1));
    EXPECT_EQ(sut.stop(), 128 + SIGTERM);
    EXPECT_FALSE(sut.isRunning());
    EXPECT_THAT(sut.awaitState(7, 60'000).message(), HasSubstr("Echo has ended with status 143 in state"));
}

TEST_F(EchoOnAPair, PassesArgumentsAndTheExitStatusOn) {
    ChildService sut("Echo", 0, {"--help"});
    EXPECT_EQ(sut.awaitEnd(), 0);
    EXPECT_TRUE(sut.awaitOutput(HasSubstr("Usage:")));
}

} // namespace
