#pragma once
/// What firmware images hold. Reading is the library's, so that moxctl never sees anything else than a board.
#include <mox/ImageTrailer.hpp>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mox::tools {

/// An image whose trailer could be read. An element that is missing has no text.
struct Image {
    std::string file;
    std::uint64_t size = 0;     ///< of the file, in bytes
    std::uint32_t offset = 0;   ///< of the trailer, and length of the payload
    std::string text;           ///< the trailer's XML, up to its zero byte
    bool hasZeroByte = true;    ///< whether one stands between the text and the offset word
    std::size_t wordInText = 0; ///< bytes of the offset word that are read as the end of the text
    std::optional<std::string> formatVersion;
    std::optional<std::string> crc;
    std::optional<std::string> length;
    std::optional<std::string> targetUnit;
    std::optional<std::string> swId;
    std::optional<std::string> swVersion;
    std::optional<std::string> buildTime;
    bool hasList = false;
    std::vector<std::uint32_t> hwSwIds;
};

/// The size of an image file. Throws Failure: notFound, or usage when it is no regular file or may not be read.
std::uint64_t sizeOfImage(const std::string& file);

/// Numbers of elements as boards read them; 0 for a missing one.
std::uint32_t elementNumber(const std::optional<std::string>& text);
std::uint32_t versionNumber(const Image& image);

/// Bytes of the offset word at the end of an image.
constexpr std::size_t offsetWordSize = ps::hwapi::common::image::constant::offsetWordSize;

/// The trailer of an image file, read once. First thread.
class TrailerReading {
public:
    /// Throws Failure as sizeOfImage.
    explicit TrailerReading(const std::string& file);

    const std::string& file() const { return m_file; }
    std::uint64_t size() const { return m_size; }

    /// Whether the offset word points into the file; only then there is a text.
    bool hasText() const { return !m_bytes.empty(); }
    std::uint32_t offset() const { return m_offset; }
    std::string text() const { return m_bytes.substr(0, m_bytes.find('\0')); }
    bool hasZeroByte() const { return text().size() + offsetWordSize < m_bytes.size(); }
    /// Whether the text would be XML if the offset word were not read as its end.
    bool runsIntoWord() const;

    bool isXml() const { return m_parsed.document != nullptr; }
    /// The element "trailer"; null when there is none. Belongs to this object.
    const AaGpuXmlNode* trailer() const { return m_parsed.trailer; }
    /// What it says. Only with a trailer.
    Image image() const;

    /// What the offset word says, and what it would say with its bytes the other way round. Only for a file of at least
    /// its size.
    std::uint32_t storedOffset() const;
    std::uint32_t swappedOffset() const;
    /// Whether a trailer begins at swappedOffset(), and only there.
    bool looksSwapped() const;

private:
    std::array<unsigned char, offsetWordSize> word() const;

    std::string m_file;
    std::uint64_t m_size;
    std::uint32_t m_offset = 0;
    std::string m_bytes; ///< from the offset to the end of the file
    ps::hwapi::common::image::ParsedTrailer m_parsed;
};

} // namespace mox::tools
