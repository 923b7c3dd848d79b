#pragma once
#include <ddal/ddal.h>
#include <ddal/ddal_alarms.h>
#include <ddal/ddal_bip.h>
#include <ddal/ddal_boot.h>
#include <ddal/ddal_eth_switch.h>
#include <ddal/ddal_hotplug.h>
#include <ddal/ddal_power.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_sfp.h>
#include <ddal/ddal_syscom_route.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>

namespace ps::hwapi::common::ddal {

/// The device drivers' functions as an object, for services that want to be given other hardware in a test.
///
///     class FanControl {
///     public:
///         explicit FanControl(ddal::DDALInterface& hardware);
///     };
///
///     ddal::DDALInstance hardware;
///     FanControl control(hardware);
///
/// Each operation has the name, parameters and results of the driver layer's function; its text in the layer's header
/// holds here too: meaning, ownership, threads, blocking.
///
/// The order is the order of the slots in the virtual table. Services that were compiled against an earlier header
/// call by slot, so nothing moves, and new operations go to the end.
class DDALInterface {
public:
    virtual ~DDALInterface() = default;

    // Texts of results
    virtual char* ddal_strerror(int code, char* text, size_t size) const = 0;

    // Message routes
    virtual int ddal_syscom_route_add_local2(uint16_t nidPrefix, uint8_t validBits) const = 0;
    virtual int ddal_syscom_route_add_rio(uint16_t nidPrefix, uint8_t validBits, uint16_t deviceId) const = 0;
    virtual int ddal_syscom_route_delete(uint16_t nidPrefix, uint8_t validBits) const = 0;

    // Hot plug
    virtual int ddal_hotplug_get_event_open() const = 0;
    virtual int ddal_hotplug_get_event_close(int fd) const = 0;
    virtual int ddal_hotplug_get_event(int fd, ddal_hotplug_event_t* event, int timeoutMs) const = 0;

    // RapidIO
    virtual int ddal_rio_get_own_id(uint16_t* deviceId) const = 0;
    virtual int ddal_rio_switch_port_disable(uint16_t switchId, uint8_t port) const = 0;
    virtual int ddal_rio_get_node_ids(uint16_t* deviceIds, uint32_t capacity, uint32_t* count) const = 0;
    virtual int ddal_rio_multicast_group_create(uint16_t multicastId, uint32_t* groupId) const = 0;
    virtual int ddal_rio_multicast_group_destroy(uint32_t groupId) const = 0;
    virtual int ddal_rio_multicast_group_add(uint32_t groupId, uint16_t deviceId) const = 0;
    virtual int ddal_rio_multicast_group_remove(uint32_t groupId, uint16_t deviceId) const = 0;
    virtual int ddal_rio_isolate_endpoint(uint16_t deviceId) const = 0;
    virtual int ddal_rio_clear_retry_lim_stop(uint16_t switchId, uint8_t port) const = 0;
    virtual int ddal_rio_reintegrate_endpoint(uint16_t deviceId) const = 0;

    // SFP modules
    virtual int ddal_sfp_ctrl_set(uint32_t port, ddal_sfp_ctrl_t ctrl, bool active) const = 0;

    // System information
    virtual int ddal_sysinfo_get_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                      uint64_t* value) const = 0;
    virtual int ddal_sysinfo_set_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                      uint64_t value) const = 0;
    virtual int ddal_sysinfo_get_string(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                        char* text, size_t size) const = 0;
    virtual int ddal_sysinfo_set_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                      const void* data, size_t size) const = 0;
    virtual int ddal_sysinfo_get_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                      void* data, size_t* size) const = 0;

    // Power supply unit
    virtual int ddal_power_psu_is_ac(uint32_t psu, bool* isAc) const = 0;
    virtual int ddal_power_psu_samples_number_get(uint32_t psu, uint32_t* samples) const = 0;
    virtual int ddal_power_psu_samples_number_set(uint32_t psu, uint32_t samples) const = 0;
    virtual int ddal_power_psu_average_values_get(uint32_t psu, ddal_power_psu_average_values_t* values) const = 0;

    // Place in the shelf
    virtual int ddal_id_get_slot_id(int32_t* slotId) const = 0;

    // BIP domain
    virtual int ddal_bip_domain_id_set(uint32_t domainId) const = 0;
    virtual int ddal_bip_domain_id_get(uint32_t* domainId) const = 0;

    // External alarms and outputs
    virtual int ddal_ext_alarms_get(uint32_t* active) const = 0;
    virtual int ddal_ext_alarms_change_wait(int timeoutMs) const = 0;
    virtual int ddal_eac2_alarms_get(uint32_t* active) const = 0;
    virtual int ddal_eac2_alarms_change_wait_get(int timeoutMs, uint32_t* active) const = 0;
    virtual int ddal_custom_out_set(uint32_t output, bool active) const = 0;

    // Power
    virtual int ddal_power_set(uint32_t feed, ddal_power_state_t state) const = 0;
    virtual int ddal_power_get(uint32_t feed, ddal_power_state_t* state) const = 0;

    // Boot
    virtual int ddal_boot_set_ZUP_bootimage_inhibit(uint32_t board, bool inhibit) const = 0;

    // Ethernet switch
    virtual int ddal_eth_switch_set_port_state(uint32_t port, ddal_eth_switch_port_state_t state) const = 0;
};

} // namespace ps::hwapi::common::ddal
