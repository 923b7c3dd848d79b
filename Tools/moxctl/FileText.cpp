#include "FileText.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace mox::tools {

// A std::ifstream throws where read() fails, as it does when the process behind a file of /proc has just ended.
bool readFileText(int fd, std::string& text, std::size_t most) {
    text.clear();
    std::array<char, 65536> part{};
    while (text.size() < most) {
        const ssize_t got = read(fd, part.data(), std::min(part.size(), most - text.size()));
        if (got == 0) {
            return true;
        }
        if (got < 0 && errno != EINTR) {
            return false;
        }
        text.append(part.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    return true;
}

bool readFileText(const std::string& path, std::string& text, std::size_t most) {
    text.clear();
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const bool isRead = readFileText(fd, text, most);
    const int failure = errno;
    close(fd);
    errno = failure;
    return isRead;
}

} // namespace mox::tools
