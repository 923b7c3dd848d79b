#include "OutputFile.hpp"

#include "Failure.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace mox::tools {

namespace {

bool isSameFile(const std::string& path, const struct stat& file) {
    struct stat other {};
    return stat(path.c_str(), &other) == 0 && other.st_dev == file.st_dev && other.st_ino == file.st_ino;
}

void refuseInputs(const std::string& path, const std::vector<std::string>& inputs) {
    struct stat file {};
    if (stat(path.c_str(), &file) != 0) {
        return;
    }
    for (const std::string& input : inputs) {
        if (isSameFile(input, file)) {
            std::string text = path;
            text.append(": expected another file than ").append(input).append(", which is read");
            throw Failure(ExitStatus::usage, text);
        }
    }
}

void refusePresent(const std::string& path, bool replace) {
    struct stat file {};
    if (lstat(path.c_str(), &file) != 0) {
        return;
    }
    if (!S_ISREG(file.st_mode)) {
        throw Failure(ExitStatus::usage, path + ": expected a new name or a regular file");
    }
    if (!replace) {
        throw Failure(ExitStatus::usage, path + ": exists already (--force replaces it)");
    }
}

mode_t currentUmask() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

} // namespace

OutputFile::OutputFile(const std::string& path, bool replace, const std::vector<std::string>& inputs)
    : m_path(path), m_temporary(path + ".XXXXXX"), m_replace(replace) {
    refuseInputs(path, inputs);
    refusePresent(path, replace);
    m_fd = mkostemp(m_temporary.data(), O_CLOEXEC);
    if (m_fd < 0) {
        m_temporary.clear();
        throw Failure(ExitStatus::failed, path + ": " + std::strerror(errno));
    }
}

OutputFile::~OutputFile() {
    if (m_fd >= 0) {
        close(m_fd);
    }
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
}

void OutputFile::fail(int reason) const {
    throw Failure(ExitStatus::failed, m_path + ": " + std::strerror(reason));
}

void OutputFile::write(const void* bytes, std::size_t size) {
    const auto* from = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t done = ::write(m_fd, from, size);
        if (done < 0 && errno != EINTR) {
            fail(errno);
        }
        const auto some = static_cast<std::size_t>(done < 0 ? 0 : done);
        from += some;
        size -= some;
    }
}

void OutputFile::commit() {
    if (fchmod(m_fd, 0666 & ~currentUmask()) != 0 || fsync(m_fd) != 0) {
        fail(errno);
    }
    // Without --force nothing is replaced, not even a file that came meanwhile.
    const unsigned flags = m_replace ? 0 : RENAME_NOREPLACE;
    int result = renameat2(AT_FDCWD, m_temporary.c_str(), AT_FDCWD, m_path.c_str(), flags);
    if (result != 0 && errno == EINVAL) {
        result = rename(m_temporary.c_str(), m_path.c_str()); // a file system without that flag
    }
    if (result != 0) {
        fail(errno);
    }
    m_temporary.clear();
}

} // namespace mox::tools
