#include <mox/ddal/Rp3Str.hpp>

namespace ps::hwapi::common::ddal {

std::shared_ptr<AbstractRp3Str> AbstractRp3Str::instance() {
    return Rp3Str::createInstance();
}

std::shared_ptr<Rp3Str> Rp3Str::createInstance() {
    static const std::shared_ptr<Rp3Str> shared(new Rp3Str);
    return shared;
}

int Rp3Str::streamReserve(ddal_rp3_str_stream_type_t type, uint32_t* stream) const {
    return ::ddal_rp3_str_stream_reserve(type, stream);
}

int Rp3Str::streamFree(uint32_t stream) const {
    return ::ddal_rp3_str_stream_free(stream);
}

int Rp3Str::trGroupTypeGet(ddal_rp3_link_t link, ddal_rp3_str_tr_group_type_t* type) const {
    return ::ddal_rp3_str_tr_group_type_get(link, type);
}

int Rp3Str::strBufCtrlSet(uint32_t stream, ddal_rp3_str_buf_mode_t mode, uint8_t depth) const {
    return ::ddal_rp3_str_buf_ctrl_set(stream, mode, depth);
}

int Rp3Str::strBufCtrlGet(uint32_t stream, ddal_rp3_str_buf_mode_t* mode, uint8_t* depth, uint8_t* fill,
                          uint8_t* peak) const {
    return ::ddal_rp3_str_buf_ctrl_get(stream, mode, depth, fill, peak);
}

int Rp3Str::mappingHeaderSet(uint32_t stream, uint16_t address, uint8_t type) const {
    return ::ddal_rp3_str_mapping_header_set(stream, address, type);
}

int Rp3Str::mappingLinkStatusGet(uint32_t stream, ddal_rp3_link_t link, ddal_rp3_status_t* status) const {
    return ::ddal_rp3_str_mapping_link_status_get(stream, link, status);
}

int Rp3Str::trGroupFree(uint32_t group) const {
    return ::ddal_rp3_str_tr_group_free(group);
}

int Rp3Str::trGroupReserve(ddal_rp3_str_tr_group_type_t type, uint32_t* group) const {
    return ::ddal_rp3_str_tr_group_reserve(type, group);
}

int Rp3Str::trCtrlSet(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, ddal_rp3_link_t link, uint32_t stream,
                      uint16_t index, uint16_t modulo, ddal_rp3_str_tr_slot_t slot) const {
    return ::ddal_rp3_str_tr_ctrl_set(group, rule, link, stream, index, modulo, slot);
}

int Rp3Str::trTstampDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const {
    return ::ddal_rp3_str_tr_tstamp_disable(group, rule);
}

int Rp3Str::trTstampEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t timeStamp) const {
    return ::ddal_rp3_str_tr_tstamp_enable(group, rule, timeStamp);
}

int Rp3Str::trDbmBitmap1Set(uint32_t group, uint8_t streams, uint8_t multiplier, uint8_t size, uint32_t bits0To31,
                            uint32_t bits32To63, uint16_t bits64To79) const {
    return ::ddal_rp3_str_tr_dbm_bitmap1_set(group, streams, multiplier, size, bits0To31, bits32To63, bits64To79);
}

int Rp3Str::trDbmBitmap2Set(uint32_t group, uint8_t size, uint32_t bits0To31, uint16_t bits32To47) const {
    return ::ddal_rp3_str_tr_dbm_bitmap2_set(group, size, bits0To31, bits32To47);
}

int Rp3Str::trDbmEnable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t offset) const {
    return ::ddal_rp3_str_tr_dbm_enable(group, rule, offset);
}

int Rp3Str::trDbmDisable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule) const {
    return ::ddal_rp3_str_tr_dbm_disable(group, rule);
}

int Rp3Str::openEventFile() const {
    return ::ddal_rp3_str_open_event_file();
}

int Rp3Str::getEvent(int fd, ddal_rp3_str_event* event, int timeoutMs) const {
    return ::ddal_rp3_str_get_event(fd, event, timeoutMs);
}

int Rp3Str::closeEventFile(int fd) const {
    return ::ddal_rp3_str_close_event_file(fd);
}

int Rp3Str::mappingLinkSet(uint32_t stream, ddal_rp3_link_t link) const {
    return ::ddal_rp3_str_mapping_link_set(stream, link);
}

int Rp3Str::mappingLinkClear(uint32_t stream, ddal_rp3_link_t link) const {
    return ::ddal_rp3_str_mapping_link_clr(stream, link);
}

} // namespace ps::hwapi::common::ddal
