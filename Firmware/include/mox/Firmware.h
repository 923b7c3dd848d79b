#pragma once
/// Firmware images: what their trailer says, whether they fit this board, which one in a directory is the board's, and
/// how boot loader, BMU and FPGA are updated from them.
///
///     char image[128];
///     if (is_fpga_update_needed("/ffs/run/boot", image, sizeof(image)) == 1 && update_fpga(image) == 0)
///         restartWhenConvenient();
///
/// An image is a payload, an XML text that describes it (the trailer), and a last word that tells where the text
/// begins; it has less than 2 GiB. Except for the unit texts nothing is kept between calls. Unless a function says
/// otherwise it may be called from any thread, texts given to it are not null and end with a zero byte, and it blocks
/// for the time of its file accesses. Progress and failures go to syslog. An image that is no regular file is one that
/// cannot be opened.
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- One image -------------------------------------------------------------------------------------------------- */

/// Results of get_trailer, calculate_crc, scan_hwswid, binary_validate and binary_crc. Callers log and compare them.
enum {
    IMAGE_OK = 0,
    IMAGE_ERR_XML = 70401,            ///< the trailer does not parse, or has no element "trailer"
    IMAGE_ERR_FILE = 70406,           ///< the file could not be opened or read, or there is no memory
    IMAGE_ERR_TRAILER_LENGTH = 70407, ///< the last word is no offset inside of the file
    IMAGE_ERR_HWSWID = 70411,         ///< no compatible identifier is listed
    IMAGE_ERR_CRC = 70413             ///< the payload's CRC-32 is not the trailer's
};

/// Reads the trailer of an image.
/// @param path           image file
/// @param[out] offset    where the trailer begins, in bytes from the start of the file: also the payload's length;
///                       unchanged on failure
/// @param[out] text      the bytes from there to the end of the file, the last word included, and a zero byte; freed by
///                       the caller with free(); null on failure
/// @return IMAGE_OK, IMAGE_ERR_FILE, IMAGE_ERR_TRAILER_LENGTH
int get_trailer(const char* path, uint32_t* offset, char** text);

/// Computes the CRC-32 of the first bytes of a file, as zlib does.
/// @param path      file
/// @param length    bytes; of a file with fewer, the last four that were read count again for each four missing
/// @param[out] crc  the result; 0 on failure
/// @return IMAGE_OK, IMAGE_ERR_FILE
int calculate_crc(const char* path, uint32_t length, uint32_t* crc);

/// Checks an image completely: trailer, CRC-32, and that it lists the board's identifier, whose lowest 8 bits may
/// differ. Logs with feature 0x20003.
/// @param path       image file
/// @param ownHwSwId  hardware/software identifier of the board
/// @return IMAGE_OK or one of the IMAGE_ERR values; IMAGE_ERR_CRC also when the payload could not be read
int binary_validate(const char* path, uint32_t ownHwSwId);

/// Checks trailer and CRC-32 of an image, for whatever board it is.
/// @param path  image file
/// @return IMAGE_OK or one of the IMAGE_ERR values except IMAGE_ERR_HWSWID; IMAGE_ERR_CRC also when the payload could
///         not be read
int binary_crc(const char* path);

/// Reads the software version of an image for this board. The CRC-32 is not checked.
/// @param path                  image file
/// @param ownHwSwId             hardware/software identifier of the board
/// @param allowMinorDifference  0: the identifier must be listed as it is; else its lowest 8 bits may differ
/// @param[out] version          software version; 0 unless the result is 0
/// @return 0, 1 (not for this board), -1 (trailer not readable), -2 (trailer does not parse), -3 (no element "trailer")
int binary_version(const char* path, uint32_t ownHwSwId, int allowMinorDifference, uint32_t* version);

/// Writes the payload of an image to a file of its own. The image is expected to have passed binary_crc.
/// @param sourcePath       image file
/// @param destinationPath  file to create, for its owner only, or to overwrite
/// @return 0; -1 (no source), -2 to -5 and -7 (source not readable), -6 (the last word is no offset inside of the
///         file), -8 (destination not creatable, no regular file, one with a second name, or the source), -9 (source
///         ends early), -10 (destination not writable). On -9 and -10 the part written so far stays.
int binary_copy_without_trailer(const char* sourcePath, const char* destinationPath);

