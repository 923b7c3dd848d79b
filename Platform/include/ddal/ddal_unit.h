#pragma once
/// The unit's board type and its place in the shelf.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Tells the raw board type of the local unit, as strapped on the board. Only units of the Wim line have one.
/// @return the board type, 1 or more; 0 or a negative result when there is none: DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_unit_get_board(void);

/// Tells which slot of the shelf the local unit sits in.
/// @param[out] slotId  slot, 0 to 7: 0 to 3 is one half of the shelf, 4 to 7 the other; unchanged unless DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE (the unit is not in a shelf), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_id_get_slot_id(int32_t* slotId);

#ifdef __cplusplus
}
#endif
