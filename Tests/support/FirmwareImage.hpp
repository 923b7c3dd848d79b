#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mox::firmwaretest {

/// A firmware image as its producer writes it: payload, trailer, offset of the trailer.
///
///     FirmwareImage().version("0x0102").listing({0x00500000}).writeTo("/ffs/run/boot/KOR-TIRVO2-QE.bin");
class FirmwareImage {
public:
    FirmwareImage& payload(std::string bytes) {
        m_payload = std::move(bytes);
        return *this;
    }
    FirmwareImage& version(std::string text) {
        m_version = std::move(text);
        return *this;
    }
    /// Hardware/software identifiers of the boards that it fits.
    FirmwareImage& listing(std::vector<std::uint32_t> hwSwIds) {
        m_hwSwIds = std::move(hwSwIds);
        return *this;
    }
    /// Says a CRC-32 that need not be the payload's.
    FirmwareImage& crc(std::uint32_t value) {
        m_crc = value;
        return *this;
    }

    std::string bytes() const;
    void writeTo(const std::string& path) const;

private:
    std::string m_payload = "payload";
    std::string m_version = "1";
    std::vector<std::uint32_t> m_hwSwIds;
    std::optional<std::uint32_t> m_crc;
};

} // namespace mox::firmwaretest
