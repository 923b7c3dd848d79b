#include "abi/forwarding.hpp"

#include <mox/ddal/CpriAxc.hpp>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace ps::hwapi::common::ddal {
namespace {

using mox::abi::ForwardingRow;
using mox::abi::forwardingRow;

static_assert(std::has_virtual_destructor_v<AbstractCpriAxc> && std::is_abstract_v<AbstractCpriAxc>);
static_assert(std::is_convertible_v<CpriAxc*, AbstractCpriAxc*>, "a public base");
static_assert(sizeof(CpriAxc) == sizeof(void*), "no data");

#define ROW(operation, function) forwardingRow<CpriAxc>(#operation, &AbstractCpriAxc::operation, &::function, #function)

// clang-format off
const std::vector<ForwardingRow> inOrderOfSlots = mox::abi::inSlotOrder({
    ROW(free, ddal_cpri_axc_free),
    ROW(enable, ddal_cpri_axc_enable),
    ROW(disable, ddal_cpri_axc_disable),
    ROW(airframeSet, ddal_cpri_axc_airframe_set),
    ROW(tstampSet, ddal_cpri_axc_tstamp_set),
    ROW(prioritySet, ddal_cpri_axc_priority_set),
    ROW(fpgaAirframeSet, ddal_cpri_axc_fpga_airframe_set),
    ROW(ownershipSet, ddal_cpri_axc_ownership_set),
    ROW(request, ddal_cpri_axc_request),
    ROW(rp3Set, ddal_cpri_axc_rp3_set),
    ROW(containerSet, ddal_cpri_axc_container_set),
    ROW(streamSet, ddal_cpri_axc_stream_set)
});
// clang-format on

#undef ROW

class CpriAxcOperationBySlot : public testing::TestWithParam<ForwardingRow> {};

TEST_P(CpriAxcOperationBySlot, ReachesThePlatformUnchanged) {
    GetParam().expectForwarded(GetParam().slot);
}

INSTANTIATE_TEST_SUITE_P(EachOperation, CpriAxcOperationBySlot, testing::ValuesIn(inOrderOfSlots),
                         mox::abi::operationOf);

TEST(CpriAxcOperationBySlots, AreAllCovered) {
    EXPECT_EQ(inOrderOfSlots.size(), 12U);
}

} // namespace
} // namespace ps::hwapi::common::ddal
