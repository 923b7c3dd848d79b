#pragma once
/// What the bytes of an image say: the steps of reading a trailer, without files. Any thread; nothing blocks or logs.
///
///     const std::uint32_t offset = trailerOffset(lastWord);
///     if (isTrailerOffset(offset, imageSize)) {
///         const ParsedTrailer parsed = parseTrailer(std::string(trailerText(image.substr(offset))));
///         if (parsed.trailer != nullptr)
///             use(readFields(*parsed.trailer));
///     }
#include <pal/AaGpuXml.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ps::hwapi::common::image {

namespace constant {
/// The word at the end of an image, in bytes.
constexpr std::uint32_t offsetWordSize = 4;
/// A file's size that could not be found out.
constexpr std::uint32_t unknownSize = 0xFFFFFFFF;
} // namespace constant

/// The last word of an image as a copy of the payload takes it: as it is stored.
/// @param word  the four bytes, not null
std::uint32_t payloadLength(const unsigned char* word);

/// The last word of an image as a reader of the trailer takes it: from the stored into the processor's byte order.
/// On a little-endian processor both are the same number; images are made so that they always are.
/// @param word  the four bytes, not null
std::uint32_t trailerOffset(const unsigned char* word);

/// Whether a trailer can begin at an offset. There has to be a payload before it.
/// @param offset     bytes from the start of the image
/// @param imageSize  in bytes, the last word included; or unknownSize
bool isTrailerOffset(std::uint32_t offset, std::uint32_t imageSize);

/// Whether a payload can be so long. It may be empty.
/// @param length     in bytes
/// @param imageSize  in bytes, the last word included
bool isPayloadLength(std::uint32_t length, std::uint32_t imageSize);

/// The XML text of a trailer: all up to the first zero byte.
/// @param region  the bytes from the trailer's offset to the end of the image
std::string_view trailerText(std::string_view region);

/// A trailer and the document that it lies in.
struct ParsedTrailer {
    std::unique_ptr<AaGpuXmlNode> document; ///< null: the text does not parse
    AaGpuXmlNode* trailer = nullptr;        ///< the element "trailer"; null: there is none
    int parserResult = 0;                   ///< one of EAaGpuXmlResult
};

/// Parses the text of a trailer.
ParsedTrailer parseTrailer(const std::string& text);

/// The elements of a trailer; what is missing is 0 or empty.
struct TrailerFields {
    std::uint32_t version = 0; ///< of the trailer's form
    std::uint32_t crc32 = 0;   ///< of the payload
    std::uint32_t length = 0;  ///< of the payload, as its producer noted it; nobody relies on it
    std::string targetUnit;
    std::string swId;
    std::string swVersion; ///< see swVersionNumber
    std::string buildTime;
};

/// Reads the elements of a trailer.
/// @param trailer  the element "trailer"
TrailerFields readFields(const AaGpuXmlNode& trailer);

/// Reads the identifiers that a trailer lists, in document order.
/// @param trailer  the element "trailer"
/// @return nothing when there is no list
std::optional<std::vector<std::uint32_t>> readHwSwIds(const AaGpuXmlNode& trailer);

enum class HwSwIdMatch { none, minor, exact };

/// How a board's identifier is listed. An exact one counts before all others, else the first that is the same but for
/// its lowest 8 bits.
struct ListedHwSwId {
    HwSwIdMatch match = HwSwIdMatch::none;
    std::size_t index = 0; ///< of the one that matches; counts unless there is none
};

/// Looks for a board's identifier.
/// @param ids  what the trailer lists
/// @param own  hardware/software identifier of the board
ListedHwSwId findHwSwId(const std::vector<std::uint32_t>& ids, std::uint32_t own);

} // namespace ps::hwapi::common::image
