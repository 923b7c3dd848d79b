#include "image/ImageFile.hpp"

#include <mox/ImageTrailer.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <new>

namespace ps::hwapi::common::image {
namespace {

// Opening a FIFO would wait for its other end.
constexpr int openAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

bool isRegular(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Whether nothing but the file that was asked for is lost when it is emptied.
bool mayBeEmptied(int descriptor, int image) {
    struct stat status = {};
    struct stat other = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           fstat(image, &other) == 0 && !(status.st_dev == other.st_dev && status.st_ino == other.st_ino);
}

/// Takes the descriptor over.
File streamOf(int descriptor, bool usable, const char* mode) {
    File stream(usable ? fdopen(descriptor, mode) : nullptr);
    if (stream) {
        std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    } else if (descriptor >= 0) {
        close(descriptor);
    }
    return stream;
}

} // namespace

File openImage(const char* path) {
    const int descriptor = open(path, O_RDONLY | openAlways);
    return streamOf(descriptor, isRegular(descriptor), "r");
}

File createPayload(const char* path, std::FILE* image) {
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_NOFOLLOW | openAlways, 0600);
    const bool usable = mayBeEmptied(descriptor, fileno(image)) && ftruncate(descriptor, 0) == 0;
    return streamOf(descriptor, usable, "w");
}

std::uint32_t boardSize(long position) {
    if (position < 0 || position > std::numeric_limits<std::int32_t>::max()) {
        return constant::unknownSize;
    }
    return static_cast<std::uint32_t>(position);
}

Block::Block() : m_large(new (std::nothrow) unsigned char[largeSize]) {}

} // namespace ps::hwapi::common::image
