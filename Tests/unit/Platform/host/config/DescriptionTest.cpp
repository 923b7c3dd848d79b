#include <gmock/gmock.h>
#include <host/board/Description.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace mox::host;
using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* complete = R"({
  // comments are allowed
  "$schema": "board.schema.json", "name": "all of it", "engine": "nats://broker:4222",
  "nodes": [{
    "id": "0x1011", "name": "first",
    "unit": { "id": "KORE", "hwSwId": "0x00505000", "productionCode": "473095A.102", "serialNumber": "L1234567890",
              "dieId": "die", "dieIdQuality": "good", "slot": 3, "boardType": 7 },
    "otherUnits": [{ "number": 1, "id": "ZUPA", "hwSwId": 2109440 }],
    "module": { "id": "MDAA", "productionCode": "511001A", "serialNumber": "M1" },
    "externalModules": [{ "port": 4, "id": "MDAB" }],
    "devices": {
      "boot": { "location": "backup", "version": "20161124", "linuxActive": 54 },
      "fpgas": [{ "id": "0x10001", "activeVersion": "0x0A", "slots": [{ "slot": 1, "version": 10 }, { "slot": 2, "version": 9 }] }],
      "flash": [{ "id": 53, "path": "/ffs/fs1", "mode": "rw" }, { "id": 54, "path": "/ffs/fs2" }],
      "rapidIo": { "ownId": "0x11", "endpoints": ["0x12", 19], "switches": [{ "device": 1, "ports": 8 }],
                   "memories": [{ "device": "0x12", "address": "0x100000000", "size": 65536 }] },
      "power": { "supplies": [{ "ac": true, "samples": 8, "inputVoltageMv": 230000 }], "feeds": [{ "number": 2, "on": false }] },
      "alarms": { "external": 5, "eac2": 0, "outputs": 4 },
      "routes": [{ "prefix": "0x1200", "bits": 8, "type": "rapidIo" }],
      "systemInformation": [{ "category": 0, "key": 12, "indexKind": 5, "index": 2, "value": 6 },
                            { "category": 0, "key": 1, "type": "bytes", "value": "00ff" }],
      "bipDomain": 9, "sfpPorts": 2, "ethernetPorts": 6,
      "radio": { "cpriModules": 1, "cpriLinks": 2, "cpriContainers": 3, "rp3Streams": 4, "rp3Groups": 5 }
    },
    "services": [{ "name": "Echo", "executable": "MOXEchoExe", "arguments": ["-v", "x y"], "cpid": "0x0600" }],
    "radValues": [{ "id": "0x20006", "value": 1 }]
  }],
  "tags": [{ "name": "a.text", "value": "on" }, { "name": "a.word", "value": 5 },
           { "name": "a.byte", "type": "u8", "value": "0x10" }, { "name": "a.bytes", "type": "bytes", "value": "0102" }]
})";

Description parsed(std::string_view text) {
    DescriptionError error;
    auto description = parseDescription(text, "board.json", error);
    EXPECT_TRUE(description) << error.message();
    return description.value_or(Description());
}

TEST(ADescription, GivesTheWholeRun) {
    const auto sut = parsed(complete);
    EXPECT_EQ(sut.name, "all of it");
    EXPECT_EQ(sut.engine, "nats://broker:4222");
    ASSERT_THAT(sut.nodes, SizeIs(1));
    ASSERT_THAT(sut.tags, SizeIs(4));
    EXPECT_EQ(sut.tags[0].value, (TypedValue{ValueType::text, "on"}));
    EXPECT_EQ(sut.tags[1].value, numberValue(ValueType::u32, 5));
    EXPECT_EQ(sut.tags[2].value, numberValue(ValueType::u8, 16));
    EXPECT_EQ(sut.tags[3].value, (TypedValue{ValueType::bytes, "\1\2"}));
}

void expectIdentity(const NodeDescription& node) {
    EXPECT_EQ(node.id, 0x1011);
    EXPECT_EQ(node.name, "first");
    EXPECT_EQ(node.unit.number, 0u);
    EXPECT_EQ(node.unit.id, "KORE");
    EXPECT_EQ(node.unit.hwSwId, 0x00505000u);
    EXPECT_EQ(node.unit.productionCode, "473095A.102");
    EXPECT_EQ(node.unit.serialNumber, "L1234567890");
    EXPECT_EQ(node.unit.dieId, "die");
    EXPECT_EQ(node.unit.dieIdQuality, "good");
    EXPECT_EQ(node.unit.slot, 3);
    EXPECT_EQ(node.unit.boardType, 7u);
    ASSERT_THAT(node.otherUnits, SizeIs(1));
    EXPECT_EQ(node.otherUnits[0].number, 1u);
    EXPECT_EQ(node.otherUnits[0].hwSwId, 0x203000u);
    ASSERT_TRUE(node.module);
    EXPECT_EQ(node.module->productionCode, "511001A");
    ASSERT_THAT(node.externalModules, SizeIs(1));
    EXPECT_EQ(node.externalModules[0].port, 4u);
    EXPECT_EQ(node.externalModules[0].id, "MDAB");
}

