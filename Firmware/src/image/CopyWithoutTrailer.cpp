#include "image/ImageFile.hpp"

#include <mox/Firmware.h>
#include <mox/ImageTrailer.hpp>

#include <algorithm>

using namespace ps::hwapi::common;

namespace {

/// Results that callers compare: the step that failed.
enum Result {
    copied = 0,
    noSource = -1,
    noEnd = -2,
    noSize = -3,
    noWordPosition = -4,
    noWord = -5,
    wordOutsideOfFile = -6,
    noBegin = -7,
    noDestination = -8,
    sourceEnded = -9,
    notWritten = -10
};

Result readLength(std::FILE* source, std::uint32_t& length) {
    if (std::fseek(source, 0, SEEK_END) != 0) {
        return noEnd;
    }
    const std::uint32_t size = image::boardSize(std::ftell(source));
    if (size == image::constant::unknownSize) {
        return noSize;
    }
    unsigned char word[image::constant::offsetWordSize] = {};
    if (std::fseek(source, -static_cast<long>(sizeof(word)), SEEK_END) != 0) {
        return noWordPosition;
    }
    if (std::fread(word, sizeof(word), 1, source) != 1) {
        return noWord;
    }
    length = image::payloadLength(word);
    return image::isPayloadLength(length, size) ? copied : wordOutsideOfFile;
}

Result copyBytes(std::FILE* source, std::FILE* destination, std::uint32_t length) {
    image::Block block;
    for (std::size_t left = length; left > 0;) {
        const std::size_t got = std::fread(block.data(), 1, std::min(left, block.size()), source);
        if (got == 0) {
            return sourceEnded;
        }
        if (std::fwrite(block.data(), 1, got, destination) != got) {
            return notWritten;
        }
        left -= got;
    }
    return copied;
}

} // namespace

int binary_copy_without_trailer(const char* sourcePath, const char* destinationPath) {
    const image::File source = image::openImage(sourcePath);
    if (!source) {
        return noSource;
    }
    std::uint32_t length = 0;
    if (const Result result = readLength(source.get(), length); result != copied) {
        return result;
    }
    if (std::fseek(source.get(), 0, SEEK_SET) != 0) {
        return noBegin;
    }
    image::File destination = image::createPayload(destinationPath, source.get());
    if (!destination) {
        return noDestination;
    }
    const Result result = copyBytes(source.get(), destination.get(), length);
    // Some file systems report only now that there was no room.
    const bool closed = std::fclose(destination.release()) == 0;
    return result == copied && !closed ? notWritten : result;
}
