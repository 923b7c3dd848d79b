#include "sweep/SweepBoard.hpp"

#include <filesystem>
#include <sstream>

namespace mox::sweep {

testkit::Board sweepBoard() {
    std::ostringstream geometry;
    geometry << R"("areaSize": 4096, "blockSize": )" << blockSize;
    return testkit::Board::text(R"({"name": "sweep", "nodes": [{"id": "0x1011",
        "unit": {"id": "KORA", "hwSwId": "0x00500000", "serialNumber": "K1"},
        "devices": {
            "boot": {"location": "primary", "version": "5", )" +
                                geometry.str() + R"(},
            "fpgas": [
                {"id": 1, "activeVersion": 5, "slots": [{"slot": 1, "version": 5}], )" +
                                geometry.str() + R"(},
                {"id": "0x10001", "activeVersion": 5,
                 "slots": [{"slot": 1, "version": 5}, {"slot": 2, "version": 5}], )" +
                                geometry.str() + R"(}]}}]})");
}

std::string payloadOf(std::uint32_t version) {
    std::string payload = "MOX-SW-VERSION:" + std::to_string(version) + "\n";
    while (payload.size() < (blocksOfAnImage - 1) * blockSize + blockSize / 2)
        payload += static_cast<char>('a' + (payload.size() + version) % 23);
    return payload;
}

void placeImage(const Component& component, std::uint32_t version) {
    std::filesystem::create_directories(imageDirectory);
    firmwaretest::FirmwareImage()
        .payload(payloadOf(version))
        .version(std::to_string(version))
        .listing({hwSwId})
        .writeTo(imagePath(component));
}

} // namespace mox::sweep
