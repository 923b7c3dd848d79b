#include "FileText.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace mox::tools {

// A std::ifstream throws where read() fails, as it does when the process behind a file of /proc has just ended.
bool readFileText(const std::string& path, std::string& text) {
    text.clear();
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    std::array<char, 65536> part{};
    ssize_t got = 0;
    while ((got = read(fd, part.data(), part.size())) > 0 || (got < 0 && errno == EINTR)) {
        text.append(part.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    const int failure = errno;
    close(fd);
    errno = failure;
    return got == 0;
}

} // namespace mox::tools
