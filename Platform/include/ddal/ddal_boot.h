#pragma once
/// The boot loader, and what was started by it.
#include <ddal/ddal.h>

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Where the running boot loader was started from.
enum {
    DDAL_BOOT_UBOOT_PRIMARY = 0, ///< primary flash area
    DDAL_BOOT_UBOOT_BACKUP = 1,  ///< backup flash area: the primary one did not start
    DDAL_BOOT_UBOOT_RAM = 2      ///< an image in RAM, loaded by another boot loader
};

/// Tells where the running boot loader was started from.
/// @param[out] location  one of DDAL_BOOT_UBOOT_*; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE (no boot loader in flash), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_boot_get_uboot_id(uint32_t* location);

/// Reads the version of the running boot loader: decimal digits.
/// @param length        room in `version` in bytes, terminator included; 128 hold every version
/// @param[out] version  the text, always terminated; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_SPACE (`length` is too small), DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_boot_get_uboot_version(uint32_t length, char* version);

/// Writes a boot loader image to flash. It runs from the next reset on.
/// @param path  image file without trailer; it may be removed after the call
/// @return DDAL_OK, DDAL_NOT_FOUND (no such file), DDAL_INVALID_PARAMETER (null path or an empty file),
///         DDAL_BUSY (another update runs), DDAL_NO_SPACE (larger than the flash area), DDAL_NO_DEVICE, DDAL_IO_ERROR
///         (the area may then be half written)
/// Any thread, one update at a time. Blocks for the time of erasing and writing, up to 60000 ms.
int ddal_boot_update_uboot(const char* path);

/// Tells which flash file system Linux was started from.
/// @param[out] fsId  file system identifier as in ddal_ffs.h; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NOT_FOUND (started from elsewhere), DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_boot_get_linux_active(uint32_t* fsId);

/// Allows or inhibits that an extension board takes its boot image from this unit. Kept until changed, over resets of
/// the extension board but not of this unit.
/// @param board    board number of the extension board, 2 to 4
/// @param inhibit  true: the board gets no image; false: it gets one when it asks
/// @return DDAL_OK, DDAL_INVALID_PARAMETER (no extension board's number), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_boot_set_ZUP_bootimage_inhibit(uint32_t board, bool inhibit);

#ifdef __cplusplus
}
#endif
