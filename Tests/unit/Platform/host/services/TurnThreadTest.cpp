#include <gtest/gtest.h>
#include <host/run/Lifecycle.hpp>
#include <host/run/TurnThread.hpp>

#include <vector>

namespace mox::host {
namespace {

TEST(TurnThread, RunsFunctionsInTheirOrderUntilThePlatformEnds) {
    TurnThread sut("turns");
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        sut.post([&order, i] { order.push_back(i); });
    endPlatform();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(TurnThread, RunReturnsWhenTheFunctionHasReturnedOnTheThread) {
    TurnThread sut("turns");
    std::thread::id where;
    sut.run([&] { where = std::this_thread::get_id(); });
    EXPECT_NE(where, std::thread::id());
    EXPECT_NE(where, std::this_thread::get_id());
    endPlatform();
}

TEST(TurnThread, RunsAtOnceWhatItIsToldFromItsOwnThread) {
    TurnThread sut("turns");
    bool inner = false;
    sut.run([&] { sut.run([&] { inner = true; }); });
    EXPECT_TRUE(inner);
    endPlatform();
}

TEST(TurnThread, BeginsAnewAfterThePlatformHasEnded) {
    TurnThread sut("turns");
    int runs = 0;
    sut.run([&] { ++runs; });
    endPlatform();
    sut.run([&] { ++runs; });
    endPlatform();
    EXPECT_EQ(runs, 2);
}

} // namespace
} // namespace mox::host
