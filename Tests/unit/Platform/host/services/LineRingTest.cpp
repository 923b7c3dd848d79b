#include <gtest/gtest.h>
#include <host/log/LineRing.hpp>

#include <deque>
#include <random>

namespace mox::host::log {
namespace {

using Keep = LineRing::Keep;

TEST(LineRingOfNewest, KeepsAllLinesWhileThereIsRoom) {
    LineRing sut(8, Keep::newest);
    sut.add("abc");
    sut.add("xyz");
    EXPECT_EQ(sut.lines(), "abc\nxyz\n");
}

TEST(LineRingOfNewest, DropsTheOldestLinesForANewOne) {
    LineRing sut(8, Keep::newest);
    sut.add("abc");
    sut.add("de");
    sut.add("fgh");
    EXPECT_EQ(sut.lines(), "de\nfgh\n");
}

TEST(LineRingOfNewest, CutsALineThatIsLongerThanItsRoom) {
    LineRing sut(5, Keep::newest);
    sut.add("old");
    sut.add("abcdefgh");
    EXPECT_EQ(sut.lines(), "abcd\n");
}

TEST(LineRingOfNewest, KeepsEmptyLines) {
    LineRing sut(3, Keep::newest);
    for (int i = 0; i < 7; ++i)
        sut.add("");
    EXPECT_EQ(sut.lines(), "\n\n\n");
}

TEST(LineRingOfNewest, LeavesOutWholeOldLinesBeyondTheLimitAsked) {
    LineRing sut(100, Keep::newest);
    sut.add("first");
    sut.add("second");
    sut.add("third");
    const struct {
        std::size_t maxBytes;
        const char* lines;
    } table[] = {{0, "first\nsecond\nthird\n"},
                 {19, "first\nsecond\nthird\n"},
                 {18, "second\nthird\n"},
                 {13, "second\nthird\n"},
                 {12, "third\n"},
                 {6, "third\n"},
                 {5, ""},
                 {1, ""}};
    for (const auto& row : table)
        EXPECT_EQ(sut.lines(row.maxBytes), row.lines) << row.maxBytes;
}

TEST(LineRingOfNewest, HoldsWhatAListOfLinesWouldHold) {
    std::mt19937 random(7);
    LineRing sut(64, Keep::newest);
    std::deque<std::string> model;
    std::size_t bytes = 0;
    for (int i = 0; i < 5000; ++i) {
        const std::string line(random() % 70, static_cast<char>('a' + i % 26));
        sut.add(line);
        model.push_back(line.substr(0, 63) + "\n");
        bytes += model.back().size();
        for (; bytes > 64; model.pop_front())
            bytes -= model.front().size();
        std::string expected;
        for (const std::string& kept : model)
            expected += kept;
        ASSERT_EQ(sut.lines(), expected) << i;
    }
}

TEST(LineRingOfFirst, TurnsLaterLinesAwayAlsoShortOnes) {
    LineRing sut(10, Keep::first);
    sut.add("abcd");
    sut.add("too long for the rest");
    sut.add("x");
    EXPECT_EQ(sut.lines(), "abcd\n");
}

} // namespace
} // namespace mox::host::log
