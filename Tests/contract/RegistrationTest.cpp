#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <set>
#include <thread>
#include <vector>

using mox::testing::create;
using mox::testing::Eu;
using mox::testing::Message;
using mox::testing::receive;
using mox::testing::Registration;

namespace {

constexpr std::uint16_t fixedCpid = 0x0612;

EAaSysComRetVal sendTo(std::uint32_t receiver, int id = 1) {
    return AaSysComMsgSend(AaSysComMsgCreate(static_cast<std::uint16_t>(id), 0, receiver));
}

} // namespace

TEST(Registering, AnswersTheStaticCpidThatWasAskedFor) {
    for (const std::uint16_t cpid : {std::uint16_t{1}, fixedCpid, std::uint16_t{0x7FFF}}) {
        const Registration sut(cpid);
        EXPECT_EQ(sut.cpid(), cpid);
    }
}

TEST(Registering, AnswersDistinctDynamicCpids) {
    std::set<std::uint16_t> given;
    for (int i = 0; i < 100; ++i) {
        const std::uint16_t cpid = AaSysComUserRegister(0);
        EXPECT_GE(cpid, AASYSCOM_FIRST_DYNAMIC_CPID);
        EXPECT_TRUE(given.insert(cpid).second) << cpid;
    }
    for (const std::uint16_t cpid : given)
        EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NoError);
}

TEST(Registering, AnswersAnotherValueForAStaticCpidThatAnotherEuHas) {
    const Registration mine(fixedCpid);
    ASSERT_EQ(mine.cpid(), fixedCpid);
    Eu([] {
        EXPECT_EQ(AaSysComEuUserRegister(fixedCpid), 0);
        EXPECT_EQ(AaSysComUserRegister(fixedCpid), 0);
    }).join();
    EXPECT_EQ(sendTo(mine.address()), EAaSysComRetVal_NoError);
    EXPECT_TRUE(receive(1000000)) << "the first owner keeps it";
}

TEST(Registering, BringsFurtherCpidsToTheSameQueue) {
    const Registration first(fixedCpid);
    const std::uint16_t second = AaSysComUserRegister(fixedCpid + 1);
    ASSERT_EQ(second, fixedCpid + 1);
    const std::uint32_t secondAddress = AaSysComSicadGet(second, AaSysComGetOwnNid());
    EXPECT_EQ(sendTo(secondAddress, 1), EAaSysComRetVal_NoError);
    EXPECT_EQ(sendTo(first.address(), 2), EAaSysComRetVal_NoError);
    EXPECT_EQ(sendTo(secondAddress, 3), EAaSysComRetVal_NoError);
    for (const int id : {1, 2, 3})
        EXPECT_EQ(receive(1000000).id(), id);
    EXPECT_EQ(AaSysComUserDeregister(second), EAaSysComRetVal_NoError);
    EXPECT_NE(sendTo(secondAddress), EAaSysComRetVal_NoError);
    EXPECT_EQ(sendTo(first.address(), 4), EAaSysComRetVal_NoError);
    EXPECT_EQ(receive(1000000).id(), 4);
}

TEST(Deregistering, IsDoneOnce) {
    const std::uint16_t cpid = AaSysComEuUserRegister(fixedCpid);
    EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NotFound);
    EXPECT_EQ(AaSysComUserDeregister(0), EAaSysComRetVal_NotFound);
    EXPECT_EQ(AaSysComUserDeregister(0xFFFF), EAaSysComRetVal_NotFound);
}

TEST(Deregistering, IsPossibleOnAnyThread) {
    const std::uint16_t cpid = AaSysComEuUserRegister(fixedCpid);
    std::thread([cpid] { EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NoError); }).join();
    EXPECT_NE(sendTo(AaSysComSicadGet(cpid, AaSysComGetOwnNid())), EAaSysComRetVal_NoError);
}

