#include "Flash.hpp"

#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "FileDescriptor.hpp"
#include "FlashOperations.hpp"
#include "FlashRecord.hpp"
#include "FlashWriter.hpp"

#include <ddal/ddal.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cinttypes>

namespace mox::host {

namespace {

constexpr int information = 2;
constexpr int warning = 3;

constexpr int directoryMode = 0777;
constexpr int fileMode = 0666;

/// An image file, open, or the reason why it cannot be written to flash.
struct Source {
    explicit Source(const char* path) : file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat status {};
        if (file.get() < 0)
            result = errno == ENOENT || errno == ENOTDIR ? DDAL_NOT_FOUND : DDAL_IO_ERROR;
        else if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
            result = DDAL_IO_ERROR;
        else if (status.st_size == 0)
            result = DDAL_INVALID_PARAMETER;
        length = static_cast<std::uint64_t>(status.st_size);
    }

    FileDescriptor file;
    int result = DDAL_OK;
    std::uint64_t length = 0;
};

int openIn(const std::string& directory, const std::string& name) {
    return ::open((directory + name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, fileMode);
}

/// The operating system lets a lock go with its process, however that ends.
int lock(const FileDescriptor& file) {
    if (file.get() >= 0 && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        return DDAL_OK;
    return file.get() >= 0 && errno == EWOULDBLOCK ? DDAL_BUSY : DDAL_IO_ERROR;
}

bool takeRecordAway(Store& store, const std::string& key) {
    Store::Write write(store);
    write.erase(Table::devices, key);
    return write.commit();
}

bool putRecord(Store& store, const std::string& key, const FlashImage& image) {
    return endFlashOperation(beginFlashOperation()) && store.put(Table::devices, key, encodeFlashRecord(image));
}

int reportHalfWritten(const FlashArea& area) {
    logPlatform(information, "flash %s: operation %" PRIu64 " of this process failed, the area is not whole",
                area.name.c_str(), flashOperations());
    return DDAL_IO_ERROR;
}

void reportWhole(const FlashArea& area, const FlashWriter& writer) {
    const std::uint32_t version = writer.image().version;
    if (!writer.hasVersion())
        logPlatform(warning, "flash %s: no \"%s\" in the image, its version is 0", area.name.c_str(), versionMarker);
    logPlatform(information, "flash %s: whole, version 0x%" PRIX32 " (%" PRIu32 ")", area.name.c_str(), version,
                version);
}

} // namespace

std::optional<FlashImage> Flash::image(const std::string& area) const {
    const auto record = m_run.store().get(Table::devices, flashRecordKey(m_node, area));
    return record ? decodeFlashRecord(*record) : std::nullopt;
}

std::string Flash::path(const std::string& area) const {
    return m_run.nodePath(m_node) + "/" + flashFile(area);
}

int Flash::write(const FlashArea& area, const char* imagePath) const {
    const Source source(imagePath);
    if (source.result != DDAL_OK)
        return source.result;
    const std::string directory = m_run.nodePath(m_node) + "/";
    ::mkdir((directory + "flash").c_str(), directoryMode); // a run that was made by an older version has none
    const FileDescriptor device(openIn(directory, "flash/" + area.device + ".lock"));
    if (const int busy = lock(device); busy != DDAL_OK)
        return busy;
    if (source.length > area.size)
        return DDAL_NO_SPACE;
    const FileDescriptor file(openIn(directory, flashFile(area.name)));
    const std::string key = flashRecordKey(m_node, area.name);
    if (file.get() < 0 || !takeRecordAway(m_run.store(), key))
        return DDAL_IO_ERROR;
    takePlanOf(m_run, m_node);
    logPlatform(information, "flash %s: writing %" PRIu64 " bytes of %s", area.name.c_str(), source.length, imagePath);
    FlashWriter writer(area, file.get(), source.file.get(), source.length);
    if (!writer.erase() || !writer.program() || !putRecord(m_run.store(), key, writer.image()))
        return reportHalfWritten(area);
    reportWhole(area, writer);
    return DDAL_OK;
}

} // namespace mox::host