/* ---- Images in a directory, and the operator's markers ----------------------------------------------------------- */

/// Size of a row of find_binary_multiple in bytes, with the zero byte.
enum { FIND_BINARY_ROW_SIZE = 128 };

/// Reads the board's unit id and keeps it, and its first three characters, for unit_version and unit_type. These do so
/// themselves when nothing is kept yet; this reads again what may have changed.
/// @return 0; -1 when it cannot be read (both texts are empty then)
/// Any thread; but a text that changes here must not be in use by another one.
int unit_init(void);

/// The board's unit id, such as "ZUPA".
/// @return at most 31 characters; empty when it cannot be read (the next call of any thread tries again, and fills it);
///         kept by the library until unit_init reads another one
/// Any thread, the first calls too. Blocks for one reading of the device tree while there is none.
const char* unit_version(void);

/// The board's unit type: the first three characters of its unit id.
/// @return at most 3 characters; otherwise as unit_version
/// Any thread, the first calls too. Blocks as unit_version does.
const char* unit_type(void);

/// Tells whether an operator has switched firmware updates off, by a file "disable-firmware-update" below
/// "/ffs/run/logs", for boards of one type with "-" and the type in lower case behind it.
/// @return 1 or 0
int is_firmware_update_disabled(void);

/// Tells whether an operator wants an update of a component whatever the versions are, and uses one such update up: the
/// file "/ffs/run/logs/force-firmware-update-TYPE-COMPONENT" holds the number that is left.
/// @param componentName  COMPONENT
/// @return 1 or 0; 0 also when the number cannot be read or written
/// One process at a time for a component.
int is_firmware_update_forced(const char* componentName);

/// Lists the image files of a chip: those whose name contains "TYPE-CHIP", or where there is none, CHIP; and ends with
/// the first ".bin" in it. In the order of the directory.
/// @param directory       directory
/// @param boardType       TYPE, of which three characters count; null: that of the board
/// @param chipIdentifier  CHIP
/// @param[out] rows       paths, directory included, cut at 127 characters; as many as were found, at most maxRows; the
///                        others unchanged
/// @param maxRows         rows that there is room for; 0: the files are only counted
/// @return number of files, also those that there was no room for; -911 (a null argument), -1 (board unknown), -2 or -3
///         (names not formable), -4 (directory not readable)
int find_binary_multiple(const char* directory, const char* boardType, const char* chipIdentifier,
                         char (*rows)[FIND_BINARY_ROW_SIZE], int maxRows);

/// Finds the image file of a chip that is meant for this board. That two are is an error which nothing resolves.
/// @param directory             directory
/// @param boardType             as for find_binary_multiple
/// @param chipIdentifier        as for find_binary_multiple
/// @param ownHwSwId             hardware/software identifier of the board; 0: read from the device tree
/// @param allowMinorDifference  as for binary_version
/// @param[out] outPath          path of the only compatible file; zero bytes when none or more of those found are
///                              compatible; unchanged when none is found and on failure; may be null
/// @param outPathSize           size of outPath in bytes; a longer path is cut
/// @param[out] outVersion       its software version; 0 or unchanged as outPath; may be null
/// @return number of compatible files; the failures of find_binary_multiple, -5 (more than 10 files to look at),
///         -6 (own identifier not readable)
int find_binary_compatible(const char* directory, const char* boardType, const char* chipIdentifier, uint32_t ownHwSwId,
                           int allowMinorDifference, char* outPath, size_t outPathSize, uint32_t* outVersion);

/* ---- Is an update needed? ---------------------------------------------------------------------------------------- */
/* Results of the functions of this section: 1 (needed), 0 (not needed), -7 (no image file for the chip), -8 (more than
   one compatible file), -9 (active version not readable), -10 (see there), and the failures of find_binary_compatible.
   With 1, and with 0 once the image was found, its path is in outPath, cut at outPathSize bytes with the zero byte. A
   null outPath is left alone. */

/// Tells whether the boot loader was started from RAM.
/// @return 1, 0, -1 (not readable)
int is_uboot_booted_from_ram(void);

/// Boot loader: the file's version must not be lower than the active one, and the boot loader must have been started
/// from RAM.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the image; unchanged on failure, and where no image is looked for
/// @param outPathSize   size of outPath in bytes
/// @param force         1: also when it was not started from RAM
/// @return as above; -10: location of the boot loader not readable
int is_uboot_update_needed(const char* directory, char* outPath, size_t outPathSize, int force);

