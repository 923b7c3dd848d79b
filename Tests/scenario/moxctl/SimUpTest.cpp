#include "Moxctl.hpp"
#include "support/OtherUser.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// Sockets, and names that lead to some, in the directory of a node.
Words socketsOf(const SimulatedRun& run, const std::string& node) {
    Words names;
    for (const auto& entry : std::filesystem::directory_iterator(run.path() + "/nodes/" + node)) {
        if (entry.is_socket() || entry.is_symlink()) {
            names.push_back(entry.path().filename().string());
        }
    }
    return names;
}

bool lives(pid_t pid) {
    struct stat state {};
    return stat(("/proc/" + std::to_string(pid) + "/root").c_str(), &state) == 0;
}

TEST(SimUp, ReturnsWhenEveryServiceTakesMessages) {
    const SimulatedRun run;
    const Json started = run.json({"sim", "up"});
    EXPECT_EQ(started.at("started"), Json({"1011/Echo", "1021/Echo"}));
    const Json status = run.json({"sim", "status"});
    for (const Json& service : status.at("services")) {
        EXPECT_EQ(service.at("state"), "waiting") << service;
        EXPECT_EQ(service.at("cpids"), Json({"0x0600"})) << service;
        EXPECT_THAT(service.at("upSince").get<std::string>(), ::testing::MatchesRegex("20..-..-..T..:..:..Z"));
    }
}

TEST(SimUp, HasNothingToDoTheSecondTime) {
    const SimulatedRun run;
    run.up();
    const pid_t pid = run.pidOf("1011", "Echo");
    const CommandResult again = run.moxctl({"sim", "up"});
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.out, IsEmpty());
    EXPECT_EQ(again.err, "nothing to do: all services run\n");
    EXPECT_EQ(run.pidOf("1011", "Echo"), pid);
}

TEST(SimUp, TakesTheRunAsAnArgumentToo) {
    const SimulatedRun run;
    const CommandResult result = moxctlAlone({"sim", "up", run.path()});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(moxctlAlone({"sim", "down", run.path()}).status, 0);
}

TEST(SimUp, StartsOnlyTheServicesOfANamedNode) {
    const SimulatedRun run;
    EXPECT_EQ(run.json({"sim", "up", "--node", "1021"}).at("started"), Json({"1021/Echo"}));
}

TEST(SimUpAfterAServiceWasKilled, StartsItAnew) {
    const SimulatedRun run;
    run.up();
    const pid_t other = run.pidOf("1021", "Echo");
    killProcess(run.pidOf("1011", "Echo"));
    EXPECT_EQ(run.json({"sim", "up"}).at("started"), Json({"1011/Echo"}));
    EXPECT_EQ(run.pidOf("1021", "Echo"), other);
    EXPECT_EQ(run.moxctl({"msg", "request", "Echo", "0601"}).status, 0);
}

TEST(SimUp, LeavesServicesInASessionOfTheirOwn) {
    const SimulatedRun run;
    run.up();
    const pid_t session = getsid(run.pidOf("1011", "Echo"));
    EXPECT_GT(session, 0);
    EXPECT_NE(session, getsid(0));
}

TEST(SimUp, WorksWithALongPath) {
    const SimulatedRun run("", std::string(200, 'r'));
    run.up();
    EXPECT_EQ(run.moxctl({"msg", "request", "1021:0600", "0601"}).status, 0);
    EXPECT_EQ(run.json({"ps", "list"}).at("processes").size(), 2U);
}

TEST(SimUp, FindsExecutablesInTheGivenDirectoriesFirst) {
    const SimulatedRun run(boardWith({{"Only", "only-here", {}}}));
    const CommandResult missing = run.moxctl({"sim", "up"});
    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.err, HasSubstr("executable 'only-here' not found"));
    std::filesystem::create_symlink("/bin/false", run.directory().path() + "/only-here");
    EXPECT_THAT(run.moxctl({"sim", "up", "--exe-dir", run.directory().path()}).err, HasSubstr("status 1"));
    auto setting = run.setting();
    setting.environment.emplace_back("MOX_EXE_PATH", "/nowhere:" + run.directory().path());
    EXPECT_THAT(runCommand(moxctlWords({"sim", "up"}), setting).err, HasSubstr("status 1"));
}

