#pragma once
#include <mox/ddal/DDALInterface.hpp>

namespace ps::hwapi::common::ddal {

/// The device drivers themselves: hands each operation on to the driver layer's function of the same name. Holds
/// nothing; whoever needs one constructs it.
class DDALInstance : public DDALInterface {
public:
    // Texts of results
    char* ddal_strerror(int code, char* text, size_t size) const override;

    // Message routes
    int ddal_syscom_route_add_local2(uint16_t nidPrefix, uint8_t validBits) const override;
    int ddal_syscom_route_add_rio(uint16_t nidPrefix, uint8_t validBits, uint16_t deviceId) const override;
    int ddal_syscom_route_delete(uint16_t nidPrefix, uint8_t validBits) const override;

    // Hot plug
    int ddal_hotplug_get_event_open() const override;
    int ddal_hotplug_get_event_close(int fd) const override;
    int ddal_hotplug_get_event(int fd, ddal_hotplug_event_t* event, int timeoutMs) const override;

    // RapidIO
    int ddal_rio_get_own_id(uint16_t* deviceId) const override;
    int ddal_rio_switch_port_disable(uint16_t switchId, uint8_t port) const override;
    int ddal_rio_get_node_ids(uint16_t* deviceIds, uint32_t capacity, uint32_t* count) const override;
    int ddal_rio_multicast_group_create(uint16_t multicastId, uint32_t* groupId) const override;
    int ddal_rio_multicast_group_destroy(uint32_t groupId) const override;
    int ddal_rio_multicast_group_add(uint32_t groupId, uint16_t deviceId) const override;
    int ddal_rio_multicast_group_remove(uint32_t groupId, uint16_t deviceId) const override;
    int ddal_rio_isolate_endpoint(uint16_t deviceId) const override;
    int ddal_rio_clear_retry_lim_stop(uint16_t switchId, uint8_t port) const override;
    int ddal_rio_reintegrate_endpoint(uint16_t deviceId) const override;

    // SFP modules
    int ddal_sfp_ctrl_set(uint32_t port, ddal_sfp_ctrl_t ctrl, bool active) const override;

    // System information
    int ddal_sysinfo_get_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                              uint64_t* value) const override;
    int ddal_sysinfo_set_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                              uint64_t value) const override;
    int ddal_sysinfo_get_string(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, char* text,
                                size_t size) const override;
    int ddal_sysinfo_set_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                              const void* data, size_t size) const override;
    int ddal_sysinfo_get_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, void* data,
                              size_t* size) const override;

    // Power supply unit
    int ddal_power_psu_is_ac(uint32_t psu, bool* isAc) const override;
    int ddal_power_psu_samples_number_get(uint32_t psu, uint32_t* samples) const override;
    int ddal_power_psu_samples_number_set(uint32_t psu, uint32_t samples) const override;
    int ddal_power_psu_average_values_get(uint32_t psu, ddal_power_psu_average_values_t* values) const override;

    // Place in the shelf
    int ddal_id_get_slot_id(int32_t* slotId) const override;

    // BIP domain
    int ddal_bip_domain_id_set(uint32_t domainId) const override;
    int ddal_bip_domain_id_get(uint32_t* domainId) const override;

    // External alarms and outputs
    int ddal_ext_alarms_get(uint32_t* active) const override;
    int ddal_ext_alarms_change_wait(int timeoutMs) const override;
    int ddal_eac2_alarms_get(uint32_t* active) const override;
    int ddal_eac2_alarms_change_wait_get(int timeoutMs, uint32_t* active) const override;
    int ddal_custom_out_set(uint32_t output, bool active) const override;

    // Power
    int ddal_power_set(uint32_t feed, ddal_power_state_t state) const override;
    int ddal_power_get(uint32_t feed, ddal_power_state_t* state) const override;

    // Boot
    int ddal_boot_set_ZUP_bootimage_inhibit(uint32_t board, bool inhibit) const override;

    // Ethernet switch
    int ddal_eth_switch_set_port_state(uint32_t port, ddal_eth_switch_port_state_t state) const override;
};

} // namespace ps::hwapi::common::ddal
