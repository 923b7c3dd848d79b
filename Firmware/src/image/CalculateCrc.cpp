#include "image/ImageFile.hpp"

#include <mox/Firmware.h>

#include <syslog.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

using namespace ps::hwapi::common;

namespace {

constexpr char caller[] = "calculate_crc";
constexpr std::uint32_t wordSize = 4;

std::uint32_t continued(std::uint32_t crc, const unsigned char* bytes, std::size_t count) {
    return static_cast<std::uint32_t>(crc32(crc, bytes, static_cast<uInt>(count)));
}

/// Continues a CRC over a word that is there many times.
std::uint32_t repeated(std::uint32_t crc, const unsigned char* word, std::uint32_t times, image::Block& block) {
    for (std::size_t at = 0; at < block.size(); at += wordSize) {
        std::memcpy(block.data() + at, word, wordSize);
    }
    for (std::size_t left = times * std::size_t(wordSize); left > 0;) {
        const std::size_t part = std::min(left, block.size());
        crc = continued(crc, block.data(), part);
        left -= part;
    }
    return crc;
}

/// Continues a CRC over whole words. The file is read in blocks, and yet the result is that of a reader which takes
/// word after word without a look at whether there was one: where the file ends, or cannot be read on, the last word
/// counts for all that are left, its first bytes overwritten by the one to three bytes of an incomplete word.
std::uint32_t overWords(std::uint32_t crc, std::uint32_t words, std::FILE* file, image::Block& block) {
    unsigned char last[wordSize] = {};
    while (words > 0) {
        const std::size_t wanted = std::min(words * std::size_t(wordSize), block.size());
        const std::size_t got = std::fread(block.data(), 1, wanted, file);
        const std::size_t whole = got - got % wordSize;
        crc = continued(crc, block.data(), whole);
        words -= static_cast<std::uint32_t>(whole / wordSize);
        if (whole > 0) {
            std::memcpy(last, block.data() + whole - wordSize, wordSize);
        }
        if (got < wanted) {
            std::memcpy(last, block.data() + whole, got - whole);
            return repeated(crc, last, words, block);
        }
    }
    return crc;
}

std::uint32_t overRemainder(std::uint32_t crc, std::uint32_t bytes, std::FILE* file) {
    unsigned char last[wordSize] = {};
    syslog(LOG_DEBUG, "%s(): bytes remaining: %d (0x%x)", caller, static_cast<int>(bytes), bytes);
    const std::size_t got = std::fread(last, 1, bytes, file);
    std::fill(last + got, last + wordSize, 0); // what is missing counts as zero bytes
    std::uint32_t data = 0;
    std::memcpy(&data, last, sizeof(data));
    syslog(LOG_DEBUG, "%s(): remaining data: %d (0x%x)", caller, static_cast<int>(data), data);
    return continued(crc, last, bytes);
}

} // namespace

int calculate_crc(const char* path, uint32_t length, uint32_t* crc) {
    *crc = 0;
    const image::File file = image::openImage(path);
    if (!file) {
        syslog(LOG_INFO, "%s(): Could not open file: %s", caller, path);
        return IMAGE_ERR_FILE;
    }
    auto result = static_cast<std::uint32_t>(crc32(0, Z_NULL, 0));
    if (std::fseek(file.get(), 0, SEEK_SET) != 0) {
        syslog(LOG_INFO, "%s(): Could not set file ptr position in file", caller);
        return IMAGE_ERR_FILE;
    }
    image::Block block;
    result = overWords(result, length / wordSize, file.get(), block);
    if (length % wordSize != 0) {
        result = overRemainder(result, length % wordSize, file.get());
    }
    *crc = result;
    syslog(LOG_DEBUG, "%s(): CRC32 calculated from file: %d (0x%x)", caller, static_cast<int>(result), result);
    return IMAGE_OK;
}
