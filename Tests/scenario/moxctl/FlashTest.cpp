#include "Moxctl.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* oneFpga = R"({"nodes": [
  {"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}, "devices": {"fpgas": [
    {"id": "0x10001", "activeVersion": 7, "slots": [{"slot": 1, "version": 7}, {"slot": 2}], "blockSize": 16}]}},
  {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}, "devices": {"boot": {"version": "20160115"}}}]})";

Json areas(const SimulatedRun& run) {
    const Json list = run.json({"flash", "list"});
    EXPECT_EQ(list.at("schema"), "moxctl.flash.1");
    return list.at("areas");
}

/// Writes an image of the version 8 to the primary slot, in a process of the run.
CommandResult update(const SimulatedRun& run) {
    const std::string image = run.directory().write("image", "MOX-SW-VERSION:8\n" + std::string(100, 'x'));
    CommandSetting setting = run.setting();
    setting.environment.emplace_back("MOX_RUN", run.path());
    setting.environment.emplace_back("MOX_NODE", "1011");
    return runCommand({MOX_DDAL_PEER, "update", "0x10001", "1", image}, setting);
}

TEST(FlashHelp, NamesEverythingThatCanFollow) {
    EXPECT_THAT(moxctlAlone({"-h"}).out, HasSubstr("flash "));
    for (const char* text : {"list ", "plan "})
        EXPECT_THAT(moxctlAlone({"flash", "-h"}).out, HasSubstr(text));
    for (const char* text : {"PLAN", "cut:N", "fail:N", "none", "2b + 1"})
        EXPECT_THAT(moxctlAlone({"flash", "plan", "-h"}).out, HasSubstr(text));
}

TEST(FlashList, ShowsTheImageAreasOfAllNodes) {
    const SimulatedRun run(oneFpga);
    const Json all = areas(run);
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all.at(0).at("node"), "1011");
    EXPECT_EQ(all.at(0).at("area"), "fpga-10001-1");
    EXPECT_EQ(all.at(0).at("state"), "whole");
    EXPECT_EQ(all.at(0).at("version"), 7);
    EXPECT_EQ(all.at(0).at("bytes"), 16);
    EXPECT_EQ(all.at(0).at("crc32"), "0x3ADEAE50");
    EXPECT_TRUE(std::filesystem::is_regular_file(all.at(0).at("file").get<std::string>()));
    EXPECT_EQ(all.at(1).at("area"), "fpga-10001-2");
    EXPECT_EQ(all.at(1).at("state"), "broken");
    EXPECT_TRUE(all.at(1).at("version").is_null());
    EXPECT_EQ(all.at(2).at("area"), "uboot-primary");
    EXPECT_EQ(all.at(3).at("area"), "uboot-backup");
    EXPECT_EQ(all.at(3).at("node"), "1021");
    EXPECT_EQ(run.json({"flash", "list", "--node", "1021"}).at("areas").size(), 2U);
    EXPECT_THAT(run.moxctl({"flash", "list"}).out, StartsWith("NODE  AREA"));
}

TEST(FlashPlan, BreaksTheNextUpdateAndNoOther) {
    const SimulatedRun run(oneFpga);
    const CommandResult planned = run.moxctl({"flash", "plan", "cut:9"});
    EXPECT_EQ(planned.status, 0);
    EXPECT_EQ(planned.err, "the next update on node 1011: cut:9\n");
    EXPECT_EQ(update(run).status, 128 + 9) << "killed";
    EXPECT_EQ(areas(run).at(0).at("state"), "broken");
    EXPECT_EQ(run.json({"sim", "reset"}).at("reset").at(0).at("fpgas").at(0).at("version"), 0);
    EXPECT_EQ(update(run).out, "0");
    EXPECT_EQ(areas(run).at(0).at("version"), 8);
    EXPECT_EQ(run.json({"sim", "reset"}).at("reset").at(0).at("fpgas").at(0).at("version"), 8);
}

TEST(FlashPlan, CanBeAnErrorOfTheDevice) {
    const SimulatedRun run(oneFpga);
    EXPECT_EQ(run.json({"flash", "plan", "fail:1"}), Json({{"node", "1011"}, {"plan", "fail:1"}}));
    EXPECT_EQ(update(run).out, "-5");
    EXPECT_EQ(areas(run).at(0).at("state"), "broken");
}

TEST(FlashPlan, CanBeTakenBack) {
    const SimulatedRun run(oneFpga);
    ASSERT_EQ(run.moxctl({"flash", "plan", "cut:1"}).status, 0);
    ASSERT_EQ(run.moxctl({"flash", "plan", "none"}).status, 0);
    EXPECT_EQ(update(run).out, "0");
}

TEST(FlashPlan, IsForTheNamedNode) {
    const SimulatedRun run(oneFpga);
    ASSERT_EQ(run.moxctl({"flash", "plan", "cut:1", "--node", "1021"}).status, 0);
    EXPECT_EQ(update(run).out, "0");
}

TEST(FlashPlan, IsRefusedInAnyOtherForm) {
    const SimulatedRun run(oneFpga);
    for (const char* text : {"cut", "cut:0", "kill:3", "fail:x"}) {
        const CommandResult result = run.moxctl({"flash", "plan", text});
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_THAT(result.err, HasSubstr("expected cut:N, fail:N or none with an operation N from 1")) << text;
    }
}

} // namespace
} // namespace mox::testing