/// BMU: the file's version must be higher than the active one.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the image; zero bytes on failure
/// @param outPathSize   size of outPath in bytes
/// @return as above, without -10
int is_bmu_update_needed(const char* directory, char* outPath, size_t outPathSize);

/// BMU of an extension board, whose images lie in "/ffs/run/boot": as is_bmu_update_needed.
/// @param[out] outPath  path of the image; zero bytes on failure
/// @param outPathSize   size of outPath in bytes
/// @param ddalBoard     number of the board, 2 to 4
/// @param ownHwSwId     hardware/software identifier of the board; 0: read from the device tree
/// @return as above; -10: no such board
int is_bmu_update_needed_no_mcu(char* outPath, size_t outPathSize, uint32_t ddalBoard, uint32_t ownHwSwId);

/// FPGA: the file's version must differ from the active one; the FPGA follows the file both up and down.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the image; zero bytes on failure
/// @param outPathSize   size of outPath in bytes
/// @return as above; -10: this board has no FPGA
int is_fpga_update_needed(const char* directory, char* outPath, size_t outPathSize);

/// Finds the FPGA image of this board.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the only compatible file; zero bytes otherwise; may be null
/// @param outPathSize   size of outPath in bytes
/// @return as find_binary_compatible; -10: this board has no FPGA
int FindKorFpgaBinaryFile(const char* directory, char* outPath, size_t outPathSize);

/// Finds the BMU image of this board.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the only compatible file; zero bytes otherwise; may be null
/// @param outPathSize   size of outPath in bytes
/// @return as find_binary_compatible
int FindZupFpgaBinaryFile(const char* directory, char* outPath, size_t outPathSize);

/// Finds the boot loader image of this board.
/// @param directory     directory of the image files
/// @param[out] outPath  path of the only compatible file; zero bytes otherwise; may be null
/// @param outPathSize   size of outPath in bytes
/// @return as find_binary_compatible
int FindUBootBinaryFile(const char* directory, char* outPath, size_t outPathSize);

/* ---- Updating ---------------------------------------------------------------------------------------------------- */
/* An update checks the image's CRC-32, writes its payload to a temporary file of a fixed name and hands that to the
   device: one update of a component at a time. It blocks for the time that the device takes, up to some minutes. */

/// Updates the boot loader.
/// @param imagePath  image file
/// @return 0, -1 (binary_crc failed), -2 (payload not copied; the temporary file stays), -3 (not flashed)
int update_uboot(const char* imagePath);

/// Updates the BMU.
/// @param imagePath  image file
/// @param fpgaId     device identifier; 0: the local BMU, 1
/// @return 0, -1 (binary_crc failed), -2 (payload not copied; the temporary file stays), -3 (not flashed)
int update_bmu(const char* imagePath, uint32_t fpgaId);

/// Updates both slots of the board's FPGA, the primary one first.
/// @param imagePath  image file
/// @return 0, -10 (this board has no FPGA), -1 (binary_crc failed), -2 (payload not copied; the temporary file stays),
///         -3 (primary slot not flashed, the secondary one untouched), -4 (secondary slot not flashed)
int update_fpga(const char* imagePath);

/// Resets the BMU on the units that can: ZUPA, ZUPB, ZUPM and ZUPN. Nothing happens on others.
/// @return 0, also when the reset did not work; -1: unit unknown
int ddal_bmu_reset(void);

/// Tells where the temporary file of an update goes.
/// @return 1: "/ram"; 0: "/tmp"
int is_ram_path_used(void);

/// Identifier of the FPGA beside the processor. Not that of get_fpga: another chip on some units.
/// @return device identifier; 0: none
uint32_t fpga_id_local(void);

/// Tells which FPGA this board carries. An output may be null.
/// @param[out] shortName       its name in log lines; "unknown" when there is none; never to be freed
/// @param[out] chipIdentifier  what names of its image files contain; "unknown" when there is none; never to be freed
/// @param[out] fpgaId          device identifier; 0 when there is none
/// @return 0, -1 (none)
int get_fpga(const char** shortName, const char** chipIdentifier, uint32_t* fpgaId);

#ifdef __cplusplus
}
#endif
