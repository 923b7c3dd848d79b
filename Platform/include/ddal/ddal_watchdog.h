#pragma once
/// The watchdog as a means to restart the unit.
#include <ddal/ddal.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reboots the unit through the watchdog. What RAM file systems keep over a software reset is kept.
/// @return only on failure: DDAL_BUSY (a reboot is under way already), DDAL_IO_ERROR; on platforms where the reboot
///         happens a moment later, DDAL_OK
/// Any thread. Blocks up to 1000 ms, the time in which the reboot happens.
int ddal_watchdog_reboot(void);

#ifdef __cplusplus
}
#endif