TEST(SimUpWithAServiceThatEnds, ShowsWhatItPrintedAndStopsTheOthers) {
    const SimulatedRun run(boardWith(
        {{"Echo", "MOXEchoExe", {}}, {"Broken", "/bin/sh", {"-c", "echo first; echo the reason >&2; exit 7"}}}));
    const CommandResult result = run.moxctl({"sim", "up"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("moxctl: service '1011/Broken' ended with status 7\n  first\n  the reason\n"));
    const Json status = run.json({"sim", "status"});
    for (const Json& service : status.at("services")) {
        EXPECT_EQ(service.at("state"), "down") << service;
    }
    EXPECT_THAT(socketsOf(run, "1011"), IsEmpty());
}

TEST(SimUpWithAServiceThatEnds, ShowsOnlyWhatThisStartPrinted) {
    const SimulatedRun run(boardWith({{"Broken", "/bin/sh", {"-c", "echo $$ is mine; exit 7"}}}));
    const Json first = Json::parse(run.moxctl({"sim", "up", "--json"}).err).at("error").at("details");
    const Json second = Json::parse(run.moxctl({"sim", "up", "--json"}).err).at("error").at("details");
    ASSERT_EQ(first.size(), 1U);
    ASSERT_EQ(second.size(), 1U);
    EXPECT_NE(first, second);
}

TEST(SimUpWithAServiceThatEnds, NamesTheSignal) {
    const SimulatedRun run(boardWith({{"Broken", "/bin/sh", {"-c", "kill -SEGV $$"}}}));
    EXPECT_THAT(run.moxctl({"sim", "up"}).err, HasSubstr("ended with SIGSEGV"));
}

TEST(SimUpWithAServiceThatNeverAnswers, EndsWithTheTimeLimitAndStopsIt) {
    const SimulatedRun run(boardWith({{"Mute", "/bin/sleep", {"600"}}}));
    const CommandResult result = run.moxctl({"sim", "up", "--wait", "0.2"});
    EXPECT_EQ(result.status, 124);
    EXPECT_THAT(result.err, HasSubstr("1011/Mute"));
    EXPECT_EQ(run.json({"sim", "status"}).at("services").at(0).at("state"), "down");
}

TEST(SimUpInterrupted, StopsWhatItHasStarted) {
    const SimulatedRun run(boardWith({{"Mute", "/bin/sleep", {"600"}}}));
    for (const int signal : {SIGINT, SIGTERM}) {
        RunningCommand sut(moxctlWords({"sim", "up", "-v"}), run.setting());
        sut.waitForErr("starting 1011/Mute");
        sut.signal(signal);
        const CommandResult result = sut.finish();
        EXPECT_EQ(result.status, 130);
        EXPECT_THAT(result.err, HasSubstr("moxctl: interrupted"));
        EXPECT_EQ(run.json({"sim", "status"}).at("services").at(0).at("state"), "down");
    }
}

TEST(SimDown, LeavesNoProcessAndNoSocket) {
    const SimulatedRun run;
    run.up();
    const pid_t pid = run.pidOf("1011", "Echo");
    const Json stopped = run.json({"sim", "down"});
    EXPECT_EQ(stopped.at("stopped"), Json({"1011/Echo", "1021/Echo"}));
    EXPECT_EQ(stopped.at("killed"), 0);
    EXPECT_FALSE(lives(pid));
    EXPECT_THAT(socketsOf(run, "1011"), IsEmpty());
    EXPECT_THAT(socketsOf(run, "1021"), IsEmpty());
    EXPECT_EQ(run.json({"ps", "list"}).at("processes").size(), 0U);
}

TEST(SimDown, HasNothingToDoWithoutServices) {
    const SimulatedRun run;
    const CommandResult result = run.moxctl({"sim", "down"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "nothing to do: no service runs\n");
}

TEST(SimDown, KillsAServiceThatDoesNotEnd) {
    const std::string directory = std::filesystem::path(MOXCTL_PATH).parent_path().string();
    const SimulatedRun run(
        boardWith({{"Stubborn", "/bin/sh", {"-c", "trap '' TERM; exec \"$0\"", directory + "/MOXEchoExe"}}}));
    auto setting = run.setting();
    setting.environment.emplace_back("MOX_SANDBOX_WRITABLE", directory);
    const CommandResult started = runCommand(moxctlWords({"sim", "up"}), setting);
    ASSERT_EQ(started.status, 0) << started.err;
    const pid_t pid = run.pidOf("1011", "Stubborn");
    const Json stopped = run.json({"sim", "down", "--wait", "0.1"});
    EXPECT_EQ(stopped.at("killed"), 1);
    EXPECT_FALSE(lives(pid));
}

TEST(SimDownAfterAServiceWasKilled, RemovesWhatItLeft) {
    const SimulatedRun run;
    run.up();
    killProcess(run.pidOf("1011", "Echo"));
    EXPECT_EQ(run.moxctl({"sim", "down"}).status, 0);
    EXPECT_THAT(socketsOf(run, "1011"), IsEmpty());
}

TEST(SimStatus, ShowsAKilledServiceAsDown) {
    const SimulatedRun run;
    run.up();
    killProcess(run.pidOf("1011", "Echo"));
    const Json status = run.json({"sim", "status"});
    EXPECT_EQ(status.at("services").at(0).at("state"), "down");
    EXPECT_TRUE(status.at("services").at(0).at("pid").is_null());
    EXPECT_EQ(status.at("services").at(1).at("state"), "waiting");
}

TEST(SimStatus, ShowsRunNodesAndEngine) {
    const SimulatedRun run;
    const Json status = run.json({"sim", "status"});
    EXPECT_EQ(status.at("schema"), "moxctl.status.1");
    EXPECT_EQ(status.at("run"), std::filesystem::canonical(run.path()).string());
    EXPECT_EQ(status.at("engine"), "local");
    EXPECT_EQ(status.at("nodes").at(1).at("node"), "1021");
    const std::string text = run.moxctl({"sim", "status"}).out;
    EXPECT_THAT(text, HasSubstr("2 nodes, engine local\nNODE  SERVICE"));
    EXPECT_THAT(run.moxctl({"sim", "status", "--node", "1021"}).out, Not(HasSubstr("1011 ")));
}

TEST(SimForAnUnprivilegedUser, StartsAsksAndStops) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "every test of this run does so";
    }
    if (const std::string whyNot = whyNotAsOtherUser(MOXCTL_PATH); !whyNot.empty()) {
        GTEST_SKIP() << whyNot;
    }
    const TemporaryDirectory directory;
    std::filesystem::permissions(directory.path(), std::filesystem::perms::all);
    const std::string run = directory.path() + "/run";
    const std::string moxctl = MOXCTL_PATH;
    for (const Words& words :
         {Words{moxctl, "sim", "new", run}, Words{moxctl, "sim", "up", run},
          Words{moxctl, "msg", "request", "Echo", "0601", "--run", run}, Words{moxctl, "sim", "down", run}}) {
        const CommandResult result = runCommand(asOtherUser(words), settingFor({}));
        EXPECT_EQ(result.status, 0) << words[2] << ": " << result.err;
    }
}

} // namespace
} // namespace mox::testing
