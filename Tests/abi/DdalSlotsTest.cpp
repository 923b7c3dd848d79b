#include "abi/forwarding.hpp"

#include <mox/ddal/DDALInstance.hpp>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace ps::hwapi::common::ddal {
namespace {

using mox::abi::ForwardingRow;
using mox::abi::forwardingRow;

static_assert(std::has_virtual_destructor_v<DDALInterface> && std::is_abstract_v<DDALInterface>);
static_assert(std::is_convertible_v<DDALInstance*, DDALInterface*>, "a public base");
static_assert(sizeof(DDALInstance) == sizeof(void*), "no data");

#define ROW(name) forwardingRow<DDALInstance>(#name, &DDALInterface::name, &::name, #name)

// clang-format off
const std::vector<ForwardingRow> inOrderOfSlots = mox::abi::inSlotOrder({
    ROW(ddal_strerror),
    ROW(ddal_syscom_route_add_local2),
    ROW(ddal_syscom_route_add_rio),
    ROW(ddal_syscom_route_delete),
    ROW(ddal_hotplug_get_event_open),
    ROW(ddal_hotplug_get_event_close),
    ROW(ddal_hotplug_get_event),
    ROW(ddal_rio_get_own_id),
    ROW(ddal_rio_switch_port_disable),
    ROW(ddal_rio_get_node_ids),
    ROW(ddal_rio_multicast_group_create),
    ROW(ddal_rio_multicast_group_destroy),
    ROW(ddal_rio_multicast_group_add),
    ROW(ddal_rio_multicast_group_remove),
    ROW(ddal_rio_isolate_endpoint),
    ROW(ddal_rio_clear_retry_lim_stop),
    ROW(ddal_rio_reintegrate_endpoint),
    ROW(ddal_sfp_ctrl_set),
    ROW(ddal_sysinfo_get_uint),
    ROW(ddal_sysinfo_set_uint),
    ROW(ddal_sysinfo_get_string),
    ROW(ddal_sysinfo_set_data),
    ROW(ddal_sysinfo_get_data),
    ROW(ddal_power_psu_is_ac),
    ROW(ddal_power_psu_samples_number_get),
    ROW(ddal_power_psu_samples_number_set),
    ROW(ddal_power_psu_average_values_get),
    ROW(ddal_id_get_slot_id),
    ROW(ddal_bip_domain_id_set),
    ROW(ddal_bip_domain_id_get),
    ROW(ddal_ext_alarms_get),
    ROW(ddal_ext_alarms_change_wait),
    ROW(ddal_eac2_alarms_get),
    ROW(ddal_eac2_alarms_change_wait_get),
    ROW(ddal_custom_out_set),
    ROW(ddal_power_set),
    ROW(ddal_power_get),
    ROW(ddal_boot_set_ZUP_bootimage_inhibit),
    ROW(ddal_eth_switch_set_port_state)
});
// clang-format on

#undef ROW

class DdalOperationBySlot : public testing::TestWithParam<ForwardingRow> {};

TEST_P(DdalOperationBySlot, ReachesThePlatformUnchanged) {
    GetParam().expectForwarded(GetParam().slot);
}

INSTANTIATE_TEST_SUITE_P(EachOperation, DdalOperationBySlot, testing::ValuesIn(inOrderOfSlots), mox::abi::operationOf);

TEST(DdalOperationBySlots, AreAllCovered) {
    EXPECT_EQ(inOrderOfSlots.size(), 39U);
}

} // namespace
} // namespace ps::hwapi::common::ddal
