#include "../run/PlatformLog.hpp"
#include "AaFile.hpp"
#include "ArchiveLibrary.hpp"
#include "FileResults.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

namespace {

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::string withoutFinalSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

/// Packs one item; an object for one archive.
class Packer {
public:
    Packer(const ArchiveLibrary& library, std::string item, const char* tarName)
        : m_library(library),
          m_item(std::move(item)),
          m_tarName(tarName),
          m_disk(library.archive_read_disk_new()),
          m_tar(library.archive_write_new()),
          m_entry(library.archive_entry_new()) {
        const std::size_t slash = m_item.rfind('/');
        m_prefix = slash == std::string::npos || m_item.size() == 1 ? 0 : slash + 1;
    }
    ~Packer() {
        m_library.archive_entry_free(m_entry);
        m_library.archive_read_free(m_disk);
        m_library.archive_write_free(m_tar);
    }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    /// @return an EAaFileRetVal
    int pack() {
        if (!m_disk || !m_tar || !m_entry)
            return EAaFileRetVal_OutOfResources;
        int result = openTar();
        if (result != EAaFileRetVal_NoError)
            return result;
        result = packEntries();
        const bool closed = good(m_library.archive_write_close(m_tar));
        if (result == EAaFileRetVal_NoError && !closed)
            result = failure(m_tar);
        if (result != EAaFileRetVal_NoError)
            ::unlink(m_tarName);
        return result;
    }

private:
    static bool good(int result) { return result == ARCHIVE_OK || result == ARCHIVE_WARN; }

    int failure(archive* where) const {
        const char* text = m_library.archive_error_string(where);
        logPlatform(3, "AaFileTarItem: %s into %s: %s", m_item.c_str(), m_tarName, text ? text : "failed");
        const int result = fileResult(m_library.archive_errno(where));
        return result == EAaFileRetVal_PermissionDenied || result == EAaFileRetVal_OutOfResources ? result
                                                                                                  : EAaFileRetVal_Error;
    }

    int openTar() {
        const bool compressed = endsWith(m_tarName, ".gz") || endsWith(m_tarName, ".tgz");
        m_library.archive_write_set_format_pax_restricted(m_tar);
        if (compressed)
            m_library.archive_write_add_filter_gzip(m_tar);
        else
            m_library.archive_write_add_filter_none(m_tar);
        // The library would open a name that cannot be made only with its first block, and loses the reason then.
        const int fd = ::open(m_tarName, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        struct stat status {};
        if (fd < 0 || fstat(fd, &status) != 0)
            return fileResult(errno);
        ::close(fd);
        m_tarDevice = status.st_dev;
        m_tarInode = status.st_ino;
        return good(m_library.archive_write_open_filename(m_tar, m_tarName)) ? EAaFileRetVal_NoError : failure(m_tar);
    }

    int packEntries() {
        m_library.archive_read_disk_set_symlink_physical(m_disk);
        if (!good(m_library.archive_read_disk_open(m_disk, m_item.c_str())))
            return failure(m_disk);
        for (;;) {
            m_library.archive_entry_clear(m_entry);
            const int next = m_library.archive_read_next_header2(m_disk, m_entry);
            if (next == ARCHIVE_EOF)
                return EAaFileRetVal_NoError;
            if (!good(next))
                return failure(m_disk);
            m_library.archive_read_disk_descend(m_disk);
            if (const int result = isOwnArchive() ? 0 : packEntry(); result != EAaFileRetVal_NoError)
                return result;
        }
    }

    bool isOwnArchive() const {
        return static_cast<dev_t>(m_library.archive_entry_dev(m_entry)) == m_tarDevice &&
               static_cast<ino_t>(m_library.archive_entry_ino64(m_entry)) == m_tarInode;
    }

    int packEntry() {
        const std::string path = m_library.archive_entry_pathname(m_entry);
        m_library.archive_entry_set_pathname(m_entry, path.substr(m_prefix).c_str());
        if (m_library.archive_entry_filetype(m_entry) == AE_IFSOCK)
            return EAaFileRetVal_NoError; // an archive has no form for it
        if (!good(m_library.archive_write_header(m_tar, m_entry)))
            return failure(m_tar);
        return m_library.archive_entry_filetype(m_entry) == AE_IFREG ? packContent() : EAaFileRetVal_NoError;
    }

    int packContent() {
        for (;;) {
            const la_ssize_t got = m_library.archive_read_data(m_disk, m_block.data(), m_block.size());
            if (got < 0)
                return failure(m_disk);
            if (got == 0)
                return EAaFileRetVal_NoError;
            if (m_library.archive_write_data(m_tar, m_block.data(), static_cast<std::size_t>(got)) < 0)
                return failure(m_tar);
        }
    }

    const ArchiveLibrary& m_library;
    const std::string m_item;
    const char* const m_tarName;
    std::size_t m_prefix = 0; ///< bytes of the item's path that the archive does not show
    archive* m_disk;
    archive* m_tar;
    archive_entry* m_entry;
    dev_t m_tarDevice = 0;
    ino_t m_tarInode = 0;
    std::vector<char> m_block = std::vector<char>(std::size_t{64} * 1024);
};

} // namespace

int AaFileTarItem(const char* itemName, const char* tarName) {
    if (!itemName || !tarName)
        return EAaFileRetVal_InvalidValue;
    struct stat item {};
    if (::lstat(itemName, &item) != 0)
        return fileResult(errno);
    const ArchiveLibrary* library = archiveLibrary();
    if (!library)
        return EAaFileRetVal_Error;
    return Packer(*library, withoutFinalSlashes(itemName), tarName).pack();
}

} // namespace mox::host
