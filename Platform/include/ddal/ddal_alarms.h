#pragma once
/// External alarm inputs (EAC), those of the second input module (EAC2), and the customer's control outputs.
/// Inputs come as a mask: bit n is set while input n is active.
#include <ddal/ddal.h>

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reads the external alarm inputs.
/// @param[out] active  mask of active inputs; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (the unit has no such inputs), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_ext_alarms_get(uint32_t* active);

/// Waits until an external alarm input changes. A change between two calls ends the next call at once.
/// @param timeoutMs  time limit in milliseconds, 0: only look, -1: no limit
/// @return DDAL_OK (changed; read the inputs with ddal_ext_alarms_get), DDAL_TIMEOUT, DDAL_NO_DEVICE, DDAL_IO_ERROR
/// One thread at a time: a second one gets DDAL_BUSY. Blocks up to the time limit.
int ddal_ext_alarms_change_wait(int timeoutMs);

/// Reads the alarm inputs of the second input module.
/// @param[out] active  mask of active inputs; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (the module is not plugged in), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_eac2_alarms_get(uint32_t* active);

/// Waits until an alarm input of the second input module changes, and reads the inputs. A change between two calls ends
/// the next call at once.
/// @param timeoutMs    time limit in milliseconds, 0: only look, -1: no limit
/// @param[out] active  mask of active inputs after the change; unchanged unless the result is DDAL_OK
/// @return DDAL_OK (changed), DDAL_TIMEOUT, DDAL_NO_DEVICE, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// One thread at a time: a second one gets DDAL_BUSY. Blocks up to the time limit.
int ddal_eac2_alarms_change_wait_get(int timeoutMs, uint32_t* active);

/// Sets a control output.
/// @param output  output number, from 0
/// @param active  true: active, false: at rest
/// @return DDAL_OK, DDAL_NO_DEVICE (no such output), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_custom_out_set(uint32_t output, bool active);

#ifdef __cplusplus
}
#endif
