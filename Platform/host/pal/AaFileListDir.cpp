#include "AaFile.hpp"
#include "AaMem.hpp"
#include "FileResults.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace mox::host {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

SAaFileDnode describe(int directoryFd, const char* name) {
    SAaFileDnode entry{};
    std::memcpy(entry.name, name, std::min(std::strlen(name), sizeof entry.name - 1));
    entry.type = EAaFileDnodeType_Other;
    struct stat status {};
    if (fstatat(directoryFd, name, &status, 0) != 0 && fstatat(directoryFd, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return entry;
    if (S_ISREG(status.st_mode)) {
        entry.type = EAaFileDnodeType_File;
        entry.size = static_cast<std::uint64_t>(status.st_size);
    } else if (S_ISDIR(status.st_mode)) {
        entry.type = EAaFileDnodeType_Directory;
    }
    entry.modifiedSec = status.st_mtim.tv_sec;
    return entry;
}

/// @return 0 or an errno value
int readEntries(DIR* directory, std::vector<SAaFileDnode>& entries) {
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(directory);
        if (!entry)
            return errno;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            entries.push_back(describe(dirfd(directory), entry->d_name));
    }
}

} // namespace

int AaFileListDir(const char* dirName, SAaFileDnode** entries, unsigned int* count) {
    if (entries)
        *entries = nullptr;
    if (count)
        *count = 0;
    if (!dirName || !entries || !count)
        return EAaFileRetVal_InvalidValue;
    const Directory directory(opendir(dirName));
    if (!directory)
        return fileResult(errno);
    std::vector<SAaFileDnode> found;
    if (const int error = readEntries(directory.get(), found); error != 0)
        return fileResult(error);
    if (found.empty())
        return EAaFileRetVal_NoError;
    std::sort(found.begin(), found.end(),
              [](const SAaFileDnode& a, const SAaFileDnode& b) { return std::strcmp(a.name, b.name) < 0; });
    const std::size_t bytes = found.size() * sizeof(SAaFileDnode);
    auto* array = static_cast<SAaFileDnode*>(AaMemMalloc(bytes));
    if (!array)
        return EAaFileRetVal_OutOfResources;
    std::memcpy(array, found.data(), bytes);
    *entries = array;
    *count = static_cast<unsigned int>(found.size());
    return EAaFileRetVal_NoError;
}

void AaFileFreeListDirArray(SAaFileDnode* entries, unsigned int) {
    host::AaMemUnRef(entries);
}

} // namespace mox::host
