#pragma once
/// The kernel's table of message routes. A route covers the node identifiers that begin with a prefix of 0, 4, 8, 12
/// or 16 bits; where several cover a node, the longest prefix counts. Prefixes are in network byte order everywhere.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Where a route leads.
enum {
    DDAL_SYSCOM_ROUTE_LOCAL = 1,    ///< to this node
    DDAL_SYSCOM_ROUTE_RIO = 2,      ///< over RapidIO
    DDAL_SYSCOM_ROUTE_ETHERNET = 3, ///< over Ethernet
    DDAL_SYSCOM_ROUTE_GATEWAY = 4   ///< through a gateway process
};

/// One entry of the table.
typedef struct ddal_syscom_route_t {
    uint16_t nidPrefix; ///< node identifier prefix in network byte order; the bits beyond `validBits` are 0
    uint8_t validBits;  ///< length of the prefix in bits: 0, 4, 8, 12 or 16
    int32_t type;       ///< one of DDAL_SYSCOM_ROUTE_*
} ddal_syscom_route_t;

/// Adds a route of type DDAL_SYSCOM_ROUTE_LOCAL.
/// @param nidPrefix  node identifier prefix in network byte order
/// @param validBits  length of the prefix in bits: 0, 4, 8, 12 or 16
/// @return DDAL_OK, DDAL_ALREADY_EXISTS (-17: the same prefix is there with the same type; callers compare this number
///         and take it as success), DDAL_INVALID_PARAMETER, DDAL_NO_RESOURCE (table full)
/// Any thread. Does not block.
int ddal_syscom_route_add_local2(uint16_t nidPrefix, uint8_t validBits);

/// Adds a route of type DDAL_SYSCOM_ROUTE_RIO.
/// @param nidPrefix  node identifier prefix in network byte order
/// @param validBits  length of the prefix in bits: 0, 4, 8, 12 or 16
/// @param deviceId   RapidIO device that the messages are sent to, in host byte order
/// @return DDAL_OK, DDAL_ALREADY_EXISTS (-17: the same prefix is there with the same type), DDAL_INVALID_PARAMETER,
///         DDAL_NO_RESOURCE (table full)
/// Any thread. Does not block.
int ddal_syscom_route_add_rio(uint16_t nidPrefix, uint8_t validBits, uint16_t deviceId);

/// Deletes the routes of any type with exactly this prefix.
/// @param nidPrefix  node identifier prefix in network byte order
/// @param validBits  length of the prefix in bits: 0, 4, 8, 12 or 16
/// @return DDAL_OK, DDAL_NOT_FOUND (no such route), DDAL_INVALID_PARAMETER
/// Any thread. Does not block.
int ddal_syscom_route_delete(uint16_t nidPrefix, uint8_t validBits);

/// Reads the table in the order in which the routes were added.
/// @param[out] routes  the entries from `first` on, at most `capacity`; unchanged on failure
/// @param capacity     room in `routes`, in entries
/// @param first        index of the first entry wanted, from 0
/// @return the number of entries from `first` on, which can exceed `capacity` (only so many are written then); 0 when
///         there are none; DDAL_INVALID_PARAMETER (null `routes`), DDAL_IO_ERROR
/// Any thread. Does not block. Entries added or deleted between two calls can shift the indices.
int ddal_syscom_route_get(ddal_syscom_route_t* routes, uint32_t capacity, uint32_t first);

#ifdef __cplusplus
}
#endif
