#include <gtest/gtest.h>
#include <host/log/LogLine.hpp>

namespace mox::host::log {
namespace {

LogLine aLine() {
    LogLine line;
    line.level = error;
    line.feature = 0x20063;
    line.utcNs = 1'763'739'062'123'456'789U;
    line.node = 0x100E;
    line.process = "FanS";
    line.pid = 4711;
    line.domain = "HWAPI";
    line.text = "speed lost";
    return line;
}

TEST(LogLine, ShowsAllItsFieldsInOrder) {
    EXPECT_EQ(format(aLine()), "2025-11-21T15:31:02.123456Z ERR 100e FanS[4711] 00020063 HWAPI: speed lost");
}

TEST(LogLine, ShowsADashForADomainThatThereIsNot) {
    LogLine line = aLine();
    line.domain = {};
    EXPECT_EQ(format(line), "2025-11-21T15:31:02.123456Z ERR 100e FanS[4711] 00020063 -: speed lost");
}

TEST(LogLine, KeepsBlanksAndColonsOutOfTheFieldsBeforeTheText) {
    LogLine line = aLine();
    line.process = "my fan";
    line.domain = "a:b\n";
    EXPECT_EQ(format(line), "2025-11-21T15:31:02.123456Z ERR 100e my_fan[4711] 00020063 a_b_: speed lost");
}

TEST(LogLine, NamesSeverities) {
    EXPECT_STREQ(severityName(4), "ERR");
    EXPECT_STREQ(severityName(3), "WRN");
    EXPECT_STREQ(severityName(2), "INF");
    EXPECT_STREQ(severityName(1), "DBG");
}

TEST(LogLine, MakesControlCharactersVisible) {
    const struct {
        std::string text;
        const char* visible;
    } table[] = {
        {"plain", "plain"},
        {"two\nlines", "two\\nlines"},
        {"tab\there", "tab\\there"},
        {"return\r", "return\\r"},
        {"back\\slash", "back\\\\slash"},
        {std::string("nul\0byte", 8), "nul\\x00byte"},
        {"escape\x1B[31m", "escape\\x1B[31m"},
        {"delete\x7F", "delete\\x7F"},
        {"gr\xC3\xBC\xC3\x9F", "gr\xC3\xBC\xC3\x9F"},
    };
    for (const auto& row : table) {
        std::string out;
        appendVisible(out, row.text);
        EXPECT_EQ(out, row.visible);
    }
}

} // namespace
} // namespace mox::host::log
