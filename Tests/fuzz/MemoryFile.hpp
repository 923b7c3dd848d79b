#pragma once
/// A file in memory that has a path as long as the object lives.
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

class MemoryFile {
public:
    explicit MemoryFile(std::string_view content)
        : m_fd(memfd_create("fuzz", MFD_CLOEXEC)), m_path("/proc/self/fd/" + std::to_string(m_fd)) {
        if (m_fd < 0 || ::write(m_fd, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
            std::abort();
        }
    }
    ~MemoryFile() { ::close(m_fd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const char* path() const { return m_path.c_str(); }
    std::string content() const {
        struct stat state {};
        if (::fstat(m_fd, &state) != 0) {
            std::abort();
        }
        std::string bytes(static_cast<std::size_t>(state.st_size), '\0');
        if (::pread(m_fd, bytes.data(), bytes.size(), 0) != state.st_size) {
            std::abort();
        }
        return bytes;
    }

private:
    const int m_fd;
    const std::string m_path;
};
