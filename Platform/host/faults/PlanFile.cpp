#include "PlanFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace mox::host::faults {
namespace {

constexpr std::uint64_t mark = 0x0131'544C'4658'4F4D; // "MOXFLT1" and a 1: a file of this layout begins with it
constexpr const char* fileName = "/faults";

int refuse(int fd, const std::string& path, std::string& why) {
    why = path + ": " + std::strerror(errno);
    if (fd >= 0)
        ::close(fd);
    return -1;
}

} // namespace

int openPlanFile(const std::string& runPath, std::string& why) {
    const std::string path = runPath + fileName;
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    struct stat status {};
    if (fd < 0 || ::fstat(fd, &status) != 0)
        return refuse(fd, path, why);
    // processes that start at the same time all do this; the outcome is the same
    if (status.st_size < static_cast<off_t>(planFileSize) && ::ftruncate(fd, planFileSize) != 0)
        return refuse(fd, path, why);
    return fd;
}

bool checkMark(Head& head, std::string& why) {
    std::uint64_t found = 0;
    if (head.mark.compare_exchange_strong(found, mark) || found == mark)
        return true;
    why = "the run's file 'faults' has another layout than this program expects";
    return false;
}

} // namespace mox::host::faults
