#pragma once
#include "Interruption.hpp"

#include <fcntl.h>
#include <host/run/Run.hpp>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace mox::tools {

/// One 'sim up' or 'sim down' of a run at a time.
class RunLock {
public:
    explicit RunLock(const host::Run& run)
        : m_fd(open((run.path() + "/sim.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
        while (m_fd >= 0 && flock(m_fd, LOCK_EX) != 0 && errno == EINTR) {
            interruption::check();
        }
    }
    ~RunLock() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    RunLock(const RunLock&) = delete;
    RunLock& operator=(const RunLock&) = delete;

private:
    int m_fd;
};

} // namespace mox::tools
