// Descriptions that somebody has broken at random places: each is either read or refused with a line inside the text.
#include <gtest/gtest.h>
#include <host/board/Description.hpp>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>

namespace {

using namespace mox::host;

constexpr int rounds = 3000;

std::string goodText() {
    std::ifstream file(MOX_BOARD_DIRECTORY "/descriptions/kora.json");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class Mutator {
public:
    explicit Mutator(unsigned seed) : m_random(seed) {}

    std::string mutate(std::string text) {
        for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
            change(text);
        }
        return text;
    }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random); }

    void change(std::string& text) {
        static constexpr const char* pieces[] = {"{",
                                                 "}",
                                                 "[",
                                                 "]",
                                                 ",",
                                                 ":",
                                                 "\"",
                                                 "0x",
                                                 "-1",
                                                 "1e999",
                                                 "null",
                                                 "//",
                                                 "/*",
                                                 "\\u",
                                                 "\xFF",
                                                 "\n",
                                                 "99999999999999999999"};
        if (text.size() < 2) {
            return;
        }
        const std::size_t at = below(text.size());
        switch (below(5)) {
        case 0:
            text[at] = static_cast<char>(below(256));
            break;
        case 1:
            text.erase(at, 1 + below(20));
            break;
        case 2:
            text.insert(at, pieces[below(std::size(pieces))]);
            break;
        case 3:
            text.insert(at, text.substr(below(text.size()), below(60)));
            break;
        default:
            text.resize(at);
        }
    }

    std::mt19937 m_random;
};

TEST(ABrokenDescription, IsReadOrRefusedWithALineOfTheText) {
    const std::string good = goodText();
    Mutator mutator(20161124);
    int refused = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string text = mutator.mutate(good);
        const auto lines = static_cast<unsigned>(1 + std::count(text.begin(), text.end(), '\n'));
        DescriptionError error;
        if (parseDescription(text, "board.json", error)) {
            continue;
        }
        ++refused;
        ASSERT_GE(error.line, 1u) << text;
        ASSERT_LE(error.line, lines) << text;
        ASSERT_FALSE(error.text.empty()) << text;
        ASSERT_TRUE(std::all_of(error.text.begin(), error.text.end(), [](char c) { return c >= ' ' && c <= '~'; }))
            << error.text;
    }
    EXPECT_GT(refused, rounds / 2);
    EXPECT_LT(refused, rounds);
}

} // namespace
