#include "mock/AaMemMock.hpp"
#include "mock/AaProMock.hpp"
#include "mock/AaSemMock.hpp"
#include "mock/AaSysComMock.hpp"
#include "mock/DdalRioMock.hpp"
#include "mock/DdalSysinfoMock.hpp"
#include "mock/Ledger.hpp"

#include <gtest/gtest-spi.h>

namespace {

using namespace mox::mock;
using testing::_;
using testing::DoAll;
using testing::Return;
using testing::SaveArg;
using testing::SetArgPointee;
using testing::StrictMock;

TEST(FamilyMock, AnswersWhatATestExpects) {
    Use<DdalSysinfoMock> sysinfo;
    EXPECT_CALL(sysinfo, ddal_sysinfo_get_uint(1, 2, 0, nullptr, _)).WillOnce(DoAll(SetArgPointee<4>(9U), Return(0)));
    std::uint64_t value = 0;
    EXPECT_EQ(ddal_sysinfo_get_uint(1, 2, 0, nullptr, &value), 0);
    EXPECT_EQ(value, 9U);
}

TEST(FamilyMock, LeavesCallsWithoutExpectationToThePlatform) {
    Use<AaSemMock> sem;
    EXPECT_CALL(sem, AaSemPost(_)).WillOnce(Return(EAaSemRetVal_OutOfResources));
    TAaSem handle = nullptr;
    ASSERT_EQ(AaSemCreateC(&handle, 3), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemPost(handle), EAaSemRetVal_OutOfResources);
    int32_t value = 0;
    EXPECT_EQ(AaSemGetValue(handle, &value), EAaSemRetVal_NoError);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(AaSemDestroy(handle), EAaSemRetVal_NoError);
}

TEST(FamilyMock, CarriesACallOutFromAnAction) {
    Use<AaSemMock> sem;
    EXPECT_CALL(sem, AaSemCreateC(_, 1)).WillOnce([](TAaSem* out, uint32_t count) {
        return real::AaSemCreateC(out, count + 1);
    });
    TAaSem handle = nullptr;
    ASSERT_EQ(AaSemCreateC(&handle, 1), EAaSemRetVal_NoError);
    int32_t value = 0;
    EXPECT_EQ(AaSemGetValue(handle, &value), EAaSemRetVal_NoError);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(AaSemDestroy(handle), EAaSemRetVal_NoError);
}

TEST(FamilyMock, IsOutOfTheWayWhenItsScopeEnds) {
    {
        Use<AaSemMock> sem;
        EXPECT_CALL(sem, AaSemPost(_)).WillOnce(Return(EAaSemRetVal_NoError));
        EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_NoError);
    }
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_InvalidValue);
}

TEST(FamilyMock, MayBeStrict) {
    const auto callUnexpected = [] {
        Use<StrictMock<AaSemMock>> sem;
        AaSemPost(nullptr);
    };
    EXPECT_NONFATAL_FAILURE(callUnexpected(), "Uninteresting mock function call");
}

TEST(FamilyMock, GoesTogetherWithOtherFamilies) {
    Use<AaMemMock> mem;
    Use<AaProMock> pro;
    EXPECT_CALL(mem, AaMemMalloc(64)).WillOnce(Return(nullptr));
    EXPECT_CALL(pro, AaProEuCurrent()).WillOnce(Return(77U));
    EXPECT_EQ(AaMemMalloc(64), nullptr);
    EXPECT_EQ(AaProEuCurrent(), 77U);
}

TEST(MessageWhoseSendIsMocked, StaysReadableUntilTheTestEnds) {
    Use<AaSysComMock> sysCom;
    void* sent = nullptr;
    EXPECT_CALL(sysCom, AaSysComMsgSend(_)).WillOnce(DoAll(SaveArg<0>(&sent), Return(EAaSysComRetVal_NoError)));
    EXPECT_EQ(AaSysComMsgSend(AaSysComMsgCreate(0x0101, 4, 0x12340005)), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
    EXPECT_EQ(AaSysComMsgGetId(sent), 0x0101);
    EXPECT_EQ(AaSysComMsgGetReceiver(sent), 0x12340005U);
}

TEST(MessageMadeByAMock, CountsAsOpenUntilItIsDestroyed) {
    Use<AaSysComMock> sysCom;
    int standIn = 0;
    EXPECT_CALL(sysCom, AaSysComMsgReceive(-1, 0)).WillOnce(Return(&standIn));
    EXPECT_CALL(sysCom, AaSysComMsgDestroy(_)).WillOnce(Return(EAaSysComRetVal_NoError));
    void* msg = AaSysComMsgReceive(-1, 0);
    EXPECT_EQ(ledger().count(Kind::message), 1U);
    AaSysComMsgDestroy(&msg);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
}

TEST(SrioHandleInTheLedger, IsOpenUntilItIsClosed) {
    Use<DdalRioMock> rio;
    constexpr int first = 0;
    EXPECT_CALL(rio, ddal_rio_copy_open_fd(0, 0x1031, DDAL_RIO_COPY_READ, _))
        .WillOnce(DoAll(SetArgPointee<3>(first), Return(DDAL_OK)));
    EXPECT_CALL(rio, ddal_rio_copy_close_fd(first)).WillOnce(Return(DDAL_OK));
    int fd = -1;
    EXPECT_EQ(ddal_rio_copy_open_fd(0, 0x1031, DDAL_RIO_COPY_READ, &fd), DDAL_OK);
    EXPECT_EQ(ledger().count(Kind::srioHandle), 1U);
    EXPECT_EQ(ddal_rio_copy_close_fd(fd), DDAL_OK);
    EXPECT_EQ(ledger().count(Kind::srioHandle), 0U);
}

TEST(SecondMockOfAFamily, EndsTheProcess) {
    EXPECT_DEATH(
        {
            Use<AaSemMock> first;
            Use<AaSemMock> second;
        },
        "one at a time");
}

} // namespace
