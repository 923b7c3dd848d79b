#pragma once
/// What the cases of firmware images share.
#include "harness/Suite.hpp"

#include <cstdint>
#include <string>

namespace mox::bench {

/// Time that the calling thread has had a processor, in nanoseconds: what these cases do waits for nothing, and others
/// on the machine do not count.
std::uint64_t cpuNs();

/// Size of the large image's payload in bytes.
constexpr std::uint32_t payloadSize = 64U << 20;

/// Identifier that every image lists.
constexpr std::uint32_t ownHwSwId = 0x12345678;

/// A trailer of about 1 KiB, with eighteen identifiers of which the own is the last.
std::string trailerText(std::uint32_t crc, std::uint32_t length);

/// The files that the cases read; removed with the object.
class ImageFiles {
public:
    ImageFiles();
    ~ImageFiles();
    ImageFiles(const ImageFiles&) = delete;
    ImageFiles& operator=(const ImageFiles&) = delete;

    std::string large() const { return m_directory + "/large.bin"; }
    std::string small() const { return m_directory + "/small.bin"; }
    /// Where a payload goes to: into memory, as on a board, where the machine has such a file system.
    std::string copy() const;
    /// With 10,000 files, of which two are images by their names.
    std::string many() const { return m_directory + "/many"; }
    std::uint32_t crc() const { return m_crc; }

private:
    std::string m_directory;
    std::uint32_t m_crc = 0;
};

/// CRC-32 and copy of a large payload, and the memory that they take.
void addPayloadCases(Suite& suite, const ImageFiles& files);

/// Trailers: reading, parsing; and a directory that is searched.
void addTrailerCases(Suite& suite, const ImageFiles& files);

} // namespace mox::bench
