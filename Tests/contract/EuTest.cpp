#include "EuFixture.hpp"

#include <pal/AaPro.h>
#include <pal/AaSysCom.h>

#include <gmock/gmock.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <cstring>
#include <limits>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

using mox::testing::Eu;
using mox::testing::eventually;

namespace {

constexpr std::uint32_t usualStack = 65536;
constexpr std::uint32_t usualPriority = 10;

void* doNothing(void*) {
    return nullptr;
}

EAaProEuRetVal createAndWait(TAaProEuEntry entry, const void* argument, std::uint32_t size,
                             std::uint32_t* id = nullptr) {
    return AaProEuCreateAndStartJoinable(id, "waited", entry, usualStack, usualPriority, argument, size, 1);
}

EAaProEuRetVal createWithPolicy(EAaProEuSchedulingPolicy policy, TAaProEuEntry entry, const void* argument,
                                std::uint32_t size) {
    return AaSysComEuCreateAndStartWithPolicy(nullptr, "policy", entry, usualStack, policy, usualPriority, 0, argument,
                                              size, 1);
}

} // namespace

TEST(EuCreation, RefusesWhatIsNoNameEntryStackOrPriority) {
    const std::string longest(63, 'n');
    const std::string tooLong(64, 'n');
    const auto with = [](const char* name, TAaProEuEntry entry, std::uint32_t priority) {
        std::uint32_t id = 4711;
        const auto joinable = AaProEuCreateAndStartJoinable(&id, name, entry, usualStack, priority, nullptr, 0, 1);
        const auto plain = AaSysComEuCreateAndStartWithPolicy(
            &id, name, entry, usualStack, EAaProEuSchedulingPolicy_Other, priority, 0, nullptr, 0, 1);
        EXPECT_EQ(joinable, plain);
        EXPECT_EQ(id == 4711, joinable != EAaProEuRetVal_NoError) << "unchanged unless the result is 0";
        return joinable;
    };
    EXPECT_EQ(with("n", doNothing, 1), EAaProEuRetVal_NoError);
    EXPECT_EQ(with(longest.c_str(), doNothing, 99), EAaProEuRetVal_NoError);
    EXPECT_EQ(with(tooLong.c_str(), doNothing, 1), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(with("", doNothing, 1), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(with(nullptr, doNothing, 1), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(with("n", nullptr, 1), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(with("n", doNothing, 0), EAaProEuRetVal_NoError) << "as 1";
    EXPECT_EQ(with("n", doNothing, 100), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(with("n", doNothing, UINT32_MAX), EAaProEuRetVal_InvalidValue);
}

TEST(EuCreation, RefusesBadArgumentBlocks) {
    const std::vector<char> block(4097, 'x');
    EXPECT_EQ(createAndWait(doNothing, nullptr, 0), EAaProEuRetVal_NoError);
    EXPECT_EQ(createAndWait(doNothing, block.data(), 4096), EAaProEuRetVal_NoError);
    EXPECT_EQ(createAndWait(doNothing, block.data(), 4097), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(createAndWait(doNothing, nullptr, 1), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(createAndWait(doNothing, block.data(), 0), EAaProEuRetVal_NoError);
}

TEST(EuCreation, WithoutWaitRefusesBadArgumentsToo) {
    std::uint32_t id = 4711;
    EXPECT_EQ(AaSysComEuCreateAndStart(&id, "n", doNothing, usualStack, 100, nullptr, 0), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaSysComEuCreateAndStart(&id, nullptr, doNothing, usualStack, 1, nullptr, 0),
              EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaSysComEuCreateAndStart(&id, "n", nullptr, usualStack, 1, nullptr, 0), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(id, 4711U);
}

TEST(EuCreation, RaisesStacksThatAreTooSmall) {
    const TAaProEuEntry entry = [](void*) -> void* {
        std::array<volatile char, 16384> used{};
        used.back() = 1;
        return nullptr;
    };
    for (const std::uint32_t size : {0U, 1U, 16384U, 100001U})
        EXPECT_EQ(AaProEuCreateAndStartJoinable(nullptr, "small", entry, size, 1, nullptr, 0, 1),
                  EAaProEuRetVal_NoError)
            << size;
}

TEST(EuCreation, AnswersWhenTheStackCannotBeHad) {
    const auto result = AaProEuCreateAndStartJoinable(nullptr, "huge", doNothing, UINT32_MAX, 1, nullptr, 0, 1);
    EXPECT_THAT(result, testing::AnyOf(EAaProEuRetVal_NoError, EAaProEuRetVal_Error, EAaProEuRetVal_OutOfResources));
}

TEST(EuCreation, TakesEveryPolicy) {
    for (const int policy : {0, 1, 2, 3})
        EXPECT_EQ(createWithPolicy(static_cast<EAaProEuSchedulingPolicy>(policy), doNothing, nullptr, 0),
                  EAaProEuRetVal_NoError)
            << policy;
}

#ifndef __SANITIZE_ADDRESS__ // the checks that go with it stop at the number, wherever it is handed on
// A caller may be C code or may compute the number.
TEST(EuCreation, RefusesAPolicyThatIsNone) {
    int beyond = 0;
    for (const int policy : {4, 77}) {
        EAaProEuSchedulingPolicy value = EAaProEuSchedulingPolicy_Default;
        static_assert(sizeof(value) == sizeof(policy), "an enumeration is an int");
        std::memcpy(&value, &policy, sizeof(value));
        beyond += createWithPolicy(value, doNothing, nullptr, 0) == EAaProEuRetVal_InvalidValue ? 1 : 0;
    }
    EXPECT_EQ(beyond, 2);
}
#endif

TEST(EuCreation, CopiesTheArgumentBlock) {
    struct Block {
        std::atomic<bool>* go;
        std::atomic<int>* seen;
        std::array<int, 100> numbers;
    };
    std::atomic<bool> go{false};
    std::atomic<int> seen{0};
    Block block{&go, &seen, {}};
    block.numbers.fill(7);
    const TAaProEuEntry entry = [](void* argument) -> void* {
        const auto& mine = *static_cast<Block*>(argument);
        while (!*mine.go)
            std::this_thread::yield();
        int sum = 0;
        for (const int number : mine.numbers)
            sum += number;
        *mine.seen = sum;
        return nullptr;
    };
    ASSERT_EQ(AaSysComEuCreateAndStart(nullptr, "copies", entry, usualStack, 1, &block, sizeof(block)),
              EAaProEuRetVal_NoError);
    block.numbers.fill(-1);
    go = true;
    EXPECT_TRUE(eventually([&] { return seen == 700; }));
}

TEST(EuCreation, StoresTheIdBeforeTheEuRuns) {
    const TAaProEuEntry entry = [](void* argument) -> void* {
        struct Block {
            std::uint32_t* variable;
            std::atomic<std::uint32_t>* seen;
            std::atomic<std::uint32_t>* self;
        };
        const auto& mine = *static_cast<Block*>(argument);
        *mine.self = AaProEuCurrent();
        *mine.seen = *mine.variable;
        return nullptr;
    };
    for (int i = 0; i < 300; ++i) {
        std::uint32_t id = 0;
        std::atomic<std::uint32_t> seen{0};
        std::atomic<std::uint32_t> self{0};
        const struct {
            std::uint32_t* variable;
            std::atomic<std::uint32_t>* seen;
            std::atomic<std::uint32_t>* self;
        } block{&id, &seen, &self};
        ASSERT_EQ(i % 2 == 0 ? createAndWait(entry, &block, sizeof(block), &id)
                             : AaSysComEuCreateAndStart(&id, "id", entry, usualStack, 1, &block, sizeof(block)),
                  EAaProEuRetVal_NoError);
        ASSERT_TRUE(eventually([&] { return seen != 0; }));
        ASSERT_EQ(seen, self);
        ASSERT_EQ(id, self);
    }
}

TEST(EuCreation, ReturnsAfterTheFunctionWhenAskedToWait) {
    const TAaProEuEntry entry = [](void* argument) -> void* {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        **static_cast<std::atomic<bool>**>(argument) = true;
        return nullptr;
    };
    std::atomic<bool> returned{false};
    auto* variable = &returned;
    EXPECT_EQ(createAndWait(entry, &variable, sizeof(variable)), EAaProEuRetVal_NoError);
    EXPECT_TRUE(returned);
    returned = false;
    EXPECT_EQ(createWithPolicy(EAaProEuSchedulingPolicy_Other, entry, &variable, sizeof(variable)),
              EAaProEuRetVal_NoError);
    EXPECT_TRUE(returned);
}

TEST(EuCreation, ReturnsAtOnceWhenNotAskedToWait) {
    const TAaProEuEntry entry = [](void* argument) -> void* {
        auto* const states = *static_cast<std::array<std::atomic<bool>, 2>**>(argument);
        while (!(*states)[0])
            std::this_thread::yield();
        (*states)[1] = true;
        return nullptr;
    };
    std::array<std::atomic<bool>, 2> states{};
    auto* variable = &states;
    ASSERT_EQ(AaProEuCreateAndStartJoinable(nullptr, "free", entry, usualStack, 1, &variable, sizeof(variable), 0),
              EAaProEuRetVal_NoError);
    states[0] = true;
    EXPECT_TRUE(eventually([&] { return states[1].load(); }));
}

TEST(EuName, IsShownByTheOperatingSystemUpTo15Characters) {
    std::array<char, 16> shown{};
    Eu([&] { pthread_getname_np(pthread_self(), shown.data(), shown.size()); }, "abcdefghijklmnopqrstuvwxyz").join();
    EXPECT_STREQ(shown.data(), "abcdefghijklmno");
}

TEST(EuId, IsSteadyAndDistinctAndNeverReserved) {
    std::mutex mutex;
    std::multiset<std::uint32_t> ids;
    const auto note = [&] {
        const std::uint32_t id = AaProEuCurrent();
        EXPECT_EQ(AaProEuCurrent(), id);
        EXPECT_NE(id, 0U);
        EXPECT_NE(id, UINT32_MAX);
        const std::lock_guard<std::mutex> lock(mutex);
        ids.insert(id);
    };
    note();
    std::thread foreign(note);
    std::thread foreignToo(note);
    foreign.join();
    foreignToo.join();
    Eu first(note);
    Eu second(note);
    first.join();
    second.join();
    EXPECT_EQ(ids.size(), 5U);
    EXPECT_EQ(std::set<std::uint32_t>(ids.begin(), ids.end()).size(), 5U);
}

TEST(Eus, RunTwoHundredAtOnce) {
    std::atomic<int> running{0};
    std::atomic<bool> end{false};
    std::set<std::uint32_t> ids;
    std::vector<std::unique_ptr<Eu>> eus;
    for (int i = 0; i < 200; ++i) {
        eus.push_back(std::make_unique<Eu>([&] {
            const mox::testing::Registration mine;
            EXPECT_NE(mine.cpid(), 0);
            ++running;
            while (!end)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }));
        ASSERT_EQ(eus.back()->result(), EAaProEuRetVal_NoError);
        ids.insert(eus.back()->id());
    }
    EXPECT_TRUE(eventually([&] { return running == 200; }));
    EXPECT_EQ(ids.size(), 200U);
    end = true;
}

TEST(Eus, LeaveNothingBehindWhenThousandsHaveEnded) {
    const auto createMany = [](int count) {
        const TAaProEuEntry entry = [](void*) -> void* {
            AaSysComEuUserRegister(0);
            return nullptr;
        };
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(createAndWait(entry, nullptr, 0), EAaProEuRetVal_NoError);
    };
    createMany(200); // the platform keeps some queues
    const std::size_t before = mox::testing::openDescriptors();
    createMany(2000);
    EXPECT_TRUE(eventually([=] { return mox::testing::openDescriptors() <= before; }));
}

/// An EU that registers itself, waits for one message without limit and returns.
class WaitingEu {
public:
    /// @param keepCancellationOut  until it returns
    explicit WaitingEu(bool keepCancellationOut) : m_keepCancellationOut(keepCancellationOut) {
        WaitingEu* const self = this;
        EXPECT_EQ(AaSysComEuCreateAndStart(nullptr, "waiting", run, usualStack, 1, &self, sizeof(self)),
                  EAaProEuRetVal_NoError);
        EXPECT_TRUE(eventually([this] { return m_address != 0; }));
    }

    int cancel() const { return pthread_cancel(m_thread); }
    EAaSysComRetVal send() const { return AaSysComMsgSend(AaSysComMsgCreate(1, 0, m_address)); }

private:
    static void* run(void* argument) {
        WaitingEu& self = **static_cast<WaitingEu**>(argument);
        if (self.m_keepCancellationOut)
            pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
        self.m_thread = pthread_self();
        self.m_address = AaSysComSicadGet(AaSysComEuUserRegister(0), AaSysComGetOwnNid());
        void* message = AaSysComMsgReceive(-1, 0); // may be a cancellation point
        AaSysComMsgDestroy(&message);
        pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr);
        return nullptr;
    }

    const bool m_keepCancellationOut;
    std::atomic<std::uint32_t> m_address{0};
    std::atomic<pthread_t> m_thread{};
};

TEST(CancelledEu, LosesItsRegistrationsAsOneThatReturns) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the race detector loses track of locks when a thread is cancelled in a system call";
#endif
    const WaitingEu sut(false);
    EXPECT_EQ(sut.cancel(), 0);
    // Where the wait is no cancellation point, the first message ends the EU.
    EXPECT_TRUE(eventually([&] { return sut.send() == EAaSysComRetVal_NoReceiver; }));
}

TEST(CancelledEu, MayReturnBeforeItGetsToACancellationPoint) {
    const WaitingEu sut(true);
    EXPECT_EQ(sut.cancel(), 0);
    EXPECT_EQ(sut.send(), EAaSysComRetVal_NoError);
    EXPECT_TRUE(eventually([&] { return sut.send() == EAaSysComRetVal_NoReceiver; }));
}

TEST(DefaultPolicy, IsTimeSharingWhenNothingIsConfigured) {
    EAaProEuSchedulingPolicy policy = EAaProEuSchedulingPolicy_Default;
    EXPECT_EQ(AaProEeGetDefaultSchedulingPolicy(&policy), EAaProEuRetVal_NoError);
    EXPECT_EQ(policy, EAaProEuSchedulingPolicy_Other);
    EXPECT_EQ(AaProEeGetDefaultSchedulingPolicy(nullptr), EAaProEuRetVal_InvalidValue);
}
