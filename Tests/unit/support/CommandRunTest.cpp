#include "support/CommandRun.hpp"

#include "support/SpawnFailures.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <stdexcept>
#include <string>

namespace {

using mox::testing::CommandResult;
using mox::testing::CommandSetting;
using mox::testing::runCommand;
using mox::testing::RunningCommand;
using mox::testing::spawnTellsFailures;
using testing::HasSubstr;

CommandResult shell(const std::string& script, const CommandSetting& setting = {}) {
    return runCommand({"/bin/sh", "-c", script}, setting);
}

/// What is thrown when a script takes longer than a second.
std::string failureOf(const std::string& script) {
    CommandSetting setting;
    setting.limit = std::chrono::seconds(1);
    try {
        shell(script, setting);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "none";
}

TEST(Command, HasStreamsStatusAndSignalOfItsProgram) {
    const CommandResult ended = shell("echo out; echo err >&2; exit 7");
    EXPECT_EQ(ended.out, "out\n");
    EXPECT_EQ(ended.err, "err\n");
    EXPECT_EQ(ended.status, 7);
    EXPECT_EQ(shell("kill -KILL $$").status, 128 + SIGKILL);
}

TEST(Command, IsGivenInputAndEnvironment) {
    CommandSetting setting;
    setting.input = std::string(200'000, 'x'); // more than a pipe holds
    setting.environment = {{"MOX_WORD", "two words"}, {"HOME", std::nullopt}};
    EXPECT_EQ(shell("echo $MOX_WORD ${HOME-unset}; wc -c", setting).out, "two words unset\n200000\n");
}

TEST(CommandThatTakesTooLong, IsReportedWithWhatItHasPrinted) {
    EXPECT_THAT(failureOf("echo begun; exec sleep 60"), HasSubstr("time limit; stdout: begun"));
}

TEST(CommandThatTakesTooLong, IsReportedAlsoWhenItHasClosedItsStreams) {
    EXPECT_THAT(failureOf("echo begun; exec sleep 60 >&- 2>&-"), HasSubstr("time limit"));
}

TEST(CommandThatIsNotFinished, IsKilledWithItsObject) {
    pid_t pid = 0;
    {
        const RunningCommand sut({"sleep", "60"});
        pid = sut.pid();
        EXPECT_EQ(kill(pid, 0), 0);
    }
    EXPECT_NE(kill(pid, 0), 0);
}

TEST(CommandThatDoesNotExist, IsReportedByName) {
    if (!spawnTellsFailures())
        GTEST_SKIP() << "nobody is told here that a program cannot be run";
    EXPECT_THROW(runCommand({"/no/such/program"}), std::runtime_error);
}

} // namespace
