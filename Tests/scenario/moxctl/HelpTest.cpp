#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

struct HelpRow {
    Words level;
    std::vector<const char*> holds;
};

void PrintTo(const HelpRow& row, std::ostream* stream) {
    *stream << "moxctl";
    for (const std::string& word : row.level) {
        *stream << ' ' << word;
    }
}

class HelpOfLevel : public ::testing::TestWithParam<HelpRow> {};

TEST_P(HelpOfLevel, NamesEverythingThatCanFollow) {
    for (const char* option : {"-h", "--help"}) {
        Words words = GetParam().level;
        words.emplace_back(option);
        const CommandResult result = moxctlAlone(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.err, IsEmpty());
        for (const char* text : GetParam().holds) {
            EXPECT_THAT(result.out, HasSubstr(text));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, HelpOfLevel,
    ::testing::Values(
        HelpRow{{},
                {"Usage: moxctl [OPTIONS] GROUP VERB", "--run DIR", "--node NID", "--json", "--quiet", "-v,--verbose",
                 "--version", "sim ", "ps ", "msg ", "tag ", "rad ", "log ", "image ", "fw ", "id ", "completion ",
                 "124 time limit"}},
        HelpRow{{"sim"}, {"Usage: moxctl sim [OPTIONS] VERB", "new ", "up ", "down ", "reset ", "status "}},
        HelpRow{{"sim", "new"}, {"Usage: moxctl sim new [OPTIONS] [DIR]", "--board FILE|NAME", "--list", "echo-pair"}},
        HelpRow{{"sim", "up"},
                {"[DIR]", "--wait SECONDS", "--exe-dir DIR", "MOX_EXE_PATH", "For all nodes", "Global options"}},
        HelpRow{{"sim", "down"}, {"[DIR]", "--wait SECONDS", "killed"}},
        HelpRow{{"sim", "reset"}, {"[DIR]", "--wait SECONDS", "--exe-dir DIR", "flash"}},
        HelpRow{{"sim", "status"}, {"[DIR]", "CPIDs"}}, HelpRow{{"ps"}, {"Usage: moxctl ps [OPTIONS] VERB", "list "}},
        HelpRow{{"ps", "list"}, {"Usage: moxctl ps list", "processes", "For all nodes"}},
        HelpRow{{"flash", "list"}, {"image areas", "For all nodes"}},
        HelpRow{{"msg"}, {"send ", "request ", "monitor "}},
        HelpRow{{"msg", "send"}, {"TO ID", "--payload", "--text TEXT", "--file FILE", "--from SICAD", "--count N"}},
        HelpRow{{"msg", "request"},
                {"TO ID", "--payload", "--text TEXT", "--file FILE", "--answer ID", "--timeout SECONDS", "124"}},
        HelpRow{{"msg", "monitor"}, {"CPID", "--count N", "--timeout SECONDS", "124"}},
        HelpRow{{"tag"}, {"list ", "get ", "set ", "watch "}}, HelpRow{{"tag", "list"}, {"[PREFIX]"}},
        HelpRow{{"tag", "get"}, {" TAG"}}, HelpRow{{"tag", "set"}, {"TAG VALUE", "--type TYPE", "u32"}},
        HelpRow{{"tag", "watch"}, {"[PREFIX]", "--count N", "--timeout SECONDS"}},
        HelpRow{{"rad"}, {"list ", "get ", "set "}}, HelpRow{{"rad", "list"}, {"[PATTERN]"}},
        HelpRow{{"rad", "get"}, {" PARAMETER", "name"}}, HelpRow{{"rad", "set"}, {"PARAMETER [VALUE]", "--default"}},
        HelpRow{{"log"}, {"tail "}},
        HelpRow{{"log", "tail"}, {"[SERVICE]", "-f,--follow", "-n,--lines N", "--level LEVEL", "--feature PARAMETER"}},
        HelpRow{{"ddal"}, {"fault "}}, HelpRow{{"ddal", "fault"}, {"add ", "list ", "clear "}},
        HelpRow{{"ddal", "fault", "add"},
                {"FUNCTION", "--return CODE", "--nth N", "--times N", "--delay T", "--mode MODE", "--service SERVICE",
                 "A message whose sending is faulted is destroyed"}},
        HelpRow{{"ddal", "fault", "clear"}, {"[ID...]", "--all"}}, HelpRow{{"completion"}, {"bash "}},
        HelpRow{{"completion", "bash"}, {"source"}},
        HelpRow{{"image"}, {"create ", "info ", "verify ", "extract ", "diff "}},
        HelpRow{{"image", "create"},
                {"PAYLOAD OUT", "--version VERSION", "--hwswid HWSWID", "--target-unit TEXT", "--sw-id TEXT",
                 "--build-time TEXT", "--format-version N", "--mark", "MOX-SW-VERSION", "--force"}},
        HelpRow{{"image", "info"}, {" FILE"}}, HelpRow{{"image", "verify"}, {"FILE", "--hwswid HWSWID", "status 4"}},
        HelpRow{{"image", "extract"}, {"FILE [OUT]", "--trailer", "--force"}},
        HelpRow{{"image", "diff"}, {"FILE FILE2", "status 4"}},
        HelpRow{{"fw"}, {"check ", "update ", "disable ", "enable ", "force ", "status "}},
        HelpRow{{"fw", "check"}, {"COMPONENT", "uboot, bmu or fpga", "--dir DIR", "/ffs/run/boot", "--explain"}},
        HelpRow{{"fw", "update"}, {"COMPONENT [FILE]", "--dir DIR", "--force"}},
        HelpRow{{"fw", "disable"}, {"--unit-type UNITTYPE"}}, HelpRow{{"fw", "enable"}, {"marker"}},
        HelpRow{{"fw", "force"}, {"COMPONENT COUNT"}}, HelpRow{{"fw", "status"}, {"versions"}},
        HelpRow{{"id"}, {"show ", "decode ", "set "}}, HelpRow{{"id", "show"}, {"identity"}},
        HelpRow{{"id", "decode"}, {"HWSWID", "hexadecimal"}},
        HelpRow{{"id", "set"},
                {"--hwswid HWSWID", "--unit-id TEXT", "--serial TEXT", "--production-code TEXT", "next start"}}));

TEST(Moxctl, TellsItsVersion) {
    const CommandResult result = moxctlAlone({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, MatchesRegex("moxctl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Moxctl, HidesFromHelpWhatOnlyTheCompletionScriptUses) {
    EXPECT_THAT(moxctlAlone({"completion", "-h"}).out, ::testing::Not(HasSubstr("values")));
}

} // namespace
} // namespace mox::testing
