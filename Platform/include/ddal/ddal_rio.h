#pragma once
/// Serial RapidIO: identifiers, switches, multicast groups and copying to and from remote memory.
/// A device identifier has 16 bits and is in host byte order.
#include <ddal/ddal.h>

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// What a copy descriptor is opened for.
enum {
    DDAL_RIO_COPY_READ = 0,      ///< ddal_rio_copy_from_fd only
    DDAL_RIO_COPY_WRITE = 1,     ///< ddal_rio_copy_to_fd only
    DDAL_RIO_COPY_READ_WRITE = 2 ///< both directions
};

/// Reads this node's own device identifier.
/// @param[out] deviceId  the identifier; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE (no RapidIO on this unit), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rio_get_own_id(uint16_t* deviceId);

/// Lists the endpoints that the last enumeration found, own node included.
/// @param[out] deviceIds  the identifiers, ascending; unchanged unless the result is DDAL_OK
/// @param capacity        room in `deviceIds`, in entries
/// @param[out] count      entries written, or on DDAL_NO_SPACE the entries needed; else unchanged
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_SPACE, DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_rio_get_node_ids(uint16_t* deviceIds, uint32_t capacity, uint32_t* count);

/// Disables a switch port. Packets for devices behind it are dropped until the next enumeration.
/// @param switchId  device identifier of the switch
/// @param port      port number of the switch, from 0
/// @return DDAL_OK (also when it was disabled already), DDAL_NOT_FOUND (no such switch or port), DDAL_IO_ERROR
/// Any thread. Blocks up to 100 ms.
int ddal_rio_switch_port_disable(uint16_t switchId, uint8_t port);

/// Lets a switch port go on that stopped because too many packets were retried.
/// @param switchId  device identifier of the switch
/// @param port      port number of the switch, from 0
/// @return DDAL_OK (also when it was not stopped), DDAL_NOT_FOUND (no such switch or port), DDAL_IO_ERROR
/// Any thread. Blocks up to 100 ms.
int ddal_rio_clear_retry_lim_stop(uint16_t switchId, uint8_t port);

/// Makes an empty multicast group in all switches.
/// @param multicastId   destination identifier that stands for the group; no device may have it
/// @param[out] groupId  the group, to be given back with ddal_rio_multicast_group_destroy; unchanged unless DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_ALREADY_EXISTS (the destination is taken), DDAL_NO_RESOURCE (the
///         switches hold no further group), DDAL_IO_ERROR
/// Any thread. Blocks up to 500 ms.
int ddal_rio_multicast_group_create(uint16_t multicastId, uint32_t* groupId);

/// Removes a multicast group with all of its members.
/// @param groupId  a group from ddal_rio_multicast_group_create
/// @return DDAL_OK, DDAL_NOT_FOUND (no such group), DDAL_IO_ERROR
/// Any thread. Blocks up to 500 ms.
int ddal_rio_multicast_group_destroy(uint32_t groupId);

/// Adds an endpoint to a multicast group.
/// @param groupId   a group from ddal_rio_multicast_group_create
/// @param deviceId  the endpoint
/// @return DDAL_OK, DDAL_NOT_FOUND (no such group or endpoint), DDAL_ALREADY_EXISTS (is a member), DDAL_IO_ERROR
/// Any thread. Blocks up to 500 ms.
int ddal_rio_multicast_group_add(uint32_t groupId, uint16_t deviceId);

/// Takes an endpoint out of a multicast group.
/// @param groupId   a group from ddal_rio_multicast_group_create
/// @param deviceId  the endpoint
/// @return DDAL_OK, DDAL_NOT_FOUND (no such group, or not a member), DDAL_IO_ERROR
/// Any thread. Blocks up to 500 ms.
int ddal_rio_multicast_group_remove(uint32_t groupId, uint16_t deviceId);

/// Cuts an endpoint off: its switch port passes maintenance packets only.
/// @param deviceId  the endpoint; not the own node
/// @return DDAL_OK (also when it was cut off already), DDAL_NOT_FOUND, DDAL_INVALID_PARAMETER (own node), DDAL_IO_ERROR
/// Any thread. Blocks up to 500 ms.
int ddal_rio_isolate_endpoint(uint16_t deviceId);

/// Takes an endpoint back that ddal_rio_isolate_endpoint cut off: aligns the link's counters and opens its port.
/// @param deviceId  the endpoint
/// @return DDAL_OK (also when it was not cut off), DDAL_NOT_FOUND,
///         DDAL_IO_ERROR (the endpoint does not
///         answer and stays cut off)
/// Any thread. Blocks up to 500 ms.
int ddal_rio_reintegrate_endpoint(uint16_t deviceId);

/// Opens a descriptor for copying to and from one device's memory.
/// @param port      master port of this node, 0 for the first
/// @param deviceId  the remote device
/// @param mode      one of DDAL_RIO_COPY_*
/// @param[out] fd   the descriptor, 0 or more, to be given back with ddal_rio_copy_close_fd; unchanged unless DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such port), DDAL_NOT_FOUND (no such remote device), DDAL_INVALID_PARAMETER,
///         DDAL_NO_RESOURCE (too many open)
/// Any thread. Does not block.
int ddal_rio_copy_open_fd(uint32_t port, uint16_t deviceId, uint32_t mode, int* fd);

/// Copies into the device's memory. Bytes keep their order.
/// @param fd       a descriptor from ddal_rio_copy_open_fd
/// @param address  first address in the device's address space
/// @param data     the bytes to copy
/// @param size     number of bytes, 1 or more
/// @return DDAL_OK (all bytes have arrived), DDAL_BAD_HANDLE (also when not opened for writing),
///         DDAL_INVALID_PARAMETER, DDAL_IO_ERROR (a part may have been written)
/// Any thread, one copy on a descriptor at a time. Blocks up to 1000 ms for each 65536 bytes.
int ddal_rio_copy_to_fd(int fd, uint64_t address, const void* data, size_t size);

/// Copies out of the device's memory. Bytes keep their order.
/// @param fd         a descriptor from ddal_rio_copy_open_fd
/// @param address    first address in the device's address space
/// @param[out] data  the bytes; undefined on DDAL_IO_ERROR, unchanged on the other failures
/// @param size       number of bytes, 1 or more
/// @return DDAL_OK, DDAL_BAD_HANDLE (also when not opened for reading), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread, one copy on a descriptor at a time. Blocks up to 1000 ms for each 65536 bytes.
int ddal_rio_copy_from_fd(int fd, uint64_t address, void* data, size_t size);

/// Gives a descriptor back.
/// @param fd  a descriptor from ddal_rio_copy_open_fd
/// @return DDAL_OK, DDAL_BAD_HANDLE (not open; nothing was closed)
/// Any thread, not during a copy on the descriptor. Does not block.
int ddal_rio_copy_close_fd(int fd);

/// Copies out of a device's memory without a descriptor: opens one, copies and closes it.
/// @param port       master port of this node, 0 for the first
/// @param deviceId   the remote device
/// @param address    first address in the device's address space
/// @param[out] data  the bytes; undefined on DDAL_IO_ERROR, unchanged on the other failures
/// @param size       number of bytes, 1 or more
/// @return DDAL_OK, or the failure of the step: as ddal_rio_copy_open_fd and ddal_rio_copy_from_fd
/// Any thread. Blocks up to 1000 ms for each 65536 bytes.
int ddal_rio_copy_from(uint32_t port, uint16_t deviceId, uint64_t address, void* data, size_t size);

#ifdef __cplusplus
}
#endif
