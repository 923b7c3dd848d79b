#include "support/FirmwareImage.hpp"

#include <zlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace mox::firmwaretest {
namespace {

std::uint32_t crcOf(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

std::string littleEndian(std::uint32_t word) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((word >> shift) & 0xFFU);
    return bytes;
}

} // namespace

std::string FirmwareImage::bytes() const {
    std::ostringstream xml;
    xml << "<trailer><Version>1</Version><Crc32>" << m_crc.value_or(crcOf(m_payload)) << "</Crc32><Length>"
        << m_payload.size() << "</Length><TargetUnit>unit</TargetUnit><SwId>sw</SwId><SwVersion>" << m_version
        << "</SwVersion><BuildTime>now</BuildTime><HwSwIdList>" << std::hex;
    for (const std::uint32_t id : m_hwSwIds)
        xml << "<HwSwId>0x" << id << "</HwSwId>";
    xml << "</HwSwIdList></trailer>" << '\0';
    return m_payload + xml.str() + littleEndian(static_cast<std::uint32_t>(m_payload.size()));
}

void FirmwareImage::writeTo(const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    file << bytes();
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace mox::firmwaretest
