#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <set>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(SimNew, MakesARunFromAReadyMadeBoardByItsName) {
    const TemporaryDirectory directory;
    const std::string run = directory.path() + "/run";
    const CommandResult result = moxctlAlone({"sim", "new", run, "--board", "echo-pair", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    const Json made = Json::parse(result.out);
    EXPECT_EQ(made.at("run"), run);
    EXPECT_EQ(made.at("board"), "echo-pair");
    EXPECT_EQ(made.at("nodes"), 2);
    EXPECT_TRUE(std::filesystem::is_directory(run + "/nodes/1011"));
}

TEST(SimNew, MakesARunFromAFile) {
    const SimulatedRun sut(boardWith({}, "0x0A21"));
    const Json status = sut.json({"sim", "status"});
    EXPECT_EQ(status.at("nodes").size(), 1U);
    EXPECT_EQ(status.at("nodes").at(0).at("node"), "0a21");
}

TEST(SimNew, RefusesADirectoryThatHoldsSomething) {
    const TemporaryDirectory directory;
    directory.write("mine", "text");
    const CommandResult result = moxctlAlone({"sim", "new", directory.path()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr(directory.path()));
    EXPECT_TRUE(std::filesystem::exists(directory.path() + "/mine"));
}

TEST(SimNew, ListsReadyMadeBoardsWithoutMakingAnything) {
    const CommandResult result = moxctlAlone({"sim", "new", "--list", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    const Json list = Json::parse(result.out);
    EXPECT_EQ(list.at("schema"), "moxctl.boards.1");
    std::set<std::string> names;
    for (const Json& board : list.at("boards")) {
        names.insert(board.at("name").get<std::string>());
        EXPECT_FALSE(board.at("nodes").empty()) << board;
    }
    EXPECT_EQ(names.count("echo-pair"), 1U);
    EXPECT_THAT(moxctlAlone({"sim", "new", "--list"}).out, StartsWith("NAME"));
}

TEST(SimNew, TakesBoardsFromTheDirectoryThatTheEnvironmentNames) {
    const TemporaryDirectory directory;
    directory.write("mine.json", boardWith({}));
    const CommandResult result =
        runCommand(moxctlWords({"sim", "new", "--list", "--json"}), settingFor({{"MOX_BOARDS", directory.path()}}));
    const Json boards = Json::parse(result.out).at("boards");
    ASSERT_EQ(boards.size(), 1U);
    EXPECT_EQ(boards.at(0).at("name"), "mine");
}

TEST(SimNewWithADescriptionThatIsADirectory, NamesIt) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() + "/odd.json");
    const CommandResult result =
        runCommand(moxctlWords({"sim", "new", "--list"}), settingFor({{"MOX_BOARDS", directory.path()}}));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "moxctl: " + directory.path() + "/odd.json: expected a board description: Is a directory\n");
}

TEST(SimNewWithAMissingDescription, NamesWhatWasExpected) {
    const TemporaryDirectory directory;
    for (const char* board : {"/no/such/board.json", "no-such-name"}) {
        const CommandResult result = moxctlAlone({"sim", "new", directory.path() + "/run", "--board", board});
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr(board));
        EXPECT_THAT(result.err, HasSubstr("moxctl sim new --list"));
        EXPECT_FALSE(std::filesystem::exists(directory.path() + "/run"));
    }
}

TEST(SimNewWithAWrongDescription, NamesFileLineAndWhatWasExpected) {
    const TemporaryDirectory directory;
    const std::string file =
        directory.write("board.json", "{\n  // one node\n  \"nodes\": [\n    {\"id\": \"x\"}\n  ]\n}\n");
    const CommandResult result = moxctlAlone({"sim", "new", directory.path() + "/run", "--board", file});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, StartsWith("moxctl: " + file + ":4: "));
    EXPECT_THAT(result.err, HasSubstr("expected"));
    EXPECT_FALSE(std::filesystem::exists(directory.path() + "/run"));
}

} // namespace
} // namespace mox::testing
