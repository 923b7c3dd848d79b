#include "EuFixture.hpp"

#include <pal/AaSem.h>

#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using mox::testing::Eu;
using mox::testing::eventually;

namespace {

std::int32_t valueOf(TAaSem sem) {
    std::int32_t value = -1;
    EXPECT_EQ(AaSemGetValue(sem, &value), EAaSemRetVal_NoError);
    return value;
}

TAaSem semaphore(std::uint32_t count) {
    TAaSem sem = nullptr;
    EXPECT_EQ(AaSemCreateC(&sem, count), EAaSemRetVal_NoError);
    EXPECT_NE(sem, nullptr);
    return sem;
}

std::string freshName(const char* base) {
    static std::atomic<int> number{0};
    return std::string(base) + std::to_string(getpid()) + "." + std::to_string(++number);
}

TAaSem named(const std::string& name, std::uint32_t count) {
    TAaSem sem = nullptr;
    EXPECT_EQ(AaSemCreateNamedC(&sem, name.c_str(), count), EAaSemRetVal_NoError) << name;
    return sem;
}

TAaSem invalidHandle() {
    static int something;
    return reinterpret_cast<TAaSem>(&something);
}

} // namespace

TEST(SemaphoreCreation, TakesCountsUpToTheLimit) {
    for (const std::uint32_t count : {0U, 1U, 1000U, static_cast<std::uint32_t>(INT32_MAX)}) {
        TAaSem sut = semaphore(count);
        EXPECT_EQ(valueOf(sut), static_cast<std::int32_t>(count));
        EXPECT_EQ(AaSemDestroy(sut), EAaSemRetVal_NoError);
    }
}

TEST(SemaphoreCreation, RefusesCountsAboveAndSetsNull) {
    for (const std::uint32_t count : {static_cast<std::uint32_t>(INT32_MAX) + 1U, UINT32_MAX}) {
        TAaSem sut = invalidHandle();
        EXPECT_EQ(AaSemCreateC(&sut, count), EAaSemRetVal_InvalidValue);
        EXPECT_EQ(sut, nullptr);
        sut = invalidHandle();
        EXPECT_EQ(AaSemCreateNamedC(&sut, "moxtest.never", count), EAaSemRetVal_InvalidValue);
        EXPECT_EQ(sut, nullptr);
    }
    EXPECT_EQ(AaSemCreateC(nullptr, 0), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemCreateNamedC(nullptr, "moxtest.never", 0), EAaSemRetVal_InvalidValue);
}