TEST(ADescription, GivesTheIdentityOfItsUnits) {
    expectIdentity(parsed(complete).nodes.at(0));
}

TEST(ADescription, GivesWhatIsReadAgainFromANodesPart) {
    const auto node = parsed(complete).nodes.at(0);
    DescriptionError error;
    const auto again = parseNode(node.json, error);
    ASSERT_TRUE(again) << error.message();
    expectIdentity(*again);
    EXPECT_EQ(again->json, node.json);
    EXPECT_EQ(again->devices.rapidIo->memories.at(0).address, 0x100000000u);
}

TEST(ADescription, GivesBootAndFlashDevices) {
    const auto devices = parsed(complete).nodes.at(0).devices;
    ASSERT_TRUE(devices.boot);
    EXPECT_EQ(devices.boot->location, 1u);
    EXPECT_EQ(devices.boot->version, "20161124");
    EXPECT_EQ(devices.boot->linuxActive, 54u);
    ASSERT_THAT(devices.fpgas, SizeIs(1));
    EXPECT_EQ(devices.fpgas[0].id, 0x10001u);
    EXPECT_EQ(devices.fpgas[0].activeVersion, 10u);
    ASSERT_THAT(devices.fpgas[0].slots, SizeIs(2));
    EXPECT_EQ(devices.fpgas[0].slots[1].version, 9u);
    ASSERT_THAT(devices.flash, SizeIs(2));
    EXPECT_EQ(devices.flash[0].mode, 2u);
    EXPECT_EQ(devices.flash[1].mode, 1u);
    EXPECT_EQ(devices.flash[1].path, "/ffs/fs2");
}

TEST(ADescription, GivesTheSizesOfImageAreas) {
    const auto devices = parsed(R"({"nodes": [{ "id": 1, "unit": { "id": "X", "hwSwId": 0 }, "devices": {
        "boot": { "version": "1", "areaSize": 4096, "blockSize": "0x100" },
        "fpgas": [{ "id": 1, "activeVersion": 0, "resetControl": true }, { "id": 2, "activeVersion": 0, "areaSize": 100 }]
    } }]})")
                             .nodes.at(0)
                             .devices;
    EXPECT_EQ(devices.boot->geometry.areaSize, 4096U);
    EXPECT_EQ(devices.boot->geometry.blockSize, 256U);
    ASSERT_THAT(devices.fpgas, SizeIs(2));
    EXPECT_EQ(devices.fpgas[0].geometry.areaSize, 33554432U);
    EXPECT_EQ(devices.fpgas[0].geometry.blockSize, 65536U);
    EXPECT_TRUE(devices.fpgas[0].resetControl);
    EXPECT_EQ(devices.fpgas[1].geometry.blockSize, 100U) << "a block is never larger than its area";
    EXPECT_FALSE(devices.fpgas[1].resetControl);
}

TEST(ADescription, GivesAreasThatAreBlank) {
    const auto devices = parsed(R"({"nodes": [{ "id": 1, "unit": { "id": "X", "hwSwId": 0 }, "devices": {
        "fpgas": [{ "id": 1, "activeVersion": 0, "slots": [{ "slot": 1 }] }] } }]})")
                             .nodes.at(0)
                             .devices;
    ASSERT_THAT(devices.fpgas.at(0).slots, SizeIs(1));
    EXPECT_FALSE(devices.fpgas[0].slots[0].version);
}

TEST(ADescription, GivesRapidIoAndRoutes) {
    const auto devices = parsed(complete).nodes.at(0).devices;
    ASSERT_TRUE(devices.rapidIo);
    EXPECT_EQ(devices.rapidIo->ownId, 0x11);
    EXPECT_THAT(devices.rapidIo->endpoints, ElementsAre(0x12, 19));
    EXPECT_EQ(devices.rapidIo->switches.at(0).ports, 8u);
    EXPECT_EQ(devices.rapidIo->memories.at(0).size, 65536u);
    ASSERT_THAT(devices.routes, SizeIs(1));
    EXPECT_EQ(devices.routes[0].prefix, 0x1200);
    EXPECT_EQ(devices.routes[0].bits, 8);
    EXPECT_EQ(devices.routes[0].type, 2);
}

