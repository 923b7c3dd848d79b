#include "support/TemporaryDirectory.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <host/board/CreateRun.hpp>
#include <host/pal/ConfigTools.hpp>
#include <host/store/Store.hpp>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace mox::host;
using testing::HasSubstr;
using testing::SizeIs;
namespace files = std::filesystem;

constexpr const char* twoNodes = R"({ // two nodes
  "engine": "nats://localhost:4222",
  "nodes": [
    { "id": "0x1021", "unit": { "id": "ZUPA", "hwSwId": "0x203000" } },
    { "id": "0x1011", "unit": { "id": "KORA", "hwSwId": "0x500000" },
      "devices": { "boot": { "version": "1", "linuxActive": 54 },
                   "flash": [{ "id": 53, "path": "/ffs/fs1" }, { "id": 54, "path": "/ffs/fs2" }] },
      "radValues": [{ "id": "0x20006", "value": 7 }] }],
  "tags": [{ "name": "a.b", "type": "u32", "value": 5 }] })";

class CreatingARun : public testing::Test {
protected:
    bool create(std::string_view text = twoNodes) { return createRun(run, text, "board.json", why); }
    std::string node(const std::string& name) const { return run + "/nodes/1011/" + name; }

    mox::testing::TemporaryDirectory directory;
    const std::string run = directory / "run";
    std::string why;
};

TEST_F(CreatingARun, KeepsTheDescriptionAsItWas) {
    ASSERT_TRUE(create()) << why;
    std::ostringstream text;
    text << std::ifstream(run + "/board.json").rdbuf();
    EXPECT_EQ(text.str(), twoNodes);
}

TEST_F(CreatingARun, GivesEachNodeItsFileSystems) {
    ASSERT_TRUE(create()) << why;
    for (const char* name : {"log", "fs/ffs/fs1", "fs/ffs/fs2", "fs/ffs/run/logs", "fs/ffs/run/boot", "fs/ram",
                             "fs/rpram/hwapi", "fs/tmp", "fs/var/tmp/hwapi", "fs/opt/mox"}) {
        EXPECT_TRUE(files::is_directory(node(name))) << name;
    }
    EXPECT_TRUE(files::is_directory(run + "/nodes/1021/fs/ffs/run/logs"));
}

TEST_F(CreatingARun, MakesTheResetFileOfTheBmuOnlyWhereOneIsDescribed) {
    const char* text = R"({"nodes": [{ "id": 1, "unit": { "id": "ZUPA", "hwSwId": "0x203000" },
      "devices": { "fpgas": [{ "id": 1, "activeVersion": 5, "resetControl": true }] } },
      { "id": 2, "unit": { "id": "ZUPC", "hwSwId": "0x207000" },
      "devices": { "fpgas": [{ "id": 1, "activeVersion": 5 }] } }]})";
    const std::string name = "/fs/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig";
    ASSERT_TRUE(create(text)) << why;
    EXPECT_TRUE(files::is_regular_file(run + "/nodes/0001" + name));
    EXPECT_FALSE(files::exists(run + "/nodes/0002" + name));
}

TEST_F(CreatingARun, MakesTheTwoNamesOfTheFieldDirectoryOne) {
    ASSERT_TRUE(create()) << why;
    std::ofstream(node("fs/var/tmp/hwapi/field")) << "x";
    EXPECT_TRUE(files::exists(node("fs/rpram/hwapi/field")));
}

TEST_F(CreatingARun, LetsTheSoftwareRunFromTheDescribedFileSystem) {
    ASSERT_TRUE(create()) << why;
    EXPECT_TRUE(files::equivalent(node("fs/ffs/run"), node("fs/ffs/fs2")));
}

TEST_F(CreatingARun, StoresTagsNodesAndEngine) {
    ASSERT_TRUE(create()) << why;
    const auto store = Store::open(run + "/store", false, why);
    ASSERT_NE(store, nullptr) << why;
    EXPECT_EQ(readEngine(*store), "nats://localhost:4222");
    EXPECT_EQ(getTag(*store, "a.b"), numberValue(ValueType::u32, 5));
    ASSERT_THAT(listTags(*store, "a"), SizeIs(1));
    const auto nodes = readNodes(*store);
    ASSERT_THAT(nodes, SizeIs(2));
    EXPECT_EQ(nodes[0].id, 0x1011);
    EXPECT_EQ(nodes[1].unit.id, "ZUPA");
    ASSERT_TRUE(readNode(*store, 0x1021));
    EXPECT_EQ(readNode(*store, 0x1021)->unit.hwSwId, 0x203000u);
    EXPECT_FALSE(readNode(*store, 0x1031));
}

TEST_F(CreatingARun, SetsTheDescribedRadValues) {
    ASSERT_TRUE(create()) << why;
    const int fd = ::open(node("").c_str(), O_PATH | O_DIRECTORY);
    const auto words = rad::Words::open(fd, why);
    ::close(fd);
    ASSERT_NE(words, nullptr) << why;
    words->setDefault(0x20006, 1);
    EXPECT_EQ(words->read(0x20006).value, 7u);
    EXPECT_EQ(words->read(0x20006).state, rad::State::set);
}

TEST_F(CreatingARun, FillsADirectoryThatIsEmpty) {
    files::create_directory(run);
    EXPECT_TRUE(create()) << why;
}

TEST_F(CreatingARun, RefusesADirectoryThatIsNot) {
    ASSERT_TRUE(create());
    EXPECT_FALSE(create());
    EXPECT_EQ(why, run + ": expected a directory that is empty or does not exist");
    EXPECT_TRUE(files::exists(run + "/board.json"));
}

TEST_F(CreatingARun, RefusesAFile) {
    std::ofstream{run} << "x";
    EXPECT_FALSE(create());
    EXPECT_THAT(why, HasSubstr("expected a directory"));
}

TEST_F(CreatingARun, MakesNothingOfAWrongDescription) {
    EXPECT_FALSE(create("{\n\"nodes\": 1}"));
    EXPECT_EQ(why, "board.json:2: nodes: expected a list of 1 to 256 nodes, got 1");
    EXPECT_FALSE(files::exists(run));
}

TEST_F(CreatingARun, SaysThatTheDirectoryCannotBeMade) {
    std::ofstream{directory / "file"} << "x";
    EXPECT_FALSE(createRun(directory / "file/run", twoNodes, "board.json", why));
    EXPECT_THAT(why, HasSubstr("file/run"));
}

} // namespace
