#include "image/ImageFile.hpp"

#include <mox/Firmware.h>
#include <mox/ImageTrailer.hpp>

#include <syslog.h>

#include <cstdlib>
#include <limits>

using namespace ps::hwapi::common;

namespace {

constexpr char caller[] = "get_trailer";

struct Free {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Free>;

/// Has the name of an operation of the platform, which takes a file handle of its own.
long AaFileGetSize(std::FILE* stream) {
    const long position = std::ftell(stream);
    if (position < 0 || std::fseek(stream, 0, SEEK_END) != 0) {
        return -1;
    }
    const long size = std::ftell(stream);
    return std::fseek(stream, position, SEEK_SET) == 0 ? size : -1;
}

int seekFailure(const char* path) {
    syslog(LOG_INFO, "%s(): Could not read file: %s", caller, path);
    return IMAGE_ERR_FILE;
}

int readFailure(const char* path) {
    syslog(LOG_INFO, "%s(): Error in reading file: %s", caller, path);
    return IMAGE_ERR_FILE;
}

int readOffset(std::FILE* image, const char* path, std::uint32_t size, std::uint32_t& offset) {
    unsigned char word[image::constant::offsetWordSize] = {};
    if (std::fseek(image, -static_cast<long>(sizeof(word)), SEEK_END) != 0) {
        return seekFailure(path);
    }
    if (std::fread(word, sizeof(word), 1, image) != 1) {
        return readFailure(path);
    }
    offset = image::trailerOffset(word);
    if (!image::isTrailerOffset(offset, size)) {
        syslog(LOG_INFO, "%s(): Invalid File length '%s': trailer length does not match", caller, path);
        return IMAGE_ERR_TRAILER_LENGTH;
    }
    return IMAGE_OK;
}

int readText(std::FILE* image, const char* path, std::uint32_t offset, std::uint32_t length, Text& text) {
    if (std::fseek(image, static_cast<long>(offset), SEEK_SET) != 0) {
        return seekFailure(path);
    }
    const std::size_t bytes = length;
    text.reset(static_cast<char*>(std::malloc(bytes + 1)));
    if (!text) {
        return IMAGE_ERR_FILE;
    }
    if (std::fread(text.get(), 1, bytes, image) != bytes) {
        return readFailure(path);
    }
    text.get()[bytes] = '\0';
    return IMAGE_OK;
}

} // namespace

int get_trailer(const char* path, uint32_t* offset, char** text) {
    *text = nullptr;
    const image::File image = image::openImage(path);
    if (!image) {
        syslog(LOG_INFO, "%s(): Could not open file: %s", caller, path);
        return IMAGE_ERR_FILE;
    }
    syslog(LOG_DEBUG, "%s(): File '%s' opened", caller, path);
    const std::uint32_t size = image::boardSize(AaFileGetSize(image.get()));
    syslog(LOG_DEBUG, "%s(): FileSize: %d, 0x%x", caller, static_cast<int>(size), size);

    std::uint32_t begin = 0;
    if (const int result = readOffset(image.get(), path, size, begin); result != IMAGE_OK) {
        return result;
    }
    const std::uint32_t length = size - begin;
    syslog(LOG_DEBUG, "%s(): Trailer begins from offset: %d, 0x%x", caller, static_cast<int>(begin), begin);
    syslog(LOG_DEBUG, "%s(): Trailer length: %d, 0x%x", caller, static_cast<int>(length), length);
    Text region;
    if (const int result = readText(image.get(), path, begin, length, region); result != IMAGE_OK) {
        return result;
    }
    *offset = begin;
    *text = region.release();
    return IMAGE_OK;
}