TEST(ADescription, GivesPowerAlarmsAndLinks) {
    const auto devices = parsed(complete).nodes.at(0).devices;
    ASSERT_THAT(devices.supplies, SizeIs(1));
    EXPECT_TRUE(devices.supplies[0].ac);
    EXPECT_EQ(devices.supplies[0].samples, 8u);
    EXPECT_EQ(devices.supplies[0].inputVoltageMv, 230000u);
    ASSERT_THAT(devices.feeds, SizeIs(1));
    EXPECT_EQ(devices.feeds[0].number, 2u);
    EXPECT_FALSE(devices.feeds[0].on);
    EXPECT_EQ(devices.alarms.external, 5u);
    EXPECT_EQ(devices.alarms.eac2, 0u);
    EXPECT_EQ(devices.alarms.outputs, 4u);
    EXPECT_EQ(devices.bipDomain, 9u);
    EXPECT_EQ(devices.sfpPorts, 2u);
    EXPECT_EQ(devices.ethernetPorts, 6u);
    EXPECT_EQ(devices.radio.rp3Groups, 5u);
}

TEST(ADescription, GivesSystemInformation) {
    const auto devices = parsed(complete).nodes.at(0).devices;
    ASSERT_THAT(devices.systemInformation, SizeIs(2));
    EXPECT_EQ(devices.systemInformation[0].index, 2u);
    EXPECT_EQ(devices.systemInformation[0].value, numberValue(ValueType::u64, 6));
    EXPECT_FALSE(devices.systemInformation[1].index);
    EXPECT_EQ(devices.systemInformation[1].value.bytes, std::string("\0\xFF", 2));
}

TEST(ADescription, GivesServicesAndRadValues) {
    const auto node = parsed(complete).nodes.at(0);
    ASSERT_THAT(node.services, SizeIs(1));
    EXPECT_EQ(node.services[0].executable, "MOXEchoExe");
    EXPECT_THAT(node.services[0].arguments, ElementsAre("-v", "x y"));
    EXPECT_EQ(node.services[0].cpid, 0x0600);
    ASSERT_THAT(node.radValues, SizeIs(1));
    EXPECT_EQ(node.radValues[0].id, 0x20006u);
}

TEST(ADescription, OfTheLeastHasNoDevices) {
    const auto sut = parsed(R"({"nodes": [{"id": 1, "unit": {"id": "X", "hwSwId": 0}}]})");
    EXPECT_EQ(sut.engine, "local");
    ASSERT_THAT(sut.nodes, SizeIs(1));
    EXPECT_FALSE(sut.nodes[0].devices.boot);
    EXPECT_FALSE(sut.nodes[0].devices.alarms.external);
    EXPECT_FALSE(sut.nodes[0].unit.boardType);
    EXPECT_FALSE(sut.nodes[0].module);
}

std::vector<std::string> readyMade() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_BOARD_DIRECTORY "/descriptions")) {
        files.push_back(entry.path().stem().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

Description readyMadeOf(const std::string& name) {
    std::ifstream file(MOX_BOARD_DIRECTORY "/descriptions/" + name + ".json");
    std::ostringstream text;
    text << file.rdbuf();
    return parsed(text.str());
}

class AReadyMadeDescription : public testing::TestWithParam<std::string> {};

TEST_P(AReadyMadeDescription, IsGood) {
    const auto sut = readyMadeOf(GetParam());
    EXPECT_FALSE(sut.name.empty());
    for (const auto& node : sut.nodes) {
        EXPECT_FALSE(node.devices.flash.empty());
        EXPECT_TRUE(node.devices.boot);
    }
}

INSTANTIATE_TEST_SUITE_P(Board, AReadyMadeDescription, testing::ValuesIn(readyMade()), [](const auto& row) {
    std::string name = row.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(TheEchoPair, StartsEchoOnTwoNodes) {
    const auto sut = readyMadeOf("echo-pair");
    ASSERT_THAT(sut.nodes, SizeIs(2));
    EXPECT_EQ(sut.nodes[0].id, 0x1011);
    EXPECT_EQ(sut.nodes[1].id, 0x1021);
    for (const auto& node : sut.nodes) {
        ASSERT_THAT(node.services, SizeIs(1));
        EXPECT_EQ(node.services[0].name, "Echo");
        EXPECT_EQ(node.services[0].executable, "MOXEchoExe");
        EXPECT_EQ(node.services[0].cpid, 0x0600);
    }
}

} // namespace
