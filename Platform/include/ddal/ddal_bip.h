#pragma once
/// BIP domains: units and modules with the same domain identifier work together on the internal bus, others ignore
/// each other's traffic.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Sets the local unit's domain. It is kept until changed or until the unit loses power.
/// @param domainId  the domain, 0 to 255
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_bip_domain_id_set(uint32_t domainId);

/// Reads the local unit's domain.
/// @param[out] domainId  the domain, 0 to 255; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_bip_domain_id_get(uint32_t* domainId);

#ifdef __cplusplus
}
#endif
