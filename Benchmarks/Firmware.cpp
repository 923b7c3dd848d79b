/// Firmware images: checks and copies beside what the machine can do at best, and beside the reader that goes word by
/// word. Lines of severity debug are masked, as where nobody looks for a fault.
#include "FirmwareCases.hpp"

#include <syslog.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace mox::bench {
namespace {

std::string word(std::uint32_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>((value >> shift) & 0xFFU);
    }
    return bytes;
}

/// Bytes without a pattern, so that no reader is helped by one.
std::string payload(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 88172645;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

std::uint32_t writeImage(const std::string& path, std::uint32_t size) {
    const std::string bytes = payload(size);
    const auto crc = static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), size));
    std::ofstream file(path, std::ios::binary);
    file << bytes << trailerText(crc, size) << '\0' << word(size);
    if (!file.flush()) {
        die("an image could not be written");
    }
    return crc;
}

void writeMany(const std::string& directory) {
    std::filesystem::create_directory(directory);
    for (int i = 0; i < 9998; ++i) {
        std::ofstream(directory + "/file-of-another-kind-" + std::to_string(i) + ".bin");
    }
    std::ofstream(directory + "/KOR-TIRVO2-QE-1.bin");
    std::ofstream(directory + "/KOR-TIRVO2-QE-2.bin");
}

std::string newDirectory() {
    std::string name = std::filesystem::temp_directory_path() / "mox-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        die("no directory for images");
    }
    return name;
}

} // namespace

std::uint64_t cpuNs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<std::uint64_t>(t.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(t.tv_nsec);
}

std::string trailerText(std::uint32_t crc, std::uint32_t length) {
    std::string text = "<?xml version=\"1.0\"?>\n<trailer>\n  <Version>2</Version>\n  <Crc32>" + std::to_string(crc) +
                       "</Crc32>\n  <Length>" + std::to_string(length) +
                       "</Length>\n  <TargetUnit>KOR</TargetUnit>\n  <SwId>TIRVO2-QE</SwId>\n"
                       "  <SwVersion>0x0102</SwVersion>\n  <BuildTime>2024-05-06 07:08</BuildTime>\n  <HwSwIdList>\n";
    for (int i = 10; i < 27; ++i) {
        text += "    <HwSwId>0x0050" + std::to_string(i) + "00</HwSwId>\n";
    }
    return text + "    <HwSwId>0x12345678</HwSwId>\n  </HwSwIdList>\n</trailer>\n";
}

ImageFiles::ImageFiles() : m_directory(newDirectory()) {
    m_crc = writeImage(large(), payloadSize);
    writeImage(small(), 4096);
    writeMany(many());
}

std::string ImageFiles::copy() const {
    std::error_code none;
    const std::string memory = std::filesystem::is_directory("/dev/shm", none) ? "/dev/shm" : m_directory;
    return memory + "/mox-bench-copy-" + std::to_string(getpid());
}

ImageFiles::~ImageFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

} // namespace mox::bench

int main() {
    using namespace mox::bench;
    setlogmask(LOG_UPTO(LOG_WARNING));
    const ImageFiles files;
    Suite suite("firmware images");
    addPayloadCases(suite, files);
    addTrailerCases(suite, files);
    return suite.run() ? 0 : 1;
}
