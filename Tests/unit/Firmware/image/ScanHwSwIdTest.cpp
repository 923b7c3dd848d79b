#include "unit/Firmware/image/ImageFixture.hpp"

#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>

namespace mox::images {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t own = 0x12345678;

class ScanHwSwId : public OnImages {
protected:
    static int scan(const std::string& inTrailer, int allowMinor) {
        const auto parsed = ps::hwapi::common::image::parseTrailer(element("trailer", inTrailer));
        return scan_hwswid(parsed.trailer, own, allowMinor);
    }
    static std::string list(const std::string& content) { return element("HwSwIdList", content); }
    static std::string id(const std::string& text) { return element("HwSwId", text); }
};

TEST_F(ScanHwSwId, EndsWithTheExactOne) {
    EXPECT_EQ(scan(list(id("0x123456AB") + id("12345678") + id("1")), 1), 0);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: scan_hwswid(): Found HwSwId: 0x123456ab",
                                           "debug: scan_hwswid(): Found HwSwId: 0x12345678",
                                           "debug: scan_hwswid(): Matching HwSwId found: 0x12345678"));
}

TEST_F(ScanHwSwId, WalksAgainForTheFirstWithAMinorDifference) {
    EXPECT_EQ(scan(list(id("0x12335678") + id("123456AB") + id("12345600")), 1), 0);
    EXPECT_THAT(
        syslogLines(),
        ElementsAre("debug: scan_hwswid(): Found HwSwId: 0x12335678", "debug: scan_hwswid(): Found HwSwId: 0x123456ab",
                    "debug: scan_hwswid(): Found HwSwId: 0x12345600", "debug: scan_hwswid(): Found HwSwId: 0x12335678",
                    "debug: scan_hwswid(): Found HwSwId: 0x123456ab",
                    "info: scan_hwswid(): Found matching HwSwId with minor version difference: 0x123456ab"));
}

TEST_F(ScanHwSwId, TakesAnyNonzeroAsLeave) {
    EXPECT_EQ(scan(list(id("123456AB")), -1), 0);
    EXPECT_EQ(scan(list(id("123456AB")), 256), 0);
}

TEST_F(ScanHwSwId, RefusesAMinorDifferenceThatIsNotAllowed) {
    EXPECT_EQ(scan(list(id("123456AB")), 0), 70411);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: scan_hwswid(): Found HwSwId: 0x123456ab",
                                           "debug: scan_hwswid(): HwSwId minor difference is not allowed"));
}

TEST_F(ScanHwSwId, RefusesAListOfOthers) {
    EXPECT_EQ(scan(list(id("12335678")), 1), 70411);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: scan_hwswid(): Found HwSwId: 0x12335678",
                                           "debug: scan_hwswid(): Found HwSwId: 0x12335678"));
}

TEST_F(ScanHwSwId, RefusesATrailerWithoutList) {
    EXPECT_EQ(scan(id("12345678"), 1), 70411);
    EXPECT_THAT(syslogLines(), IsEmpty());
}

TEST_F(ScanHwSwId, RefusesAnEmptyList) {
    EXPECT_EQ(scan(list(""), 1), 70411);
    EXPECT_THAT(syslogLines(), IsEmpty());
}

TEST_F(ScanHwSwId, IgnoresOtherElementsOfTheList) {
    EXPECT_EQ(scan(list("<Board>12345678</Board>" + id("1")), 1), 70411);
    EXPECT_EQ(scan(list("<Board>7</Board>" + id("12345678") + "<Note/>"), 0), 0);
}

TEST_F(ScanHwSwId, LooksOnlyAtTheFirstList) {
    EXPECT_EQ(scan(list(id("1")) + list(id("12345678")), 1), 70411);
}

TEST_F(ScanHwSwId, FindsTheLastOfVeryMany) {
    std::string ids;
    for (unsigned i = 0; i < 50000; ++i) {
        ids += id("1");
    }
    EXPECT_EQ(scan(list(ids + id("12345678")), 1), 0);
}

} // namespace
} // namespace mox::images
