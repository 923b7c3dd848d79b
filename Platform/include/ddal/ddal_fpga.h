#pragma once
/// Programmable devices: FPGAs and the BMU.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The local BMU. Other devices have an identifier with the board number in its upper 16 bits, such as 0x20001 for the
/// BMU of extension board 2 and 0x10001 for the local FPGA.
enum { DDAL_FPGA_BMU = 1 };

/// Image areas of a device.
enum {
    DDAL_FPGA_SLOT_PRIMARY = 1,  ///< loaded first
    DDAL_FPGA_SLOT_SECONDARY = 2 ///< loaded when the primary one is not usable; a BMU has none
};

/// Reads the version that a device runs now, which an update changes only after the device was loaded again.
/// @param fpgaId        device identifier
/// @param[out] version  the version; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_fpga_get_active_version(uint32_t fpgaId, uint32_t* version);

/// Writes an image into one of a device's areas. The device runs on unchanged until it is loaded again.
/// @param fpgaId  device identifier
/// @param slot    DDAL_FPGA_SLOT_PRIMARY or DDAL_FPGA_SLOT_SECONDARY
/// @param path    image file without trailer; it may be removed after the call
/// @return DDAL_OK, DDAL_NO_DEVICE, DDAL_NOT_FOUND (no such file), DDAL_INVALID_PARAMETER (null path, no such area
///         or an empty file), DDAL_BUSY (another update of the device runs), DDAL_NO_SPACE (larger than the area),
///         DDAL_IO_ERROR (the area may then be half written)
/// Any thread, one update of a device at a time. Blocks for the time of erasing and writing, up to 600000 ms.
int ddal_fpga_update_mod(uint32_t fpgaId, uint32_t slot, const char* path);

#ifdef __cplusplus
}
#endif
