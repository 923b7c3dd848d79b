#pragma once
#include <ddal/ddal_rp3_str.h>

#include <memory>

namespace ps::hwapi::common::ddal {

/// RP3 streams and transmission rules as an object, for services that want to be given other hardware in a test.
///
/// Each operation is a function of the driver layer, `ddal_rp3_str_` and the operation's name in the layer's spelling
/// (`trGroupFree` is `ddal_rp3_str_tr_group_free`), with its parameters and results; its text in the layer's header
/// holds here too. Two spellings differ further: `strBufCtrlSet` and `strBufCtrlGet` are the functions with `buf_ctrl`
/// in their names, and `mappingLinkClear` is the one that ends in `link_clr`.
/// The order is the order of the slots: nothing moves, new operations go to the end.
class AbstractRp3Str {
public:
    virtual ~AbstractRp3Str() = default;

    /// @return the object that all users of the hardware share; see createInstance() of the implementation. Any thread.
    static std::shared_ptr<AbstractRp3Str> instance();

    virtual int streamReserve(ddal_rp3_str_stream_type_t type, uint32_t* stream) const = 0;
    virtual int streamFree(uint32_t stream) const = 0;
    virtual int trGroupTypeGet(ddal_rp3_link_t link, ddal_rp3_str_tr_group_type_t* type) const = 0;
    virtual int strBufCtrlSet(uint32_t stream, ddal_rp3_str_buf_mode_t mode, uint8_t depth) const = 0;
    virtual int strBufCtrlGet(uint32_t stream, ddal_rp3_str_buf_mode_t* mode, uint8_t* depth, uint8_t* fill,
                              uint8_t* peak) const = 0;
    virtual int mappingHeaderSet(uint32_t stream, uint16_t address, uint8_t type) const = 0;
    virtual int mappingLinkStatusGet(uint32_t stream, ddal_rp3_link_t link, ddal_rp3_status_t* status) const = 0;
    virtual int trGroupFree(uint32_t group) const = 0;
    virtual int trGroupReserve(ddal_rp3_str_tr_group_type_t type, uint32_t* group) const = 0;
    virtual int trCtrlSet(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, ddal_rp3_link_t link, uint32_t stream,
                          uint16_t index, uint16_t modulo, ddal_rp3_str_tr_slot_t slot) const = 0;
    virtual int trTstampDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const = 0;
    virtual int trTstampEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t timeStamp) const = 0;
    virtual int trDbmBitmap1Set(uint32_t group, uint8_t streams, uint8_t multiplier, uint8_t size, uint32_t bits0To31,
                                uint32_t bits32To63, uint16_t bits64To79) const = 0;
    virtual int trDbmBitmap2Set(uint32_t group, uint8_t size, uint32_t bits0To31, uint16_t bits32To47) const = 0;
    virtual int trDbmEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t offset) const = 0;
    virtual int trDbmDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const = 0;
    virtual int openEventFile() const = 0;
    virtual int getEvent(int fd, ddal_rp3_str_event* event, int timeoutMs) const = 0;
    virtual int closeEventFile(int fd) const = 0;
    virtual int mappingLinkSet(uint32_t stream, ddal_rp3_link_t link) const = 0;
    virtual int mappingLinkClear(uint32_t stream, ddal_rp3_link_t link) const = 0;
};

} // namespace ps::hwapi::common::ddal
