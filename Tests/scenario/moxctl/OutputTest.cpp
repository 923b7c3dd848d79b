#include "Moxctl.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Runs moxctl in a shell that has changed its standard output.
CommandResult moxctlWithOutput(const SimulatedRun& run, const std::string& program, const Words& words) {
    Words whole{"bash", "-c", program, "bash"};
    const Words started = moxctlWords(words);
    whole.insert(whole.end(), started.begin(), started.end());
    return runCommand(whole, run.setting());
}

TEST(OutputToADeviceThatIsFull, IsAFailureThatSaysSo) {
    const SimulatedRun run;
    for (const Words& words : {Words{"sim", "status"}, Words{"rad", "list", "--json"}, Words{"fw", "status"}}) {
        const CommandResult result = moxctlWithOutput(run, "\"$@\" >/dev/full", words);
        EXPECT_EQ(result.status, 1) << words.front();
        EXPECT_THAT(result.err, HasSubstr("standard output: No space left on device"));
    }
}

TEST(HelpToADeviceThatIsFull, IsAFailureThatSaysSo) {
    const SimulatedRun run;
    const CommandResult result = moxctlWithOutput(run, "\"$@\" >/dev/full", {"msg", "send", "-h"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "moxctl: standard output cannot be written\n");
}

TEST(OutputToAReaderThatHasGone, EndsTheCommandWithoutAWord) {
    const SimulatedRun run;
    // The reader of the pipe has ended before moxctl starts.
    const std::string program = "exec 3> >(true); wait $!; \"$@\" >&3";
    for (const Words& words : {Words{"sim", "status"}, Words{"rad", "list", "--json"}, Words{"fw", "status"}}) {
        const CommandResult result = moxctlWithOutput(run, program, words);
        EXPECT_EQ(result.status, 141) << words.front();
        EXPECT_THAT(result.err, IsEmpty());
    }
}

TEST(Table, KeepsARowOnItsLineAndLeavesTheTerminalAlone) {
    const SimulatedRun run;
    ASSERT_EQ(run.moxctl({"tag", "set", "app.x", "one\ntwo\x1b[1m"}).status, 0);
    EXPECT_THAT(run.moxctl({"tag", "list"}).out, HasSubstr("app.x  text  one\\ntwo\\x1b[1m\n"));
    EXPECT_EQ(run.moxctl({"tag", "get", "app.x"}).out, "one\ntwo\x1b[1m\n");
}

} // namespace
} // namespace mox::testing
