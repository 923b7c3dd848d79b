#include "ImageFile.hpp"

#include "Failure.hpp"

#include <mox/Firmware.h>
#include <mox/ImageNumbers.hpp>
#include <mox/XmlValues.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace mox::tools {

namespace {

namespace image = ps::hwapi::common::image;

std::optional<std::string> textOf(const AaGpuXmlNode* trailer, const char* name) {
    const AaGpuXmlNode* node = FindXmlTag(trailer, name);
    return node != nullptr ? std::optional<std::string>(node->AaGpuXmlGetValue()) : std::nullopt;
}

void readIdentifiers(const AaGpuXmlNode* trailer, Image& into) {
    const AaGpuXmlNode* list = FindXmlTag(trailer, "HwSwIdList");
    into.hasList = list != nullptr;
    const AaGpuXmlNode* node = into.hasList ? list->AaGpuXmlGetFirstChildren() : nullptr;
    for (; node != nullptr; node = node->AaGpuXmlGetNext()) {
        if (node->AaGpuXmlGetName() == "HwSwId") {
            into.hwSwIds.push_back(image::hwSwIdNumber(node->AaGpuXmlGetValue()));
        }
    }
}

} // namespace

std::uint64_t sizeOfImage(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        throw Failure(errno == ENOENT ? ExitStatus::notFound : ExitStatus::usage, file + ": " + std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitStatus::usage, file + ": expected a regular file");
    }
    if (access(file.c_str(), R_OK) != 0) {
        throw Failure(ExitStatus::usage, file + ": " + std::strerror(errno));
    }
    return static_cast<std::uint64_t>(status.st_size);
}

std::uint32_t elementNumber(const std::optional<std::string>& text) {
    return text ? image::elementNumber(*text) : 0;
}

std::uint32_t versionNumber(const Image& read) {
    return image::swVersionNumber(read.swVersion.value_or(""));
}

TrailerReading::TrailerReading(const std::string& file) : m_file(file), m_size(sizeOfImage(file)) {
    char* bytes = nullptr;
    if (get_trailer(file.c_str(), &m_offset, &bytes) == IMAGE_OK) {
        m_bytes.assign(bytes, static_cast<std::size_t>(m_size - m_offset));
        m_parsed = image::parseTrailer(text());
    }
    std::free(bytes);
}

bool TrailerReading::runsIntoWord() const {
    return !hasZeroByte() &&
           image::parseTrailer(m_bytes.substr(0, m_bytes.size() - offsetWordSize)).document != nullptr;
}

Image TrailerReading::image() const {
    Image read;
    read.file = m_file;
    read.size = m_size;
    read.offset = m_offset;
    read.text = text();
    read.hasZeroByte = hasZeroByte();
    read.wordInText = read.hasZeroByte ? 0 : read.text.size() + offsetWordSize - m_bytes.size();
    read.formatVersion = textOf(trailer(), "Version");
    read.crc = textOf(trailer(), "Crc32");
    read.length = textOf(trailer(), "Length");
    read.targetUnit = textOf(trailer(), "TargetUnit");
    read.swId = textOf(trailer(), "SwId");
    read.swVersion = textOf(trailer(), "SwVersion");
    read.buildTime = textOf(trailer(), "BuildTime");
    readIdentifiers(trailer(), read);
    return read;
}

std::array<unsigned char, offsetWordSize> TrailerReading::word() const {
    std::ifstream stream(m_file, std::ios::binary);
    stream.seekg(-static_cast<std::streamoff>(offsetWordSize), std::ios::end);
    std::array<char, offsetWordSize> bytes{};
    stream.read(bytes.data(), bytes.size());
    std::array<unsigned char, offsetWordSize> word{};
    std::copy(bytes.begin(), bytes.end(), word.begin());
    return word;
}

std::uint32_t TrailerReading::storedOffset() const {
    return image::payloadLength(word().data());
}

std::uint32_t TrailerReading::swappedOffset() const {
    auto bytes = word();
    std::reverse(bytes.begin(), bytes.end());
    return image::trailerOffset(bytes.data());
}

bool TrailerReading::looksSwapped() const {
    const std::uint32_t offset = swappedOffset();
    if (!image::isTrailerOffset(offset, static_cast<std::uint32_t>(m_size)) || offset == m_offset) {
        return false;
    }
    std::ifstream stream(m_file, std::ios::binary);
    stream.seekg(offset);
    constexpr std::uint64_t most = 1024 * 1024; // more is no trailer
    std::string bytes(static_cast<std::size_t>(std::min(m_size - offset, most)), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return image::parseTrailer(std::string(image::trailerText(bytes))).trailer != nullptr;
}

} // namespace mox::tools
