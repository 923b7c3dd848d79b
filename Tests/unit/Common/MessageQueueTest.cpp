#include "mock/FunctionTable.hpp"
#include "unit/Common/ServicePlatform.hpp"

#include <mox/MessageQueue.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

namespace mox::testing {
namespace {

using ::testing::Return;
using ::testing::StrictMock;

class MessageQueue : public ::testing::Test {
protected:
    mock::Use<StrictMock<mock::AaSysComMock>> sysCom;
    TestMessage message{0x0601};
};

TEST_F(MessageQueue, PassesBothArgumentsOfAReceptionOnAndTheMessageBack) {
    EXPECT_CALL(sysCom, AaSysComMsgReceive(-1, 0)).WillOnce(Return(nullptr));
    EXPECT_EQ(hwapiMsgQueueReceive(-1, 0), nullptr);
    EXPECT_CALL(sysCom, AaSysComMsgReceive(INT32_MAX, UINT32_MAX)).WillOnce(Return(&message));
    void* received = hwapiMsgQueueReceive(INT32_MAX, UINT32_MAX);
    EXPECT_EQ(received, &message);
    EXPECT_CALL(sysCom, AaSysComMsgDestroy(&received)).WillOnce(Return(EAaSysComRetVal_NoError));
    AaSysComMsgDestroy(&received);
}

TEST_F(MessageQueue, ReceivesWithOption0WhenNoneIsGiven) {
    EXPECT_CALL(sysCom, AaSysComMsgReceive(7, 0)).WillOnce(Return(nullptr));
    EXPECT_EQ(hwapiMsgQueueReceive(7), nullptr);
}

TEST_F(MessageQueue, PassesBothArgumentsOfASelectiveReceptionOnAndTheMessageBack) {
    const std::uint16_t filter[] = {1, 0x0601};
    EXPECT_CALL(sysCom, AaSysComMsgReceiveSelective(500, filter)).WillOnce(Return(&message));
    void* received = hwapiMsgQueueReceiveSelective(500, filter);
    EXPECT_EQ(received, &message);
    EXPECT_CALL(sysCom, AaSysComMsgDestroy(&received)).WillOnce(Return(EAaSysComRetVal_NoError));
    AaSysComMsgDestroy(&received);
    EXPECT_CALL(sysCom, AaSysComMsgReceiveSelective(0, nullptr)).WillOnce(Return(nullptr));
    EXPECT_EQ(hwapiMsgQueueReceiveSelective(0, nullptr), nullptr);
}

TEST(MessageQueueOfOlderCallers, AsksNothingOfThePlatformForTheRest) {
    const std::uint64_t before = mox::mock::callCount();
    hwapiMsgQueueCreateAccessMutex();
    hwapiMsgQueueInit();
    hwapiMsgQueueDestroy();
    EXPECT_EQ(mox::mock::callCount(), before);
}

} // namespace
} // namespace mox::testing
