// Images that something has broken at random places: each is judged within the stated results, and what says that it is
// whole has a payload of that CRC-32.
#include "unit/Firmware/image/ImageFixture.hpp"

#include <mox/ImageTrailer.hpp>

#include <algorithm>
#include <iterator>
#include <random>

namespace mox::images {
namespace {

using ::testing::AnyOf;
using ::testing::Eq;

constexpr int rounds = 3000;

class Mutator {
public:
    explicit Mutator(unsigned seed) : m_random(seed) {}

    std::string mutate(std::string image) {
        for (std::size_t changes = 1 + below(3); changes > 0 && !image.empty(); --changes) {
            change(image);
        }
        return image;
    }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random); }

    void change(std::string& image) {
        static const std::string pieces[] = {
            "<",  ">",         "</trailer>", "<trailer>",   "0x", "-1",       "99999999999999999999", "&#0;",
            "&",  "<!DOCTYPE", "<![CDATA[",  "<HwSwId>1</", "%s", "\xFF\xFE", std::string(1, '\0'),   "<?xml?>",
            "]]>"};
        const std::size_t at = below(image.size());
        switch (below(6)) {
        case 0:
            image[at] = static_cast<char>(below(256));
            break;
        case 1:
            image[at] = static_cast<char>(image[at] ^ static_cast<char>(1U << below(8)));
            break;
        case 2:
            image.erase(at, 1 + below(8));
            break;
        case 3:
            image.insert(at, pieces[below(std::size(pieces))]);
            break;
        case 4:
            image.resize(at);
            break;
        default: // the word: near the ends of what is allowed, or anything
            image.replace(image.size() - std::min<std::size_t>(4, image.size()), std::string::npos,
                          offsetWord(static_cast<std::uint32_t>(below(2) == 0 ? image.size() - below(10)
                                                                              : below(image.size() + 10))));
        }
    }

    std::mt19937 m_random;
};

class BrokenImages : public OnImages {};

TEST_F(BrokenImages, AreJudgedWithinTheStatedResults) {
    Mutator mutator(7);
    const std::string payload = someBytes(300);
    const std::string whole = imageOf(payload, trailerFor(payload, "7", "<HwSwId>1</HwSwId><HwSwId>2</HwSwId>"));
    int accepted = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string bytes = mutator.mutate(whole);
        const std::string path = write(bytes);
        SCOPED_TRACE(round);
        const int valid = binary_validate(path.c_str(), 1);
        const int crc = binary_crc(path.c_str());
        ASSERT_THAT(valid, AnyOf(Eq(0), Eq(70401), Eq(70406), Eq(70407), Eq(70411), Eq(70413)));
        ASSERT_EQ(crc, valid == 70411 ? 0 : valid);
        std::uint32_t version = 1;
        const int result = binary_version(path.c_str(), 1, 1, &version);
        ASSERT_THAT(result, AnyOf(Eq(0), Eq(1), Eq(-1), Eq(-2), Eq(-3)));
        ASSERT_TRUE(result == 0 || version == 0);
        const int copied = binary_copy_without_trailer(path.c_str(), in("payload").c_str());
        ASSERT_THAT(copied, AnyOf(Eq(0), Eq(-4), Eq(-6)));
        if (valid == 0) {
            ++accepted;
            ASSERT_EQ(copied, 0);
            const auto region = std::string_view(bytes).substr(contentOf(in("payload")).size());
            const std::string text(ps::hwapi::common::image::trailerText(region));
            const auto parsed = ps::hwapi::common::image::parseTrailer(text);
            ASSERT_EQ(crcOf(contentOf(in("payload"))), ps::hwapi::common::image::readFields(*parsed.trailer).crc32);
        }
        syslogLines();
        platformLines();
    }
    // Neither refused nor accepted as a whole: the changes are the right size.
    EXPECT_GT(accepted, rounds / 200);
    EXPECT_LT(accepted, rounds / 2);
}

} // namespace
} // namespace mox::images
