#include "OpenFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace mox::host {

namespace {

/// @return flags of open(), or -1: no mode that fopen knows
int flagsOf(std::string_view mode) {
    if (mode.empty())
        return -1;
    const std::string_view rest = mode.substr(1);
    if (!rest.empty() && rest != "+" && rest != "b" && rest != "+b" && rest != "b+")
        return -1;
    const bool both = rest.find('+') != std::string_view::npos;
    switch (mode.front()) {
    case 'r':
        return both ? O_RDWR : O_RDONLY;
    case 'w':
        return (both ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
    case 'a':
        return (both ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
    default:
        return -1;
    }
}

int openRetrying(const char* fileName, int flags) {
    int fd = -1;
    do
        fd = ::open(fileName, flags | O_CLOEXEC | O_NOCTTY, 0666);
    while (fd < 0 && errno == EINTR);
    return fd;
}

bool isDirectory(int fd) {
    struct stat status {};
    return fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::unique_ptr<OpenFile> OpenFile::open(const char* fileName, const char* mode) {
    const int flags = flagsOf(mode);
    if (flags < 0) {
        errno = EINVAL;
        return nullptr;
    }
    const int fd = openRetrying(fileName, flags);
    if (fd < 0)
        return nullptr;
    std::unique_ptr<OpenFile> file(new OpenFile(fd));
    if (!isDirectory(fd))
        return file;
    file.reset();
    errno = EISDIR;
    return nullptr;
}

OpenFile::~OpenFile() {
    close();
}

ssize_t OpenFile::readSome(char* bytes, std::size_t size) {
    ssize_t got = 0;
    do
        got = ::read(m_fd, bytes, size);
    while (got < 0 && errno == EINTR);
    m_failed = got < 0;
    return got;
}

bool OpenFile::fill() {
    if (!m_buffer)
        m_buffer = std::make_unique<char[]>(bufferSize);
    const ssize_t got = readSome(m_buffer.get(), bufferSize);
    m_begin = 0;
    m_end = got > 0 ? static_cast<std::size_t>(got) : 0;
    return m_end != 0;
}

std::size_t OpenFile::takeBuffered(char* bytes, std::size_t size) {
    const std::size_t taken = std::min(size, m_end - m_begin);
    if (taken != 0)
        std::memcpy(bytes, m_buffer.get() + m_begin, taken);
    m_begin += taken;
    return taken;
}

std::size_t OpenFile::read(char* bytes, std::size_t size) {
    std::size_t done = takeBuffered(bytes, size);
    while (done < size) {
        // What fills the buffer anyway goes straight to the caller.
        if (size - done >= bufferSize) {
            const ssize_t got = readSome(bytes + done, size - done);
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        } else if (fill()) {
            done += takeBuffered(bytes + done, size - done);
        } else {
            break;
        }
    }
    return done;
}

ssize_t OpenFile::readLine(char* line, std::size_t room) {
    m_failed = false;
    std::size_t done = 0;
    while (done < room) {
        if (m_begin == m_end && !fill())
            break;
        const char* begin = m_buffer.get() + m_begin;
        const std::size_t ahead = std::min(room - done, m_end - m_begin);
        const void* lineFeed = std::memchr(begin, '\n', ahead);
        const std::size_t part =
            lineFeed ? static_cast<std::size_t>(static_cast<const char*>(lineFeed) - begin) + 1 : ahead;
        done += takeBuffered(line + done, part);
        if (lineFeed)
            break;
    }
    return m_failed && done == 0 ? -1 : static_cast<ssize_t>(done);
}

/// The file's own position is behind what was read ahead; a write must begin where the caller's reads ended.
bool OpenFile::dropBuffer() {
    const auto ahead = static_cast<off_t>(m_end - m_begin);
    m_begin = m_end = 0;
    return ahead == 0 || lseek(m_fd, -ahead, SEEK_CUR) >= 0;
}

std::size_t OpenFile::write(std::string_view bytes) {
    if (!dropBuffer())
        return 0;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put = ::write(m_fd, bytes.data() + done, bytes.size() - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            break;
        done += static_cast<std::size_t>(put);
    }
    return done;
}

off_t OpenFile::size() const {
    struct stat status {};
    return fstat(m_fd, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

int OpenFile::close() {
    if (m_fd < 0)
        return 0;
    const int fd = m_fd;
    m_fd = -1;
    // The kernel releases the descriptor also when a signal interrupts the call.
    return ::close(fd) == 0 || errno == EINTR ? 0 : errno;
}

} // namespace mox::host
