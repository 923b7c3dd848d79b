#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct ValueRow {
    const char* type;
    const char* written;
    const char* shown;
    Json json;
};

void PrintTo(const ValueRow& row, std::ostream* stream) {
    *stream << row.type << ' ' << row.written;
}

class TagOfType : public ::testing::TestWithParam<ValueRow> {};

TEST_P(TagOfType, IsReadAsItWasSet) {
    const SimulatedRun run;
    const CommandResult set = run.moxctl({"tag", "set", "app.x", GetParam().written, "--type", GetParam().type});
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_THAT(set.out, IsEmpty());
    EXPECT_EQ(run.moxctl({"tag", "get", "app.x"}).out, std::string(GetParam().shown) + "\n");
    const Json tag = run.json({"tag", "get", "app.x"});
    EXPECT_EQ(tag.at("name"), "app.x");
    EXPECT_EQ(tag.at("type"), GetParam().type);
    EXPECT_EQ(tag.at("value"), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, TagOfType,
    ::testing::Values(ValueRow{"text", "some words", "some words", "some words"},
                      ValueRow{"bytes", "00 FF", "00ff", "00ff"}, ValueRow{"u8", "0xff", "255", 255},
                      ValueRow{"u16", "65535", "65535", 65535}, ValueRow{"u32", "0x10", "16", 16},
                      ValueRow{"u64", "18446744073709551615", "18446744073709551615", 18446744073709551615ULL}));

TEST(TagSet, KeepsTheTypeThatTheTagHas) {
    const SimulatedRun run;
    run.moxctl({"tag", "set", "app.x", "1", "--type", "u32"});
    EXPECT_EQ(run.json({"tag", "set", "app.x", "2"}).at("value"), 2);
    const CommandResult wrong = run.moxctl({"tag", "set", "app.x", "two"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("tag 'app.x' of type u32: expected a decimal or 0x... hexadecimal number of 32 "
                                     "bits, got 'two'"));
}

TEST(TagSet, RefusesANameThatIsTooLong) {
    const SimulatedRun run;
    const CommandResult result = run.moxctl({"tag", "set", std::string(481, 'n'), "1"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("expected 1 to 480 characters, got 481"));
}

TEST(TagList, ShowsTheTagsWithAPrefixByName) {
    const SimulatedRun run;
    for (const char* name : {"b.y", "a.x", "b.x"}) {
        run.moxctl({"tag", "set", name, "v"});
    }
    EXPECT_EQ(run.moxctl({"tag", "list", "b."}).out, "NAME  TYPE  VALUE\nb.x   text  v\nb.y   text  v\n");
    const Json all = run.json({"tag", "list"});
    EXPECT_EQ(all.at("schema"), "moxctl.tags.1");
    ASSERT_EQ(all.at("tags").size(), 3U);
    EXPECT_EQ(all.at("tags").at(0).at("name"), "a.x");
    EXPECT_EQ(run.json({"tag", "list", "none"}).at("tags"), Json::array());
}

TEST(TagWatch, PrintsEveryPublicationWithThePrefix) {
    const SimulatedRun run;
    RunningCommand sut(moxctlWords({"tag", "watch", "app.", "--count", "3"}), run.setting());
    sut.waitForErr("watching tags 'app.*'\n");
    for (const auto& [name, value] : {std::pair("app.x", "1"), {"other", "1"}, {"app.x", "1"}, {"app.y", "2"}}) {
        EXPECT_EQ(run.moxctl({"tag", "set", name, value}).status, 0);
    }
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "app.x = 1\napp.x = 1\napp.y = 2\n");
}

TEST(TagWatch, PrintsAnObjectALineUntilItIsInterrupted) {
    const SimulatedRun run;
    RunningCommand sut(moxctlWords({"tag", "watch", "--json"}), run.setting());
    sut.waitForErr("watching");
    run.moxctl({"tag", "set", "app.x", "5", "--type", "u16"});
    sut.waitForOut("}\n");
    sut.signal(SIGINT);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 130);
    ASSERT_EQ(jsonLines(result.out).size(), 1U);
    EXPECT_EQ(jsonLines(result.out)[0], Json({{"name", "app.x"}, {"type", "u16"}, {"value", 5}}));
    EXPECT_EQ(run.json({"ps", "list"}).at("processes").size(), 0U);
}

TEST(TagWatch, EndsInOrderWhenItsTimeIsUp) {
    const SimulatedRun run;
    EXPECT_EQ(run.moxctl({"tag", "watch", "--timeout", "0.05"}).status, 0);
}

} // namespace
} // namespace mox::testing
