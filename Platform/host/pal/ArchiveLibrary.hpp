#pragma once
/// libarchive, loaded when the first archive is made: linked to it, every service would load it and the eight libraries
/// that it needs, for a function that hardly any calls.
#include <archive.h>
#include <archive_entry.h>

namespace mox::host {

/// The functions used, under their names in the library.
struct ArchiveLibrary {
// clang-format off
#define MOX_ARCHIVE_FUNCTIONS(use) \
    use(archive_write_new) use(archive_write_free) use(archive_write_close) \
    use(archive_write_set_format_pax_restricted) use(archive_write_add_filter_gzip) use(archive_write_add_filter_none) \
    use(archive_write_open_filename) use(archive_write_header) use(archive_write_data) \
    use(archive_read_disk_new) use(archive_read_disk_open) use(archive_read_disk_set_symlink_physical) \
    use(archive_read_disk_descend) use(archive_read_next_header2) use(archive_read_data) \
    use(archive_read_free) use(archive_entry_new) use(archive_entry_free) \
    use(archive_entry_clear) use(archive_entry_pathname) use(archive_entry_set_pathname) \
    use(archive_entry_dev) use(archive_entry_ino64) use(archive_entry_filetype) \
    use(archive_errno) use(archive_error_string)
// clang-format on
#define MOX_ARCHIVE_POINTER(name) decltype(&::name) name;
    MOX_ARCHIVE_FUNCTIONS(MOX_ARCHIVE_POINTER)
#undef MOX_ARCHIVE_POINTER
};

/// The library; null, and a line in the log, when this machine has none. Any thread. Blocks while it is loaded.
const ArchiveLibrary* archiveLibrary();

} // namespace mox::host
