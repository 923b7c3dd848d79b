#pragma once
/// Flash file systems: which ones are mounted, and which one stands behind a role.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// File system identifiers.
enum {
    DDAL_FFS_NONE = 52,            ///< none, or not known
    DDAL_FFS_FIRST = 53,           ///< first software file system, "/ffs/fs1"
    DDAL_FFS_SECOND = 54,          ///< second software file system, "/ffs/fs2"
    DDAL_FFS_LOGICAL_RUNNING = 128 ///< logical: whichever of the two the software runs from
};

/// Mount modes as this layer reports them. Services that ask for a mode count 0 and 1 instead.
enum {
    DDAL_FFS_MODE_READ_ONLY = 1, ///< mounted read-only
    DDAL_FFS_MODE_READ_WRITE = 2 ///< mounted read-write
};

/// Tells whether and how a file system is mounted.
/// @param fsId       file system identifier, a physical one
/// @param[out] mode  one of DDAL_FFS_MODE_*; unchanged unless the result is DDAL_OK
/// @return DDAL_OK (mounted), DDAL_NOT_FOUND (not mounted, or no such file system), DDAL_INVALID_PARAMETER
/// Any thread. Does not block.
int ddal_ffs_is_mounted(uint32_t fsId, uint32_t* mode);

/// Tells which physical file system stands behind a logical one at present.
/// @param logicalId         logical identifier, such as DDAL_FFS_LOGICAL_RUNNING
/// @param[out] physicalId   physical identifier; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such logical file system, or nothing behind it), DDAL_INVALID_PARAMETER
/// Any thread. Does not block.
int ddal_ffs_get_physical_by_logical(uint32_t logicalId, uint32_t* physicalId);

#ifdef __cplusplus
}
#endif