TEST(SemaphoreNullHandle, IsRefusedByEveryOperation) {
    std::int32_t value = 77;
    EXPECT_EQ(AaSemDestroy(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemWait(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemWaitPri(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemPostPri(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemGetValue(nullptr, &value), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(AaSemUnlink(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemReMutexCreate(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemReMutexDestroy(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemReMutexTake(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemReMutexRelease(nullptr), EAaSemRetVal_InvalidValue);
}

TEST(SemaphoreValue, NeedsAVariable) {
    TAaSem sut = semaphore(1);
    EXPECT_EQ(AaSemGetValue(sut, nullptr), EAaSemRetVal_InvalidValue);
    AaSemDestroy(sut);
}

TEST(SemaphoreCount, FollowsPostsAndWaits) {
    TAaSem sut = semaphore(2);
    EXPECT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(sut), 1);
    EXPECT_EQ(AaSemWaitPri(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(sut), 0);
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemPostPri(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(sut), 2);
    AaSemDestroy(sut);
}

TEST(SemaphoreCount, NeverPassesTheLimit) {
    TAaSem sut = semaphore(INT32_MAX - 1);
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_OutOfResources);
    EXPECT_EQ(AaSemPostPri(sut), EAaSemRetVal_OutOfResources);
    EXPECT_EQ(valueOf(sut), INT32_MAX);
    EXPECT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(sut), INT32_MAX - 1);
    AaSemDestroy(sut);
}

TEST(SemaphoreCount, IsZeroAndNotNegativeWhileOthersWait) {
    TAaSem sut = semaphore(0);
    std::atomic<int> passed{0};
    std::vector<std::unique_ptr<Eu>> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.push_back(std::make_unique<Eu>([&] {
            EXPECT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
            ++passed;
        }));
    std::this_thread::sleep_for(std::chrono::milliseconds(10)); // most likely they sleep now
    EXPECT_EQ(valueOf(sut), 0);
    EXPECT_EQ(passed, 0);
    for (int i = 1; i <= 4; ++i) {
        EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
        EXPECT_TRUE(eventually([&] { return passed == i; })) << "one post wakes one waiter";
    }
    waiters.clear();
    EXPECT_EQ(valueOf(sut), 0);
    AaSemDestroy(sut);
}

TEST(SemaphoreCount, IsConservedByEightThreads) {
    constexpr int pairs = 100000;
    TAaSem sut = semaphore(3);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([=] {
            for (int round = 0; round < pairs; ++round) {
                ASSERT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
                ASSERT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(valueOf(sut), 3);
    AaSemDestroy(sut);
}

TEST(SemaphoreAsALock, LetsOneInAtATime) {
    TAaSem sut = semaphore(1);
    int guarded = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, sut] {
            for (int round = 0; round < 20000; ++round) {
                AaSemWaitPri(sut);
                ++guarded;
                AaSemPostPri(sut);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(guarded, 80000);
    AaSemDestroy(sut);
}

TEST(SemaphoreOfOneRendezvous, MayBeDestroyedByTheWaiterAtOnce) {
    // The poster may still be inside AaSemPost when the waiter, who has got the count, destroys the semaphore.
    constexpr int rounds = 100000;
    std::atomic<TAaSem> handed{nullptr};
    std::thread poster([&] {
        for (int i = 0; i < rounds; ++i) {
            TAaSem sem = nullptr;
            while ((sem = handed.exchange(nullptr)) == nullptr)
                std::this_thread::yield();
            AaSemPost(sem);
        }
    });
    for (int i = 0; i < rounds; ++i) {
        TAaSem sut = nullptr;
        ASSERT_EQ(AaSemCreateC(&sut, 0), EAaSemRetVal_NoError);
        handed = sut;
        ASSERT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
        ASSERT_EQ(AaSemDestroy(sut), EAaSemRetVal_NoError);
    }
    poster.join();
}

TEST(NamedSemaphore, IsSharedByAllWhoOpenIt) {
    const std::string name = freshName("moxtest.shared");
    TAaSem first = named(name, 2);
    TAaSem second = named(name, 5);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(valueOf(second), 2) << "the count of who came first";
    EXPECT_EQ(AaSemPost(first), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(second), 3);
    EXPECT_EQ(AaSemDestroy(first), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(second), 3) << "it lives for its other users";
    EXPECT_EQ(AaSemDestroy(second), EAaSemRetVal_NoError);
    TAaSem third = named(name, 9);
    EXPECT_EQ(valueOf(third), 3) << "and until its name is removed";
    AaSemDestroy(third);
    EXPECT_EQ(AaSemUnlink(name.c_str()), EAaSemRetVal_NoError);
}

TEST(NamedSemaphore, IsKeptByItsUsersWhenItsNameIsRemoved) {
    const std::string name = freshName("moxtest.unlinked");
    TAaSem sut = named(name, 1);
    EXPECT_EQ(AaSemUnlink(name.c_str()), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemUnlink(name.c_str()), EAaSemRetVal_NotFound);
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
    TAaSem another = named(name, 7);
    EXPECT_EQ(valueOf(another), 7);
    EXPECT_EQ(valueOf(sut), 2);
    AaSemDestroy(sut);
    AaSemDestroy(another);
    EXPECT_EQ(AaSemUnlink(name.c_str()), EAaSemRetVal_NoError);
}

TEST(NamedSemaphore, NeverPassesTheLimit) {
    const std::string name = freshName("moxtest.full");
    TAaSem sut = named(name, INT32_MAX);
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_OutOfResources);
    EXPECT_EQ(AaSemWait(sut), EAaSemRetVal_NoError);
    EXPECT_EQ(valueOf(sut), INT32_MAX - 1);
    AaSemDestroy(sut);
    AaSemUnlink(name.c_str());
}

TEST(NamedSemaphore, WakesAWaiterWhoOpenedItByItself) {
    const std::string name = freshName("moxtest.wakes");
    TAaSem sut = named(name, 0);
    Eu waiter([&] {
        TAaSem mine = named(name, 0);
        EXPECT_EQ(AaSemWait(mine), EAaSemRetVal_NoError);
        AaSemDestroy(mine);
    });
    EXPECT_EQ(AaSemPost(sut), EAaSemRetVal_NoError);
    waiter.join();
    EXPECT_EQ(valueOf(sut), 0);
    AaSemDestroy(sut);
    AaSemUnlink(name.c_str());
}

TEST(NamedSemaphore, IsMadeOnceByThreadsThatOpenItTogether) {
    for (int round = 0; round < 200; ++round) {
        const std::string name = freshName("moxtest.together");
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                ++ready;
                while (ready < 4)
                    std::this_thread::yield();
                TAaSem mine = named(name, 0);
                EXPECT_EQ(AaSemPost(mine), EAaSemRetVal_NoError);
                AaSemDestroy(mine);
            });
        for (std::thread& thread : threads)
            thread.join();
        TAaSem sut = named(name, 0);
        EXPECT_EQ(valueOf(sut), 4);
        AaSemDestroy(sut);
        AaSemUnlink(name.c_str());
    }
}

TEST(NamedSemaphore, HasANameOf1To200CharactersWithoutSlash) {
    const std::string unique = freshName("moxtest.");
    const std::string longest = unique + std::string(200 - unique.size(), 'n');
    TAaSem sut = named(longest, 1);
    EXPECT_EQ(valueOf(sut), 1);
    AaSemDestroy(sut);
    EXPECT_EQ(AaSemUnlink(longest.c_str()), EAaSemRetVal_NoError);
    const std::string tooLong = longest + "n";
    for (const char* name : {tooLong.c_str(), "", "a/b", "/a", static_cast<const char*>(nullptr)}) {
        sut = invalidHandle();
        EXPECT_EQ(AaSemCreateNamedC(&sut, name, 1), EAaSemRetVal_InvalidValue);
        EXPECT_EQ(sut, nullptr);
        EXPECT_EQ(AaSemUnlink(name), EAaSemRetVal_InvalidValue);
    }
    EXPECT_EQ(AaSemUnlink("moxtest.nobody.has.this"), EAaSemRetVal_NotFound);
}

TEST(RecursiveMutex, IsHeldUntilItIsReleasedAsOftenAsTaken) {
    TAaSemReMutex sut = nullptr;
    ASSERT_EQ(AaSemReMutexCreate(&sut), EAaSemRetVal_NoError);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(AaSemReMutexTake(sut), EAaSemRetVal_NoError);
    std::atomic<bool> got{false};
    std::thread other([&] {
        EXPECT_EQ(AaSemReMutexRelease(sut), EAaSemRetVal_NotOwner);
        EXPECT_EQ(AaSemReMutexTake(sut), EAaSemRetVal_NoError);
        got = true;
        EXPECT_EQ(AaSemReMutexRelease(sut), EAaSemRetVal_NoError);
    });
    for (int i = 0; i < 3; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // the other would have time to pass
        EXPECT_FALSE(got);
        EXPECT_EQ(AaSemReMutexRelease(sut), EAaSemRetVal_NoError);
    }
    other.join();
    EXPECT_TRUE(got);
    EXPECT_EQ(AaSemReMutexRelease(sut), EAaSemRetVal_NotOwner);
    EXPECT_EQ(AaSemReMutexDestroy(sut), EAaSemRetVal_NoError);
}

TEST(RecursiveMutex, LetsOneInAtATime) {
    TAaSemReMutex sut = nullptr;
    ASSERT_EQ(AaSemReMutexCreate(&sut), EAaSemRetVal_NoError);
    int guarded = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 20000; ++round) {
                AaSemReMutexTake(sut);
                AaSemReMutexTake(sut);
                ++guarded;
                AaSemReMutexRelease(sut);
                AaSemReMutexRelease(sut);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(guarded, 80000);
    EXPECT_EQ(AaSemReMutexDestroy(sut), EAaSemRetVal_NoError);
}
