#include "Moxctl.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

TEST(RadSet, ChangesAParameterThatAServiceHasNamed) {
    const SimulatedRun run;
    run.up();
    EXPECT_EQ(run.moxctl({"rad", "get", "ECHO"}).out, "0\n");
    const CommandResult set = run.moxctl({"rad", "set", "ECHO", "0x11"});
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_THAT(set.out, IsEmpty());
    EXPECT_EQ(run.moxctl({"rad", "get", "ECHO"}).out, "17\n");
    EXPECT_EQ(run.json({"rad", "get", "0x20105"}),
              Json({{"id", "0x20105"}, {"name", "ECHO"}, {"value", 17}, {"default", 0}, {"state", "set"}}));
    EXPECT_EQ(run.json({"rad", "set", "ECHO", "--default"}).at("state"), "default");
    EXPECT_EQ(run.moxctl({"rad", "get", "131333"}).out, "0\n");
}

TEST(RadSet, ChangesOneNodeOnly) {
    const SimulatedRun run;
    EXPECT_EQ(run.moxctl({"rad", "set", "0x20001", "7", "--node", "1021"}).status, 0);
    EXPECT_EQ(run.json({"rad", "get", "0x20001"}).at("state"), "unset");
    EXPECT_EQ(run.json({"rad", "get", "0x20001", "--node", "1021"}).at("value"), 7);
}

TEST(RadSet, IsReadByTheServiceAtOnce) {
    const SimulatedRun run;
    run.up();
    run.moxctl({"rad", "set", "ECHO", "1"});
    run.moxctl({"msg", "request", "Echo", "0601"});
    EXPECT_THAT(run.moxctl({"log", "tail", "Echo"}).out, HasSubstr("echo of 0 bytes"));
}

TEST(RadOfAnAmbiguousName, ListsTheNumbers) {
    const SimulatedRun run;
    run.up();
    for (const Words& words : {Words{"rad", "get", "EAC"}, Words{"rad", "set", "EAC", "1"}}) {
        const CommandResult result = run.moxctl(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr("0x20038, 0x200B0"));
    }
    EXPECT_EQ(run.moxctl({"rad", "get", "0x200B0"}).status, 0);
}

TEST(RadList, TakesAPartOfTheNameOrAPattern) {
    const SimulatedRun run;
    run.up();
    for (const char* pattern : {"echostate", "EchoSt*e", "[E]choState"}) {
        const Json list = run.json({"rad", "list", pattern});
        EXPECT_EQ(list.at("schema"), "moxctl.rad.1");
        ASSERT_EQ(list.at("parameters").size(), 1U) << pattern;
        EXPECT_EQ(list.at("parameters").at(0).at("id"), "0x220034");
    }
    EXPECT_GT(run.json({"rad", "list"}).at("parameters").size(), 200U);
    EXPECT_EQ(run.json({"rad", "list", "no such name"}).at("parameters"), Json::array());
}

TEST(RadList, IsATableForAPerson) {
    const SimulatedRun run;
    run.moxctl({"rad", "set", "0x20001", "7"});
    EXPECT_THAT(run.moxctl({"rad", "list"}).out, StartsWith("ID       VALUE  DEFAULT  STATE  NAME\n"
                                                            "0x20001  7      -        set    -\n"));
}

} // namespace
} // namespace mox::testing
