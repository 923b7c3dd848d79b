#include "RunOfTest.hpp"

#include "host/board/CreateRun.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace mox::testkit {
namespace {

namespace fs = std::filesystem;

constexpr const char* prefix = "mox-test-";
/// A younger run may be one that is just being made and not yet locked.
constexpr auto leftBehindAge = std::chrono::hours(1);

std::string temporaryDirectory() {
    const char* directory = std::getenv("TMPDIR");
    return directory != nullptr && *directory != '\0' ? directory : "/tmp";
}

int lockOf(const std::string& top, int flags) {
    const int fd = open((top + "/lock").c_str(), O_RDWR | O_CLOEXEC | flags, 0600);
    if (fd >= 0 && flock(fd, LOCK_EX | LOCK_NB) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

void removeLeftBehind(const std::string& directory) {
    std::error_code ignored; // other test processes remove them too
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
        if (entry.path().filename().string().rfind(prefix, 0) != 0)
            continue;
        const auto changed = entry.last_write_time(ignored);
        if (ignored || fs::file_time_type::clock::now() - changed < leftBehindAge)
            continue;
        const int lock = lockOf(entry.path().string(), 0);
        if (lock < 0)
            continue;
        fs::remove_all(entry.path(), ignored);
        close(lock);
    }
}

std::uint16_t lowestNode(const std::string& run) {
    unsigned long lowest = 0;
    std::error_code ignored; // a run without nodes has none
    for (const fs::directory_entry& entry : fs::directory_iterator(run + "/nodes", ignored)) {
        const unsigned long node = std::strtoul(entry.path().filename().c_str(), nullptr, 16);
        if (node != 0 && (lowest == 0 || node < lowest))
            lowest = node;
    }
    return static_cast<std::uint16_t>(lowest);
}

} // namespace

RunOfTest::RunOfTest(const Board& board, std::string& why) {
    std::string json;
    std::string name;
    if (!board.read(json, name)) {
        why = name + ": cannot be read";
        return;
    }
    const std::string directory = temporaryDirectory();
    removeLeftBehind(directory);
    std::string top = directory + "/" + prefix + "XXXXXX";
    if (mkdtemp(top.data()) == nullptr) {
        why = top + ": " + std::strerror(errno);
        return;
    }
    m_top = top;
    m_lock = lockOf(m_top, O_CREAT);
    if (!host::createRun(path(), json, name, why))
        return;
    m_node = board.node() != 0 ? board.node() : lowestNode(path());
}

RunOfTest::~RunOfTest() {
    std::error_code ignored; // the next one tries again
    if (!m_top.empty())
        fs::remove_all(m_top, ignored);
    if (m_lock >= 0)
        close(m_lock);
}

} // namespace mox::testkit
