#include "AaFile.hpp"

#include "FileResults.hpp"
#include "OpenFile.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>

namespace mox::host {

namespace {

TAaFile handleOf(OpenFile* file) {
    return reinterpret_cast<TAaFile>(file);
}
OpenFile* fileOf(TAaFile handle) {
    return reinterpret_cast<OpenFile*>(handle);
}

/// Bytes of `count` items, or 0: nothing to move, or more than memory holds.
std::size_t bytesOf(std::size_t size, std::size_t count) {
    return size == 0 || count > SIZE_MAX / size ? 0 : size * count;
}

bool status(const char* path, struct stat& result) {
    return path && ::stat(path, &result) == 0;
}

} // namespace

int fileResult(int error) {
    switch (error) {
    case 0:
        return EAaFileRetVal_NoError;
    case ENOENT:
    case ENOTDIR:
        return EAaFileRetVal_NotFound;
    case EEXIST:
        return EAaFileRetVal_AlreadyExists;
    case EACCES:
    case EPERM:
    case EROFS:
        return EAaFileRetVal_PermissionDenied;
    case ENOMEM:
    case EMFILE:
    case ENFILE:
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return EAaFileRetVal_OutOfResources;
    default:
        return EAaFileRetVal_Error;
    }
}

TAaFile AaFileOpen(const char* fileName, const char* mode) {
    return fileName && mode ? handleOf(OpenFile::open(fileName, mode).release()) : nullptr;
}

int AaFileClose(TAaFile file) {
    if (!file)
        return EAaFileRetVal_InvalidValue;
    const std::unique_ptr<OpenFile> closing(fileOf(file));
    const int result = fileResult(closing->close());
    return result == EAaFileRetVal_NoError || result == EAaFileRetVal_OutOfResources ? result : EAaFileRetVal_Error;
}

std::size_t AaFileRead(void* buffer, std::size_t size, std::size_t count, TAaFile file) {
    const std::size_t bytes = bytesOf(size, count);
    if (!buffer || !file || bytes == 0)
        return 0;
    return fileOf(file)->read(static_cast<char*>(buffer), bytes) / size;
}

int AaFileReadLine(char* line, unsigned int size, TAaFile file) {
    if (!line || !file || size < 2)
        return -1;
    const unsigned int room = size > INT_MAX ? INT_MAX : size;
    const ssize_t length = fileOf(file)->readLine(line, room - 1);
    if (length > 0)
        line[length] = '\0';
    return static_cast<int>(length);
}

std::size_t AaFileWrite(const void* buffer, std::size_t size, std::size_t count, TAaFile file) {
    const std::size_t bytes = bytesOf(size, count);
    if (!buffer || !file || bytes == 0)
        return 0;
    return fileOf(file)->write({static_cast<const char*>(buffer), bytes}) / size;
}

std::int64_t AaFileGetSize(TAaFile file) {
    return file ? fileOf(file)->size() : -1;
}

int AaFileRemove(const char* fileName) {
    if (!fileName)
        return EAaFileRetVal_InvalidValue;
    if (std::remove(fileName) == 0)
        return EAaFileRetVal_NoError;
    // A directory that is not empty has one of two numbers, by file system.
    return errno == EEXIST ? EAaFileRetVal_Error : fileResult(errno);
}

int AaFileExists(const char* fileName) {
    struct stat found {};
    return status(fileName, found) && !S_ISDIR(found.st_mode) ? 1 : 0;
}

int AaFileDirExists(const char* dirName) {
    struct stat found {};
    return status(dirName, found) && S_ISDIR(found.st_mode) ? 1 : 0;
}

int AaFileCreateDir(const char* dirName) {
    if (!dirName)
        return EAaFileRetVal_InvalidValue;
    return ::mkdir(dirName, 0777) == 0 ? EAaFileRetVal_NoError : fileResult(errno);
}

} // namespace mox::host
