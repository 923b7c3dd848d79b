#pragma once
#include <mox/ddal/AbstractRp3Str.hpp>

#include <memory>

namespace ps::hwapi::common::ddal {

/// The streams and rules of the hardware: hands each operation on to the driver layer. Holds nothing.
class Rp3Str : public AbstractRp3Str {
public:
    /// @return the one shared object, created on the first call and released at process exit. Any thread.
    static std::shared_ptr<Rp3Str> createInstance();

    int streamReserve(ddal_rp3_str_stream_type_t type, uint32_t* stream) const override;
    int streamFree(uint32_t stream) const override;
    int trGroupTypeGet(ddal_rp3_link_t link, ddal_rp3_str_tr_group_type_t* type) const override;
    int strBufCtrlSet(uint32_t stream, ddal_rp3_str_buf_mode_t mode, uint8_t depth) const override;
    int strBufCtrlGet(uint32_t stream, ddal_rp3_str_buf_mode_t* mode, uint8_t* depth, uint8_t* fill,
                      uint8_t* peak) const override;
    int mappingHeaderSet(uint32_t stream, uint16_t address, uint8_t type) const override;
    int mappingLinkStatusGet(uint32_t stream, ddal_rp3_link_t link, ddal_rp3_status_t* status) const override;
    int trGroupFree(uint32_t group) const override;
    int trGroupReserve(ddal_rp3_str_tr_group_type_t type, uint32_t* group) const override;
    int trCtrlSet(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, ddal_rp3_link_t link, uint32_t stream,
                  uint16_t index, uint16_t modulo, ddal_rp3_str_tr_slot_t slot) const override;
    int trTstampDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const override;
    int trTstampEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t timeStamp) const override;
    int trDbmBitmap1Set(uint32_t group, uint8_t streams, uint8_t multiplier, uint8_t size, uint32_t bits0To31,
                        uint32_t bits32To63, uint16_t bits64To79) const override;
    int trDbmBitmap2Set(uint32_t group, uint8_t size, uint32_t bits0To31, uint16_t bits32To47) const override;
    int trDbmEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t offset) const override;
    int trDbmDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const override;
    int openEventFile() const override;
    int getEvent(int fd, ddal_rp3_str_event* event, int timeoutMs) const override;
    int closeEventFile(int fd) const override;
    int mappingLinkSet(uint32_t stream, ddal_rp3_link_t link) const override;
    int mappingLinkClear(uint32_t stream, ddal_rp3_link_t link) const override;
};

} // namespace ps::hwapi::common::ddal
