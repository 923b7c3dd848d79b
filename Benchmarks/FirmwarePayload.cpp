#include "FirmwareCases.hpp"
#include "support/WordwiseCrc.hpp"

#include <mox/Firmware.h>

#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <fstream>
#include <vector>

namespace mox::bench {
namespace {

constexpr std::size_t blockSize = 65536;

Samples rate(const char* metric, std::uint64_t began) {
    return {{metric, static_cast<double>(payloadSize) / static_cast<double>(cpuNs() - began)}};
}

void check(std::uint32_t crc, const ImageFiles& files) {
    if (crc != files.crc()) {
        die("another CRC than that of the image");
    }
}

Samples libraryCrc(const ImageFiles& files) {
    std::uint32_t crc = 0;
    const std::uint64_t began = cpuNs();
    calculate_crc(files.large().c_str(), payloadSize, &crc);
    auto samples = rate("CRC [GB/s]", began);
    check(crc, files);
    return samples;
}

Samples crcInMemory(const ImageFiles& files) {
    std::vector<unsigned char> bytes(payloadSize);
    std::FILE* const file = std::fopen(files.large().c_str(), "r");
    if (file == nullptr || std::fread(bytes.data(), 1, payloadSize, file) != payloadSize) {
        die("the image could not be read");
    }
    std::fclose(file);
    const std::uint64_t began = cpuNs();
    const auto crc = static_cast<std::uint32_t>(crc32(0, bytes.data(), payloadSize));
    auto samples = rate("CRC [GB/s]", began);
    check(crc, files);
    return samples;
}

Samples crcByWords(const ImageFiles& files) {
    std::FILE* const file = std::fopen(files.large().c_str(), "r");
    const std::uint64_t began = cpuNs();
    const std::uint32_t crc = mox::images::wordwiseCrc(file, payloadSize);
    auto samples = rate("CRC [GB/s]", began);
    std::fclose(file);
    check(crc, files);
    return samples;
}

/// What no reader of files can go beyond: the same blocks without a CRC.
Samples onlyRead(const ImageFiles& files) {
    std::vector<unsigned char> block(blockSize);
    std::FILE* const file = std::fopen(files.large().c_str(), "r");
    const std::uint64_t began = cpuNs();
    while (std::fread(block.data(), 1, blockSize, file) == blockSize) {
        keep(block[0]);
    }
    auto samples = rate("CRC [GB/s]", began);
    std::fclose(file);
    return samples;
}

Samples libraryCopy(const ImageFiles& files) {
    const std::string destination = files.copy();
    const std::uint64_t began = cpuNs();
    if (binary_copy_without_trailer(files.large().c_str(), destination.c_str()) != 0) {
        die("the payload could not be copied");
    }
    auto samples = rate("copy [GB/s]", began);
    unlink(destination.c_str());
    return samples;
}

Samples copyByBlocks(const ImageFiles& files, std::size_t size) {
    std::vector<unsigned char> block(size);
    const std::string destination = files.copy();
    const std::uint64_t began = cpuNs();
    std::FILE* const from = std::fopen(files.large().c_str(), "r");
    std::FILE* const to = std::fopen(destination.c_str(), "w");
    for (std::size_t left = payloadSize; left > 0; left -= size) {
        if (std::fread(block.data(), 1, size, from) != size || std::fwrite(block.data(), 1, size, to) != size) {
            die("the payload could not be copied");
        }
    }
    std::fclose(from);
    std::fclose(to);
    auto samples = rate("copy [GB/s]", began);
    unlink(destination.c_str());
    return samples;
}

/// @param item  such as VmHWM, in KiB
double memoryOf(const std::string& item) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, item.size(), item) == 0) {
            return std::stod(line.substr(item.size() + 1));
        }
    }
    die("no such item of memory");
}

Samples memoryOfAValidation(const ImageFiles& files) {
    // Once for what stays: libraries, the log, buffers of streams.
    binary_validate(files.small().c_str(), ownHwSwId);
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak begins here
    const double before = memoryOf("VmRSS");
    if (binary_validate(files.large().c_str(), ownHwSwId) != IMAGE_OK) {
        die("the image is not valid");
    }
    // One is added, because a median of nothing cannot be told from a missing one.
    return {{"memory for a validation, plus 1 [KiB]", memoryOf("VmHWM") - before + 1}};
}

} // namespace

void addPayloadCases(Suite& suite, const ImageFiles& files) {
    suite.add(
        "libMOX: calculate_crc", [&] { return libraryCrc(files); }, 1);
    suite.add(
        "zlib in memory", [&] { return crcInMemory(files); }, 1);
    suite.add(
        "stdio, word by word", [&] { return crcByWords(files); }, 1);
    suite.add(
        "stdio, 64-KiB blocks, no CRC", [&] { return onlyRead(files); }, 1);
    suite.add(
        "libMOX: payload copy", [&] { return libraryCopy(files); }, 1);
    suite.add(
        "stdio copy, 64-KiB blocks", [&] { return copyByBlocks(files, blockSize); }, 1);
    suite.add(
        "stdio copy, 1-KiB steps", [&] { return copyByBlocks(files, 1024); }, 1);
    suite.add("libMOX: binary_validate", [&] { return memoryOfAValidation(files); });
    suite.goal("CRC [GB/s]", "libMOX: calculate_crc", Goal::atLeast, 0.85, "zlib in memory");
    suite.goal("CRC [GB/s]", "libMOX: calculate_crc", Goal::atLeast, 18, "stdio, word by word");
    suite.goal("copy [GB/s]", "libMOX: payload copy", Goal::atLeast, 0.85, "stdio copy, 64-KiB blocks");
    suite.goal("memory for a validation, plus 1 [KiB]", "libMOX: binary_validate", Goal::atMost, 1024);
}

} // namespace mox::bench
