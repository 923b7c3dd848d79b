#include <mox/pal/InterfaceFactory.hpp>
#include <mox/pal/PALInstance.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace ps::hwapi::common {
namespace {

using Factory = InterfaceFactory<pal::PALInterface>;

TEST(InterfaceFactory, MakesAPlatformInstance) {
    const std::shared_ptr<pal::PALInterface> sut = Factory::Get();
    EXPECT_NE(dynamic_cast<pal::PALInstance*>(sut.get()), nullptr);
}

TEST(InterfaceFactory, SharesOneObjectWhileItIsHeld) {
    const std::shared_ptr<pal::PALInterface> first = Factory::Get();
    std::shared_ptr<pal::PALInterface> second = Factory::Get();
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.use_count(), 2) << "the factory itself holds nothing";
    second.reset();
    EXPECT_EQ(first, Factory::Get());
}

TEST(InterfaceFactory, DestroysTheObjectWithItsLastHolderAndMakesANewOne) {
    std::shared_ptr<pal::PALInterface> first = Factory::Get();
    std::shared_ptr<pal::PALInterface> second = Factory::Get();
    const std::weak_ptr<pal::PALInterface> watched = first;
    first.reset();
    EXPECT_FALSE(watched.expired());
    second.reset();
    EXPECT_TRUE(watched.expired());

    const std::shared_ptr<pal::PALInterface> fresh = Factory::Get();
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh.use_count(), 1);
    EXPECT_TRUE(watched.owner_before(fresh) || fresh.owner_before(watched)) << "not the object that was destroyed";
}

TEST(InterfaceFactory, GivesThreadsThatAskAtOnceTheSameObject) {
    std::vector<std::shared_ptr<pal::PALInterface>> got(8);
    std::vector<std::thread> threads;
    threads.reserve(got.size());
    for (std::shared_ptr<pal::PALInterface>& own : got) {
        threads.emplace_back([&own] { own = Factory::Get(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::shared_ptr<pal::PALInterface>& own : got) {
        EXPECT_EQ(own, got.front());
    }
    EXPECT_EQ(got.front().use_count(), 8);
}

} // namespace
} // namespace ps::hwapi::common
