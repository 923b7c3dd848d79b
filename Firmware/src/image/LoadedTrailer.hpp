#pragma once
/// The trailer of an image file, read and parsed: what the checks of an image begin with.
#include <mox/ImageTrailer.hpp>

#include <cstdint>

namespace ps::hwapi::common::image {

struct LoadedTrailer {
    int result = 0;           ///< of get_trailer; the rest counts only with IMAGE_OK
    std::uint32_t offset = 0; ///< where the trailer begins: the payload's length
    ParsedTrailer parsed;
};

/// Reads and parses the trailer of an image. Throws std::bad_alloc.
LoadedTrailer loadTrailer(const char* path);

} // namespace ps::hwapi::common::image
