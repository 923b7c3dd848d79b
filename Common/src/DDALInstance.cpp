#include <mox/ddal/DDALInstance.hpp>

namespace ps::hwapi::common::ddal {

char* DDALInstance::ddal_strerror(int code, char* text, size_t size) const {
    return ::ddal_strerror(code, text, size);
}

int DDALInstance::ddal_syscom_route_add_local2(uint16_t nidPrefix, uint8_t validBits) const {
    return ::ddal_syscom_route_add_local2(nidPrefix, validBits);
}

int DDALInstance::ddal_syscom_route_add_rio(uint16_t nidPrefix, uint8_t validBits, uint16_t deviceId) const {
    return ::ddal_syscom_route_add_rio(nidPrefix, validBits, deviceId);
}

int DDALInstance::ddal_syscom_route_delete(uint16_t nidPrefix, uint8_t validBits) const {
    return ::ddal_syscom_route_delete(nidPrefix, validBits);
}

int DDALInstance::ddal_hotplug_get_event_open() const {
    return ::ddal_hotplug_get_event_open();
}

int DDALInstance::ddal_hotplug_get_event_close(int fd) const {
    return ::ddal_hotplug_get_event_close(fd);
}

int DDALInstance::ddal_hotplug_get_event(int fd, ddal_hotplug_event_t* event, int timeoutMs) const {
    return ::ddal_hotplug_get_event(fd, event, timeoutMs);
}

int DDALInstance::ddal_rio_get_own_id(uint16_t* deviceId) const {
    return ::ddal_rio_get_own_id(deviceId);
}

int DDALInstance::ddal_rio_switch_port_disable(uint16_t switchId, uint8_t port) const {
    return ::ddal_rio_switch_port_disable(switchId, port);
}

int DDALInstance::ddal_rio_get_node_ids(uint16_t* deviceIds, uint32_t capacity, uint32_t* count) const {
    return ::ddal_rio_get_node_ids(deviceIds, capacity, count);
}

int DDALInstance::ddal_rio_multicast_group_create(uint16_t multicastId, uint32_t* groupId) const {
    return ::ddal_rio_multicast_group_create(multicastId, groupId);
}

int DDALInstance::ddal_rio_multicast_group_destroy(uint32_t groupId) const {
    return ::ddal_rio_multicast_group_destroy(groupId);
}

int DDALInstance::ddal_rio_multicast_group_add(uint32_t groupId, uint16_t deviceId) const {
    return ::ddal_rio_multicast_group_add(groupId, deviceId);
}

int DDALInstance::ddal_rio_multicast_group_remove(uint32_t groupId, uint16_t deviceId) const {
    return ::ddal_rio_multicast_group_remove(groupId, deviceId);
}

int DDALInstance::ddal_rio_isolate_endpoint(uint16_t deviceId) const {
    return ::ddal_rio_isolate_endpoint(deviceId);
}

int DDALInstance::ddal_rio_clear_retry_lim_stop(uint16_t switchId, uint8_t port) const {
    return ::ddal_rio_clear_retry_lim_stop(switchId, port);
}

int DDALInstance::ddal_rio_reintegrate_endpoint(uint16_t deviceId) const {
    return ::ddal_rio_reintegrate_endpoint(deviceId);
}

int DDALInstance::ddal_sfp_ctrl_set(uint32_t port, ddal_sfp_ctrl_t ctrl, bool active) const {
    return ::ddal_sfp_ctrl_set(port, ctrl, active);
}

int DDALInstance::ddal_sysinfo_get_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                        uint64_t* value) const {
    return ::ddal_sysinfo_get_uint(category, key, indexKind, index, value);
}

int DDALInstance::ddal_sysinfo_set_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                        uint64_t value) const {
    return ::ddal_sysinfo_set_uint(category, key, indexKind, index, value);
}

int DDALInstance::ddal_sysinfo_get_string(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                          char* text, size_t size) const {
    return ::ddal_sysinfo_get_string(category, key, indexKind, index, text, size);
}

int DDALInstance::ddal_sysinfo_set_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                        const void* data, size_t size) const {
    return ::ddal_sysinfo_set_data(category, key, indexKind, index, data, size);
}

int DDALInstance::ddal_sysinfo_get_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index,
                                        void* data, size_t* size) const {
    return ::ddal_sysinfo_get_data(category, key, indexKind, index, data, size);
}

int DDALInstance::ddal_power_psu_is_ac(uint32_t psu, bool* isAc) const {
    return ::ddal_power_psu_is_ac(psu, isAc);
}

int DDALInstance::ddal_power_psu_samples_number_get(uint32_t psu, uint32_t* samples) const {
    return ::ddal_power_psu_samples_number_get(psu, samples);
}

int DDALInstance::ddal_power_psu_samples_number_set(uint32_t psu, uint32_t samples) const {
    return ::ddal_power_psu_samples_number_set(psu, samples);
}

int DDALInstance::ddal_power_psu_average_values_get(uint32_t psu, ddal_power_psu_average_values_t* values) const {
    return ::ddal_power_psu_average_values_get(psu, values);
}

int DDALInstance::ddal_id_get_slot_id(int32_t* slotId) const {
    return ::ddal_id_get_slot_id(slotId);
}

int DDALInstance::ddal_bip_domain_id_set(uint32_t domainId) const {
    return ::ddal_bip_domain_id_set(domainId);
}

int DDALInstance::ddal_bip_domain_id_get(uint32_t* domainId) const {
    return ::ddal_bip_domain_id_get(domainId);
}

int DDALInstance::ddal_ext_alarms_get(uint32_t* active) const {
    return ::ddal_ext_alarms_get(active);
}

int DDALInstance::ddal_ext_alarms_change_wait(int timeoutMs) const {
    return ::ddal_ext_alarms_change_wait(timeoutMs);
}

int DDALInstance::ddal_eac2_alarms_get(uint32_t* active) const {
    return ::ddal_eac2_alarms_get(active);
}

int DDALInstance::ddal_eac2_alarms_change_wait_get(int timeoutMs, uint32_t* active) const {
    return ::ddal_eac2_alarms_change_wait_get(timeoutMs, active);
}

int DDALInstance::ddal_custom_out_set(uint32_t output, bool active) const {
    return ::ddal_custom_out_set(output, active);
}

int DDALInstance::ddal_power_set(uint32_t feed, ddal_power_state_t state) const {
    return ::ddal_power_set(feed, state);
}

int DDALInstance::ddal_power_get(uint32_t feed, ddal_power_state_t* state) const {
    return ::ddal_power_get(feed, state);
}

int DDALInstance::ddal_boot_set_ZUP_bootimage_inhibit(uint32_t board, bool inhibit) const {
    return ::ddal_boot_set_ZUP_bootimage_inhibit(board, inhibit);
}

int DDALInstance::ddal_eth_switch_set_port_state(uint32_t port, ddal_eth_switch_port_state_t state) const {
    return ::ddal_eth_switch_set_port_state(port, state);
}

} // namespace ps::hwapi::common::ddal
