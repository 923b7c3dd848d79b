#include "unit/Firmware/image/ImageFixture.hpp"

#include "support/TemporaryDirectory.hpp"

#include <dirent.h>
#include <malloc.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace mox::images {
namespace {

using ::testing::_;
using ::testing::AnyNumber;
using ::testing::Invoke;

/// A directory in memory where there is such a file system: thousands of small files take their time on a disk.
std::unique_ptr<testing::TemporaryDirectory> newDirectory() {
    std::error_code none;
    if (std::filesystem::is_directory("/dev/shm", none) && access("/dev/shm", W_OK) == 0) {
        setenv("TMPDIR", "/dev/shm", 1);
    }
    return std::make_unique<testing::TemporaryDirectory>();
}

std::string asText(int level, unsigned int feature, const std::string& text) {
    std::ostringstream line;
    line << level << " 0x" << std::hex << feature << ": " << text;
    return line.str();
}

std::string asText(const testkit::LogLine& line) {
    const bool isDebug = line.level == testkit::debugLevel;
    const bool isInfo = line.level == testkit::infoLevel;
    return (isDebug ? "debug: " : isInfo ? "info: " : "graver: ") + line.text;
}

} // namespace

std::string offsetWord(std::uint32_t offset) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>((offset >> shift) & 0xFFU);
    }
    return bytes;
}

std::string imageOf(const std::string& payload, const std::string& trailerText) {
    return payload + trailerText + '\0' + offsetWord(static_cast<std::uint32_t>(payload.size()));
}

std::uint32_t crcOf(const std::string& bytes) {
    const auto* const first = reinterpret_cast<const Bytef*>(bytes.data());
    return static_cast<std::uint32_t>(crc32(0, first, static_cast<uInt>(bytes.size())));
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

std::string trailerFor(const std::string& payload, const std::string& swVersion, const std::string& ids) {
    return element("trailer", element("Version", "2") + element("Crc32", std::to_string(crcOf(payload))) +
                                  element("Length", std::to_string(payload.size())) + element("TargetUnit", "KOR") +
                                  element("SwId", "TIRVO2-QE") + element("SwVersion", swVersion) +
                                  element("BuildTime", "2024-05-06 07:08") + element("HwSwIdList", ids));
}

std::string someBytes(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random() & 0xFFU);
    }
    return bytes;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::size_t openDescriptors() {
    DIR* const directory = opendir("/proc/self/fd");
    if (directory == nullptr) {
        throw std::runtime_error("no /proc/self/fd");
    }
    std::size_t count = 0;
    while (readdir(directory) != nullptr) {
        ++count;
    }
    closedir(directory);
    return count;
}

OnImages::OnImages() : m_descriptors(openDescriptors()), m_directory(newDirectory()) {
    mallopt(M_PERTURB, 0x5A); // what nobody has written is not zero
    EXPECT_CALL(m_log, AaSysLogPrintE(_, _, _))
        .Times(AnyNumber())
        .WillRepeatedly(Invoke([this](auto level, unsigned int feature, const std::string& text) {
            m_platformLines.push_back(asText(level, feature, text));
            return 0;
        }));
}

OnImages::~OnImages() {
    EXPECT_EQ(openDescriptors(), m_descriptors);
}

std::string OnImages::in(const std::string& name) const {
    return *m_directory / name;
}

std::string OnImages::write(const std::string& bytes, const std::string& name) {
    const std::string path = in(name);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
    return path;
}

std::vector<std::string> OnImages::syslogLines() {
    std::vector<std::string> texts;
    for (const testkit::LogLine& line : m_syslog.lines()) {
        texts.push_back(asText(line));
    }
    m_syslog.clear();
    return texts;
}

std::vector<std::string> OnImages::platformLines() {
    return std::exchange(m_platformLines, {});
}

} // namespace mox::images
