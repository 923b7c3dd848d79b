#include <mox/Board.h>

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace mox::testing {
namespace {

TEST(AdetState, HasAName) {
    const std::pair<int, const char*> rows[] = {
        {0, "Ready"}, {1, "UnInitialized"}, {2, "UnPlugged"}, {3, "SwUpgrade"}, {4, "Timeout"},
        {5, "HiZ"},   {6, "Sleep"},         {7, "Plugged"},   {10, "TookOver"},
    };
    for (const auto& [state, name] : rows) {
        EXPECT_STREQ(getAdetStateStr(state), name) << "for state " << state;
    }
}

TEST(AdetState, WithoutANameIsUnknown) {
    for (const int state : {8, 9, 11, 12, 255, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_STREQ(getAdetStateStr(state), "Unknown") << "for state " << state;
    }
}

TEST(AdetState, AlwaysGivesTheSameText) {
    EXPECT_EQ(getAdetStateStr(5), getAdetStateStr(5));
}

} // namespace
} // namespace mox::testing
