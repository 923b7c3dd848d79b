#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <ostream>
#include <sstream>

namespace mox::testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

/// What bash offers for the last word of a line.
Words completed(const SimulatedRun& run, const Words& line) {
    const std::string script = run.directory().write("completion", moxctlAlone({"completion", "bash"}).out);
    const std::string program = "source \"$1\"; shift; COMP_WORDS=(moxctl \"$@\"); COMP_CWORD=$#\n"
                                "_moxctl moxctl \"${COMP_WORDS[COMP_CWORD]}\" \"${COMP_WORDS[COMP_CWORD-1]}\"\n"
                                "printf '%s\\n' \"${COMPREPLY[@]}\"";
    Words words{"bash", "-c", program, "bash", script};
    words.insert(words.end(), line.begin(), line.end());
    CommandSetting setting = run.setting();
    const std::string directory = std::filesystem::path(MOXCTL_PATH).parent_path().string();
    setting.environment.emplace_back("PATH", directory + ":/usr/bin:/bin");
    const CommandResult result = runCommand(words, setting);
    EXPECT_EQ(result.err, "");
    Words offered;
    std::istringstream lines(result.out);
    for (std::string text; std::getline(lines, text);) {
        offered.push_back(text);
    }
    return offered;
}

struct CompletionRow {
    Words line;
    Words offered;
    Words notOffered;
};

void PrintTo(const CompletionRow& row, std::ostream* stream) {
    for (const std::string& word : row.line) {
        *stream << '[' << word << ']';
    }
}

class Completion : public ::testing::TestWithParam<CompletionRow> {};

TEST_P(Completion, OffersWhatCanStandThere) {
    const SimulatedRun run;
    run.moxctl({"tag", "set", "app.x", "1"});
    run.moxctl({"ddal", "fault", "add", "AaSemWait"});
    const Words words = completed(run, GetParam().line);
    for (const std::string& word : GetParam().offered) {
        EXPECT_THAT(words, Contains(word));
    }
    for (const std::string& word : GetParam().notOffered) {
        EXPECT_THAT(words, Not(Contains(word)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, Completion,
    ::testing::Values(CompletionRow{{""}, {"sim", "ps", "msg", "tag", "rad", "log", "completion"}, {"up", "list"}},
                      CompletionRow{{"--"}, {"--run", "--node", "--json", "--version", "--help"}, {"--wait"}},
                      CompletionRow{{"sim", ""}, {"new", "up", "down", "status"}, {"list", "sim"}},
                      CompletionRow{{"sim", "u"}, {"up"}, {"new"}},
                      CompletionRow{{"--json", "sim", "up", "--"}, {"--wait", "--exe-dir"}, {"--board"}},
                      CompletionRow{{"--node", ""}, {"1011", "1021"}, {"sim"}},
                      CompletionRow{{"sim", "new", "--board", "echo"}, {"echo-pair"}, {"kora"}},
                      CompletionRow{{"msg", "send", ""}, {"Echo", "--payload", "--text"}, {"app.x"}},
                      CompletionRow{{"tag", "get", "app"}, {"app.x"}, {"Echo"}},
                      CompletionRow{{"log", "tail", "--level", ""}, {"debug", "error"}, {"Echo"}},
                      CompletionRow{{"ddal", "fault", ""}, {"add", "list", "clear"}, {"fault"}},
                      CompletionRow{{"ddal", "fault", "add", "ddal_fpga"},
                                    {"ddal_fpga_update_mod", "ddal_fpga_get_active_version"},
                                    {"AaSysComMsgSend"}},
                      CompletionRow{{"ddal", "fault", "add", "AaSemWait", "--"},
                                    {"--return", "--nth", "--times", "--delay", "--mode", "--service"},
                                    {"--all"}},
                      CompletionRow{{"ddal", "fault", "add", "AaSemWait", "--mode", ""}, {"stuck", "garbage"}, {"1"}},
                      CompletionRow{{"ddal", "fault", "add", "AaSemWait", "--service", ""}, {"Echo"}, {"stuck"}},
                      CompletionRow{{"ddal", "fault", "clear", ""}, {"1", "--all"}, {"2"}},
                      CompletionRow{{"fw", ""}, {"check", "update", "disable", "enable", "force", "status"}, {"fw"}},
                      CompletionRow{{"fw", "check", ""}, {"uboot", "bmu", "fpga", "--explain", "--dir"}, {"Echo"}},
                      CompletionRow{{"image", ""}, {"create", "info", "verify", "extract", "diff"}, {"list"}},
                      CompletionRow{{"image", "verify", "/etc/host"}, {"/etc/hostname"}, {"Echo"}},
                      CompletionRow{{"image", "create", "/etc/host"}, {"/etc/hostname"}, {"Echo"}},
                      CompletionRow{
                          {"image", "create", "a", "b", "--"}, {"--version", "--hwswid", "--mark"}, {"--dir"}},
                      CompletionRow{{"id", ""}, {"show", "decode", "set"}, {"get"}},
                      CompletionRow{{"completion", ""}, {"bash"}, {"values"}}));

TEST(CompletionScript, IsAcceptedByBash) {
    const TemporaryDirectory directory;
    const CommandResult script = moxctlAlone({"completion", "bash"});
    EXPECT_EQ(script.status, 0);
    EXPECT_THAT(script.out, HasSubstr("complete -F _moxctl moxctl\n"));
    const CommandResult checked = runCommand({"bash", "-n", directory.write("script", script.out)});
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.err, "");
}

TEST(CompletionWithoutRun, OffersWordsAllTheSame) {
    EXPECT_EQ(moxctlAlone({"completion", "values", "boards"}).status, 0);
    EXPECT_EQ(moxctlAlone({"completion", "values", "nodes"}).status, 5);
}

} // namespace
} // namespace mox::testing
