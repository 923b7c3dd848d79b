#pragma once
/// An open file of AaFileOpen.
#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace mox::host {

/// Reads through a buffer of 64 KiB, for callers read lines and small items. Writes go to the file system at once: who
/// counts on a full result has its bytes where other processes see them, and a full disk shows in the write that met
/// it. Signals interrupt nothing. One thread at a time.
class OpenFile {
public:
    /// @param mode  as fopen's: r, w or a, each with an optional + and b
    /// @return null, with errno set: EINVAL for an unknown mode, EISDIR for a directory
    static std::unique_ptr<OpenFile> open(const char* fileName, const char* mode);
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// @return bytes read; fewer at the end of the file or on failure
    std::size_t read(char* bytes, std::size_t size);
    /// Whether the last read failed, rather than met the end of the file.
    bool failed() const { return m_failed; }
    /// Up to and including the next line feed. @return bytes, 0 at the end of the file, -1 on failure
    ssize_t readLine(char* line, std::size_t room);
    /// @return bytes written; fewer on failure
    std::size_t write(std::string_view bytes);
    /// @return bytes, or -1: no regular file
    off_t size() const;
    /// @return 0 or an errno value
    int close();

private:
    static constexpr std::size_t bufferSize = 64 * 1024;

    explicit OpenFile(int fd) : m_fd(fd) {}
    bool fill();
    std::size_t takeBuffered(char* bytes, std::size_t size);
    ssize_t readSome(char* bytes, std::size_t size);
    bool dropBuffer();

    int m_fd;
    std::unique_ptr<char[]> m_buffer; ///< made by the first read
    std::size_t m_begin = 0;          ///< of what was read ahead
    std::size_t m_end = 0;
    bool m_failed = false; ///< the last fill() failed
};

} // namespace mox::host
