#pragma once
/// The unit's Ethernet switch.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// State of a switch port.
typedef enum ddal_eth_switch_port_state_t {
    DDAL_ETH_SWITCH_PORT_DISABLED = 0,  ///< passes nothing
    DDAL_ETH_SWITCH_PORT_BLOCKING = 1,  ///< passes management frames only
    DDAL_ETH_SWITCH_PORT_LEARNING = 2,  ///< as blocking, and learns addresses
    DDAL_ETH_SWITCH_PORT_FORWARDING = 3 ///< passes everything
} ddal_eth_switch_port_state_t;

/// Sets a port's state. It is kept until changed or until the unit is reset.
/// @param port   port number of the switch, from 0
/// @param state  the state
/// @return DDAL_OK (also when it was in that state), DDAL_NOT_FOUND (no such port), DDAL_INVALID_PARAMETER,
///         DDAL_NO_DEVICE (no switch), DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_eth_switch_set_port_state(uint32_t port, ddal_eth_switch_port_state_t state);

#ifdef __cplusplus
}
#endif
