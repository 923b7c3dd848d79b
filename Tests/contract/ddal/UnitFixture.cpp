#include "UnitFixture.hpp"

#include <ddal/ddal_fpga.h>

#include <csignal>
#include <fstream>
#include <iterator>

namespace mox::testing {

const char* const unitBoard = R"({"nodes": [
  { "id": "0x1011",
    "unit": { "id": "KORE", "hwSwId": "0x00505001", "productionCode": "471238A.101", "serialNumber": "K516010000123456",
              "dieId": "00112233445566778899aabbccddeeff", "dieIdQuality": "good", "slot": 3 },
    "otherUnits": [{ "number": 7, "id": "ZUPA", "hwSwId": "0x00203000", "serialNumber": "Z1" }],
    "module": { "id": "MDAAV", "productionCode": "511002A.101", "serialNumber": "M1" },
    "externalModules": [{ "port": 4, "id": "MDAB", "productionCode": "E4.101", "serialNumber": "E4" },
                        { "port": 0, "id": "MDAC", "productionCode": "E0.101", "serialNumber": "E0" }],
    "devices": {
      "boot": { "version": "20160115", "areaSize": 1024, "blockSize": 100, "linuxActive": 54 },
      "fpgas": [
        { "id": 1, "activeVersion": 5, "slots": [{ "slot": 1, "version": 5 }], "areaSize": 1024, "blockSize": 100,
          "resetControl": true },
        { "id": "0x10001", "activeVersion": 10, "areaSize": 1024, "blockSize": 100,
          "slots": [{ "slot": 1, "version": 10 }, { "slot": 2, "version": 9 }] },
        { "id": "0x10002", "activeVersion": 4, "slots": [{ "slot": 1 }, { "slot": 2 }] },
        { "id": "0x10003", "activeVersion": 3 }],
      "flash": [{ "id": 53, "path": "/ffs/fs1" }, { "id": 54, "path": "/ffs/fs2" }],
      "rapidIo": { "ownId": "0x1011", "endpoints": ["0x1041", "0x0031", "0x1041"] },
      "systemInformation": [
        { "category": 0, "key": 15, "value": 3 }, { "category": 0, "key": 14, "value": 7 },
        { "category": 0, "key": 12, "indexKind": 5, "index": 0, "value": 1 },
        { "category": 0, "key": 12, "indexKind": 5, "index": 2, "value": 6 },
        { "category": 9, "key": 1, "value": "a text" }, { "category": 9, "key": 2, "type": "bytes", "value": "00ff01" }]
    } },
  { "id": "0x1021", "unit": { "id": "WIMA", "hwSwId": "0x00A00000", "boardType": 8 },
    "devices": { "fpgas": [{ "id": "0x10001", "activeVersion": 10, "slots": [{ "slot": 1, "version": 20 }] }] } }
]})";

CommandResult runPeer(std::vector<std::string> words, Environment environment) {
    words.insert(words.begin(), MOX_DDAL_PEER);
    CommandSetting setting;
    setting.environment = std::move(environment);
    return runCommand(words, setting);
}

FullDisk::FullDisk() : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_limit), 0);
    const rlimit nothing{0, m_limit.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &nothing), 0);
}

FullDisk::~FullDisk() {
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &m_limit), 0);
    std::signal(SIGXFSZ, m_handler);
}

std::string OnUnit::file(const std::string& content, const std::string& name) {
    const std::string path = "/tmp/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string OnUnit::image(std::uint32_t version, std::size_t size, const std::string& name) {
    std::string content = "MOX-SW-VERSION:" + std::to_string(version) + "\n";
    for (std::size_t i = content.size(); i < size; ++i)
        content.push_back(static_cast<char>(i * 7 + version));
    return file(content.substr(0, size), name);
}

std::string OnUnit::contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint32_t OnUnit::versionOf(std::uint32_t fpgaId) {
    std::uint32_t version = 0xDEAD;
    EXPECT_EQ(ddal_fpga_get_active_version(fpgaId, &version), DDAL_OK) << std::hex << fpgaId;
    return version;
}

} // namespace mox::testing
