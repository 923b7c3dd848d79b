#include "abi/forwarding.hpp"

#include <mox/ddal/Rp3Str.hpp>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace ps::hwapi::common::ddal {
namespace {

using mox::abi::ForwardingRow;
using mox::abi::forwardingRow;

static_assert(std::has_virtual_destructor_v<AbstractRp3Str> && std::is_abstract_v<AbstractRp3Str>);
static_assert(std::is_convertible_v<Rp3Str*, AbstractRp3Str*>, "a public base");
static_assert(sizeof(Rp3Str) == sizeof(void*), "no data");

#define ROW(operation, function) forwardingRow<Rp3Str>(#operation, &AbstractRp3Str::operation, &::function, #function)

// clang-format off
const std::vector<ForwardingRow> inOrderOfSlots = mox::abi::inSlotOrder({
    ROW(streamReserve, ddal_rp3_str_stream_reserve),
    ROW(streamFree, ddal_rp3_str_stream_free),
    ROW(trGroupTypeGet, ddal_rp3_str_tr_group_type_get),
    ROW(strBufCtrlSet, ddal_rp3_str_buf_ctrl_set),
    ROW(strBufCtrlGet, ddal_rp3_str_buf_ctrl_get),
    ROW(mappingHeaderSet, ddal_rp3_str_mapping_header_set),
    ROW(mappingLinkStatusGet, ddal_rp3_str_mapping_link_status_get),
    ROW(trGroupFree, ddal_rp3_str_tr_group_free),
    ROW(trGroupReserve, ddal_rp3_str_tr_group_reserve),
    ROW(trCtrlSet, ddal_rp3_str_tr_ctrl_set),
    ROW(trTstampDisable, ddal_rp3_str_tr_tstamp_disable),
    ROW(trTstampEnable, ddal_rp3_str_tr_tstamp_enable),
    ROW(trDbmBitmap1Set, ddal_rp3_str_tr_dbm_bitmap1_set),
    ROW(trDbmBitmap2Set, ddal_rp3_str_tr_dbm_bitmap2_set),
    ROW(trDbmEnable, ddal_rp3_str_tr_dbm_enable),
    ROW(trDbmDisable, ddal_rp3_str_tr_dbm_disable),
    ROW(openEventFile, ddal_rp3_str_open_event_file),
    ROW(getEvent, ddal_rp3_str_get_event),
    ROW(closeEventFile, ddal_rp3_str_close_event_file),
    ROW(mappingLinkSet, ddal_rp3_str_mapping_link_set),
    ROW(mappingLinkClear, ddal_rp3_str_mapping_link_clr)
});
// clang-format on

#undef ROW

class Rp3StrOperationBySlot : public testing::TestWithParam<ForwardingRow> {};

TEST_P(Rp3StrOperationBySlot, ReachesThePlatformUnchanged) {
    GetParam().expectForwarded(GetParam().slot);
}

INSTANTIATE_TEST_SUITE_P(EachOperation, Rp3StrOperationBySlot, testing::ValuesIn(inOrderOfSlots),
                         mox::abi::operationOf);

TEST(Rp3StrOperationBySlots, AreAllCovered) {
    EXPECT_EQ(inOrderOfSlots.size(), 21U);
}

} // namespace
} // namespace ps::hwapi::common::ddal
