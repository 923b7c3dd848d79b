#pragma once
/// Whether boards take an image. The library judges; what is said here explains its answer.
#include "ImageFile.hpp"

namespace mox::tools {

/// How an image's identifiers fit one of a board.
enum class IdentifierMatch { notAsked, exact, minor, none };

/// What is wrong with an image.
enum class ImageProblem {
    none,
    tooShort,
    offsetZero,
    offsetOutside,
    offsetSwapped,
    notXml,
    noTrailer,
    crc,
    noIdentifiers,
    noMatch
};

struct ImageVerdict {
    std::string file;
    int code = 0; ///< what the library answers for the image
    ImageProblem problem = ImageProblem::none;
    std::string message;            ///< one line: what is wrong, or what was found to be right
    std::vector<std::string> notes; ///< what is odd and does no harm
    IdentifierMatch match = IdentifierMatch::notAsked;
    std::optional<Image> image;              ///< when its trailer could be read
    std::optional<std::uint32_t> payloadCrc; ///< when it was computed
};

/// Judges an image, for the board with an identifier or for any. Throws Failure: notFound, usage (no regular file).
/// Blocks for reading the file.
ImageVerdict verifyImage(const std::string& file, std::optional<std::uint32_t> hwSwId);

/// Reads an image whose payload need not be right. Throws Failure as verifyImage, and verificationFailed when there is
/// no trailer to read.
Image readImage(const std::string& file);

/// How the image's identifiers fit a board's.
IdentifierMatch matchOf(const AaGpuXmlNode* trailer, std::uint32_t hwSwId);

} // namespace mox::tools
