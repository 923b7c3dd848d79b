#pragma once
/// Firmware images for tests: a payload, what is said about it, and the file that comes of both.
///
///     Image image;
///     image.version = "11";
///     image.write("/ffs/run/boot/KOR-TIRVO2-QE-11.bin");
#include <cstdint>
#include <string>
#include <vector>

namespace mox::firm {

struct Image {
    std::string payload = "an image of the main FPGA, which has no length that divides by four";
    std::string version = "11";
    std::vector<std::string> hwSwIds = {"0x00500000"};
    bool damaged = false; ///< a byte of the payload is another one than when the CRC-32 was taken

    /// The file's bytes.
    std::string bytes() const;
    void write(const std::string& path) const;
};

} // namespace mox::firm
