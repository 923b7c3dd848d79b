#pragma once
/// Reports of extension boards and modules that were plugged in or out while the unit runs.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// What happened.
typedef enum ddal_hotplug_event_type_t {
    DDAL_HOTPLUG_REMOVED = 0, ///< the board or module is gone
    DDAL_HOTPLUG_INSERTED = 1 ///< the board or module is there and has power
} ddal_hotplug_event_type_t;

/// One report.
typedef struct ddal_hotplug_event_t {
    uint32_t slot;                  ///< slot of the board or module, from 0
    ddal_hotplug_event_type_t type; ///< what happened
} ddal_hotplug_event_t;

/// Opens a source of reports. It reports what happens from then on, each source all of it.
/// @return a descriptor, 0 or more, that poll() takes and ddal_hotplug_get_event_close gives back; DDAL_NO_DEVICE,
///         DDAL_NO_RESOURCE
/// Any thread. Does not block.
int ddal_hotplug_get_event_open(void);

/// Closes a source of reports. Reports not yet read are lost.
/// @param fd  a descriptor from ddal_hotplug_get_event_open
/// @return DDAL_OK, DDAL_BAD_HANDLE
/// Any thread, not while another one reads from it. Does not block.
int ddal_hotplug_get_event_close(int fd);

/// Takes the oldest report.
/// @param fd          a descriptor from ddal_hotplug_get_event_open
/// @param[out] event  the report; unchanged unless the result is DDAL_OK
/// @param timeoutMs   time limit in milliseconds, 0: only look, -1: no limit
/// @return DDAL_OK, DDAL_TIMEOUT, DDAL_BAD_HANDLE, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread, one at a time. Blocks up to the time limit.
int ddal_hotplug_get_event(int fd, ddal_hotplug_event_t* event, int timeoutMs);

#ifdef __cplusplus
}
#endif
