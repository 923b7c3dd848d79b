#pragma once
/// What the unit and its modules say about themselves: identities burnt into the hardware. Nothing here changes while
/// the unit runs, except that a module can be plugged in or out.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reads the unit identifier, such as "ZUPA", of a unit.
/// @param unit       unit number; 0 is the local unit
/// @param length     room in `text` in bytes, 1 or more; 8 hold every text
/// @param[out] text  at most 7 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_unit_id(uint32_t unit, uint32_t length, char* text);

/// Reads the production code of a unit.
/// @param unit       unit number; 0 is the local unit
/// @param length     room in `text` in bytes, 1 or more; 13 hold every text
/// @param[out] text  at most 12 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_production_code(uint32_t unit, uint32_t length, char* text);

/// Reads the serial number of a unit.
/// @param unit       unit number; 0 is the local unit
/// @param length     room in `text` in bytes, 1 or more; 17 hold every text
/// @param[out] text  at most 16 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_serial_number(uint32_t unit, uint32_t length, char* text);

/// Reads the hardware/software identifier of a unit: unit type and version in bits 12 to 27.
/// @param unit         unit number; 0 is the local unit
/// @param[out] hwSwId  the identifier; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_hw_sw_id(uint32_t unit, uint32_t* hwSwId);

/// Reads the module code, such as "MDAA", of the plug-in module of the local unit.
/// @param length     room in `text` in bytes, 1 or more; 8 hold every text
/// @param[out] text  at most 7 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no module plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_module_unit_id(uint32_t length, char* text);

/// Reads the production code of the plug-in module of the local unit.
/// @param length     room in `text` in bytes, 1 or more; 13 hold every text
/// @param[out] text  at most 12 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no module plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_module_production_code(uint32_t length, char* text);

/// Reads the serial number of the plug-in module of the local unit.
/// @param length     room in `text` in bytes, 1 or more; 17 hold every text
/// @param[out] text  at most 16 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no module plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_module_serial_number(uint32_t length, char* text);

/// Reads the module code of the module on an external port.
/// @param portId     external port the module is plugged into
/// @param length     room in `text` in bytes, 1 or more; 8 hold every text
/// @param[out] text  at most 7 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such port or nothing plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_ext_module_unit_id(uint32_t portId, uint32_t length, char* text);

/// Reads the production code of the module on an external port.
/// @param portId     external port the module is plugged into
/// @param length     room in `text` in bytes, 1 or more; 13 hold every text
/// @param[out] text  at most 12 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such port or nothing plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_ext_module_production_code(uint32_t portId, uint32_t length, char* text);

/// Reads the serial number of the module on an external port.
/// @param portId     external port the module is plugged into
/// @param length     room in `text` in bytes, 1 or more; 17 hold every text
/// @param[out] text  at most 16 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such port or nothing plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_ext_module_serial_number(uint32_t portId, uint32_t length, char* text);

/// Reads the die identifier of the local unit's processor.
/// @param length     room in `text` in bytes, 1 or more; 129 hold every text
/// @param[out] text  at most 128 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_die_id(uint32_t length, char* text);

/// Reads the quality grade of the die identifier of the local unit's processor.
/// @param length     room in `text` in bytes, 1 or more; 9 hold every text
/// @param[out] text  at most 8 characters, cut to `length`; terminated only when shorter than `length`. Unchanged
///                   unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms for the first reading of a device, not at all later.
int ddal_devicetree_get_die_id_quality(uint32_t length, char* text);

#ifdef __cplusplus
}
#endif