TEST(Deregistering, LeavesWhatIsQueuedToBeReceived) {
    Registration sut(fixedCpid);
    for (const int id : {1, 2, 3})
        ASSERT_EQ(sendTo(sut.address(), id), EAaSysComRetVal_NoError);
    sut.deregister();
    for (const int id : {1, 2, 3})
        EXPECT_EQ(receive(0).id(), id);
    EXPECT_FALSE(receive(0));
}

TEST(Deregistering, EndsWaiting) {
    Registration sut(fixedCpid);
    ASSERT_EQ(sendTo(sut.address(), 1), EAaSysComRetVal_NoError);
    sut.deregister();
    EXPECT_EQ(receive(-1).id(), 1);
    EXPECT_FALSE(receive(-1)) << "nothing can come any more";
}

TEST(Registering, InVainLeavesTheEuWithoutQueue) {
    const Registration mine(fixedCpid);
    Eu([] {
        EXPECT_EQ(AaSysComEuUserRegister(fixedCpid), 0);
        EXPECT_FALSE(receive(-1));
    }).join();
}

TEST(Deregistering, TellsSendersThatNobodyIsThere) {
    Registration sut(fixedCpid);
    const std::uint32_t address = sut.address();
    EXPECT_EQ(sendTo(address), EAaSysComRetVal_NoError);
    sut.deregister();
    EXPECT_EQ(sendTo(address), EAaSysComRetVal_NoReceiver);
    const Registration again(fixedCpid);
    EXPECT_EQ(again.cpid(), fixedCpid);
    EXPECT_EQ(sendTo(address, 9), EAaSysComRetVal_NoError);
}

TEST(Deregistering, LetsTheNextOwnerGetWhatComesAfterwards) {
    Registration sut(fixedCpid);
    const std::uint32_t address = sut.address();
    ASSERT_EQ(sendTo(address, 1), EAaSysComRetVal_NoError);
    sut.deregister();
    Eu([address] {
        const Registration mine(fixedCpid);
        EXPECT_EQ(mine.cpid(), fixedCpid);
        EXPECT_EQ(sendTo(address, 2), EAaSysComRetVal_NoError);
        EXPECT_EQ(receive(1000000).id(), 2);
        EXPECT_FALSE(receive(0));
    }).join();
    EXPECT_EQ(receive(0).id(), 1);
}

TEST(EuThatEnds, LosesItsRegistrations) {
    std::uint16_t first = 0;
    std::uint16_t second = 0;
    Eu([&] {
        first = AaSysComEuUserRegister(0);
        second = AaSysComUserRegister(0);
        sendTo(AaSysComSicadGet(first, AaSysComGetOwnNid()));
    }).join();
    for (const std::uint16_t cpid : {first, second}) {
        const std::uint32_t address = AaSysComSicadGet(cpid, AaSysComGetOwnNid());
        EXPECT_TRUE(mox::testing::eventually([=] { return sendTo(address) == EAaSysComRetVal_NoReceiver; }));
        EXPECT_EQ(AaSysComUserDeregister(cpid), EAaSysComRetVal_NotFound);
    }
}

TEST(Registrations, LeakNoDescriptors) {
    const auto cycle = [] {
        const Registration sut;
        EXPECT_EQ(sendTo(sut.address()), EAaSysComRetVal_NoError);
    };
    cycle();
    const std::size_t before = mox::testing::openDescriptors();
    for (int i = 0; i < 1000; ++i)
        cycle();
    EXPECT_TRUE(mox::testing::eventually([=] { return mox::testing::openDescriptors() <= before; }));
}

TEST(Registrations, OfManyEusAreIndependent) {
    std::vector<std::unique_ptr<Eu>> eus;
    for (std::uint16_t i = 0; i < 20; ++i)
        eus.push_back(std::make_unique<Eu>([i] {
            for (int round = 0; round < 50; ++round) {
                const Registration sut(static_cast<std::uint16_t>(0x0700 + i));
                ASSERT_EQ(sut.cpid(), 0x0700 + i);
                ASSERT_EQ(sendTo(sut.address(), i), EAaSysComRetVal_NoError);
                ASSERT_EQ(receive(1000000).id(), i);
            }
        }));
}
