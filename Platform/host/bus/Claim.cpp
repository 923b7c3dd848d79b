#include "Claim.hpp"

#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "SocketNames.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace mox::host {

namespace {

/// Holds the node's lock, so that two processes never both find a dead process's name free.
class NodeLock {
public:
    explicit NodeLock(const Run& run) : m_fd(openat(run.nodeFd(), "lock", O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
        if (m_fd >= 0) {
            while (flock(m_fd, LOCK_EX) != 0 && errno == EINTR) {
            }
        }
    }
    ~NodeLock() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    bool isHeld() const { return m_fd >= 0; }
    NodeLock(const NodeLock&) = delete;
    NodeLock& operator=(const NodeLock&) = delete;

private:
    const int m_fd;
};

bool bindTo(int fd, const Run& run, const std::string& name) {
    unlinkat(run.nodeFd(), name.c_str(), 0);
    const sockaddr_un address = addressIn(run.nodeFd(), name);
    return bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

/// Removes the name of an endpoint whose process died, and the dead socket.
void removeDead(const Run& run, std::uint16_t cpid, const std::string& link) {
    const std::uint32_t pid = ownerOf(run.nodeFd(), cpid);
    unlinkat(run.nodeFd(), link.c_str(), 0);
    if (pid != 0) {
        unlinkat(run.nodeFd(), endpointSocketName(cpid, pid).c_str(), 0);
    }
}

std::string linkName(std::uint16_t cpid) {
    return socketName({SocketKey::Kind::endpoint, 0, cpid});
}

} // namespace

int claimEndpoint(const Run& run, std::uint16_t cpid) {
    const std::string link = linkName(cpid);
    const std::string name = endpointSocketName(cpid, static_cast<std::uint32_t>(getpid()));
    const NodeLock lock(run);
    const int fd = lock.isHeld() ? datagramSocket() : -1;
    if (fd >= 0) {
        if (connectTo(fd, run.nodeFd(), link)) {
            ::close(fd);
            return claimTaken;
        }
        removeDead(run, cpid, link);
        if (bindTo(fd, run, name) && symlinkat(name.c_str(), run.nodeFd(), link.c_str()) == 0) {
            return fd;
        }
    }
    logPlatform(4, "cannot register %s: %s", link.c_str(), std::strerror(errno));
    if (fd >= 0) {
        unlinkat(run.nodeFd(), name.c_str(), 0);
        ::close(fd);
    }
    return claimFailed;
}

void unclaimEndpoint(const Run& run, std::uint16_t cpid) {
    const NodeLock lock(run);
    if (ownerOf(run.nodeFd(), cpid) == static_cast<std::uint32_t>(getpid())) {
        unlinkat(run.nodeFd(), linkName(cpid).c_str(), 0);
    }
    unlinkat(run.nodeFd(), endpointSocketName(cpid, static_cast<std::uint32_t>(getpid())).c_str(), 0);
}

} // namespace mox::host
