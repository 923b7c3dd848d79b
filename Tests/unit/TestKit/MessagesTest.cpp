#include <testkit/BoardTest.hpp>
#include <testkit/Messages.hpp>

#include <gtest/gtest-spi.h>

#include <sstream>

namespace {

using namespace mox::testkit;

struct Record {
    std::uint32_t number;
    std::uint8_t letter[4];
};

class MessagesOnABoard : public BoardTest {
protected:
    Messages sut;
};

TEST_F(MessagesOnABoard, BringBackWhatWasSent) {
    sut.send(sut.address(), 0x0601, payload(Record{7, {'a', 'b', 'c', 'd'}}));
    const Message message = sut.await(0x0601);
    ASSERT_TRUE(message);
    EXPECT_EQ(message.sender, sut.address());
    EXPECT_EQ(message.receiver, sut.address());
    EXPECT_EQ(message.as<Record>().number, 7U);
    EXPECT_EQ(message.as<Record>().letter[3], 'd');
}

TEST_F(MessagesOnABoard, KeepWhatCameBeforeItIsAwaited) {
    sut.send(sut.address(), 0x0601);
    sut.send(sut.address(), 0x0602);
    EXPECT_TRUE(sut.await(0x0602));
    EXPECT_TRUE(sut.await(0x0601));
}

TEST_F(MessagesOnABoard, AnswerRequests) {
    EXPECT_EQ(sut.request(sut.address(), 0x0603, {9}, 0x0603).bytes, (Bytes{9}));
}

TEST_F(MessagesOnABoard, NoticeWhatShouldNotHaveCome) {
    sut.expectNone(1);
    sut.send(sut.address(), 0x0601);
    EXPECT_NONFATAL_FAILURE(sut.expectNone(1000), "no message was expected; came:\n  message 0x0601 from 0x1011");
}

TEST_F(MessagesOnABoard, HaveAnEndpointThatOnlyOneCanHave) {
    const Messages first(0x0610);
    EXPECT_EQ(first.address(), 0x10110610U);
    Message wrong;
    wrong.bytes = {1, 2};
    EXPECT_NONFATAL_FAILURE(wrong.as<Record>(), "a payload of 2 bytes is no record of 8");
}

TEST(MessageText, ShowsIdSenderAndTheFirstBytes) {
    std::ostringstream text;
    text << Message{true, 0x601, 0x10110600, 0, {1, 2, 0xAB}};
    EXPECT_EQ(text.str(), "message 0x0601 from 0x10110600, 3 bytes: 01 02 AB");
    text.str("");
    text << Message{};
    EXPECT_EQ(text.str(), "no message");
}

} // namespace
