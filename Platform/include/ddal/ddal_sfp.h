#pragma once
/// Small form-factor pluggable (SFP) transceivers.
#include <ddal/ddal.h>

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Control lines of a transceiver.
typedef enum ddal_sfp_ctrl_t {
    DDAL_SFP_CTRL_TX_DISABLE = 0,  ///< switches the transmitter off
    DDAL_SFP_CTRL_RATE_SELECT = 1, ///< selects the higher one of two rates
    DDAL_SFP_CTRL_POWER = 2        ///< gives the cage power
} ddal_sfp_ctrl_t;

/// Sets a control line. It is kept until changed, also when the transceiver is exchanged.
/// @param port    optical port, from 0
/// @param ctrl    the control line
/// @param active  true: the line does what its name says
/// @return DDAL_OK, DDAL_NOT_FOUND (no such port), DDAL_NO_DEVICE (no transceiver plugged in), DDAL_INVALID_PARAMETER,
///         DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sfp_ctrl_set(uint32_t port, ddal_sfp_ctrl_t ctrl, bool active);

#ifdef __cplusplus
}
#endif
