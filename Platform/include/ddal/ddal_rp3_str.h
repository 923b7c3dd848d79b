#pragma once
/// OBSAI RP3 streams and transmission rules. A stream is one antenna carrier's messages with one header; it is mapped
/// to links. Transmission rules say in which message slots of a link a stream is sent: every `modulo`-th one, and, for
/// rates that do not divide evenly, further thinned out by two bitmaps that take turns. Rules come in groups.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Links of the unit.
typedef enum ddal_rp3_link_t {
    DDAL_RP3_LINK_0 = 0, ///< first link
    DDAL_RP3_LINK_1 = 1, ///< second link
    DDAL_RP3_LINK_2 = 2, ///< third link
    DDAL_RP3_LINK_3 = 3, ///< fourth link
    DDAL_RP3_LINK_4 = 4, ///< fifth link
    DDAL_RP3_LINK_5 = 5, ///< sixth link
    DDAL_RP3_LINK_6 = 6, ///< seventh link
    DDAL_RP3_LINK_7 = 7  ///< eighth link
} ddal_rp3_link_t;

/// Whether a stream is mapped to a link.
typedef enum ddal_rp3_status_t {
    DDAL_RP3_STATUS_DISABLED = 0, ///< not mapped
    DDAL_RP3_STATUS_ENABLED = 1   ///< mapped
} ddal_rp3_status_t;

/// Direction of a stream.
typedef enum ddal_rp3_str_stream_type_t {
    DDAL_RP3_STR_STREAM_RECEIVE = 0, ///< messages come from the links
    DDAL_RP3_STR_STREAM_TRANSMIT = 1 ///< messages go to the links
} ddal_rp3_str_stream_type_t;

/// How a stream's buffer delays messages.
typedef enum ddal_rp3_str_buf_mode_t {
    DDAL_RP3_STR_BUF_MODE_BYPASS = 0,  ///< no buffer
    DDAL_RP3_STR_BUF_MODE_FIXED = 1,   ///< always as many messages deep as was set
    DDAL_RP3_STR_BUF_MODE_ADAPTIVE = 2 ///< as deep as needed, at most what was set
} ddal_rp3_str_buf_mode_t;

/// What the rules of a group can do.
typedef enum ddal_rp3_str_tr_group_type_t {
    DDAL_RP3_STR_TR_GROUP_MODULO = 0,     ///< modulo only
    DDAL_RP3_STR_TR_GROUP_DUAL_BITMAP = 1 ///< modulo, and the group's two bitmaps
} ddal_rp3_str_tr_group_type_t;

/// A rule within its group.
typedef enum ddal_rp3_str_tr_group_rule_t {
    DDAL_RP3_STR_TR_GROUP_RULE_0 = 0, ///< first rule
    DDAL_RP3_STR_TR_GROUP_RULE_1 = 1, ///< second rule
    DDAL_RP3_STR_TR_GROUP_RULE_2 = 2, ///< third rule
    DDAL_RP3_STR_TR_GROUP_RULE_3 = 3  ///< fourth rule
} ddal_rp3_str_tr_group_rule_t;

/// Message slots that a rule counts.
typedef enum ddal_rp3_str_tr_slot_t {
    DDAL_RP3_STR_TR_SLOT_DATA = 0,   ///< data message slots
    DDAL_RP3_STR_TR_SLOT_CONTROL = 1 ///< control message slots
} ddal_rp3_str_tr_slot_t;

/// What happened to a stream.
typedef enum ddal_rp3_str_event_type_t {
    DDAL_RP3_STR_EVENT_SYNC_LOST = 0,  ///< messages are missing
    DDAL_RP3_STR_EVENT_SYNC_FOUND = 1, ///< messages come again
    DDAL_RP3_STR_EVENT_UNDERFLOW = 2,  ///< the buffer ran empty
    DDAL_RP3_STR_EVENT_OVERFLOW = 3    ///< the buffer ran full, messages were lost
} ddal_rp3_str_event_type_t;

/// One report.
typedef struct ddal_rp3_str_event {
    uint32_t stream;                ///< the stream
    ddal_rp3_link_t link;           ///< the link it happened on
    ddal_rp3_str_event_type_t type; ///< what happened
} ddal_rp3_str_event;

/// Reserves a stream.
/// @param type         direction
/// @param[out] stream  the stream, to be given back with ddal_rp3_str_stream_free; unchanged unless DDAL_OK
/// @return DDAL_OK, DDAL_NO_RESOURCE (none free), DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE (no RP3 on this unit)
/// Any thread. Does not block.
int ddal_rp3_str_stream_reserve(ddal_rp3_str_stream_type_t type, uint32_t* stream);

/// Gives a stream back; it is taken off all links first.
/// @param stream  a stream from ddal_rp3_str_stream_reserve
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_BUSY (a transmission rule uses it), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_stream_free(uint32_t stream);

/// Sets how a stream is buffered.
/// @param stream  a stream from ddal_rp3_str_stream_reserve
/// @param mode    how the buffer delays messages
/// @param depth   depth in messages; 0 with DDAL_RP3_STR_BUF_MODE_BYPASS, else 1 or more
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_buf_ctrl_set(uint32_t stream, ddal_rp3_str_buf_mode_t mode, uint8_t depth);

/// Reads how a stream is buffered. All outputs are unchanged unless the result is DDAL_OK.
/// @param stream      a stream from ddal_rp3_str_stream_reserve
/// @param[out] mode   how the buffer delays messages
/// @param[out] depth  depth in messages, as set
/// @param[out] fill   messages in the buffer now
/// @param[out] peak   most messages in the buffer since the mode was set
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_buf_ctrl_get(uint32_t stream, ddal_rp3_str_buf_mode_t* mode, uint8_t* depth, uint8_t* fill,
                              uint8_t* peak);

/// Sets the header of a stream's messages.
/// @param stream   a stream from ddal_rp3_str_stream_reserve
/// @param address  RP3 address, 0 to 0x1FFF
/// @param type     RP3 message type, 0 to 31
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_ALREADY_EXISTS (another stream of the
///         same direction has this header), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_mapping_header_set(uint32_t stream, uint16_t address, uint8_t type);

/// Maps a stream to a link, in addition to those it is mapped to.
/// @param stream  a stream from ddal_rp3_str_stream_reserve
/// @param link    the link
/// @return DDAL_OK (also when it was mapped), DDAL_NOT_FOUND (not reserved), DDAL_NO_DEVICE (no such link),
///         DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_mapping_link_set(uint32_t stream, ddal_rp3_link_t link);

/// Takes a stream off a link.
/// @param stream  a stream from ddal_rp3_str_stream_reserve
/// @param link    the link
/// @return DDAL_OK (also when it was not mapped), DDAL_NOT_FOUND (not reserved), DDAL_NO_DEVICE (no such link),
///         DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_mapping_link_clr(uint32_t stream, ddal_rp3_link_t link);

/// Tells whether a stream is mapped to a link.
/// @param stream       a stream from ddal_rp3_str_stream_reserve
/// @param link         the link
/// @param[out] status  whether it is mapped; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_NO_DEVICE (no such link), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_mapping_link_status_get(uint32_t stream, ddal_rp3_link_t link, ddal_rp3_status_t* status);

/// Tells which groups of rules a link can take.
/// @param link       the link
/// @param[out] type  the type; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such link), DDAL_INVALID_PARAMETER
/// Any thread. Does not block.
int ddal_rp3_str_tr_group_type_get(ddal_rp3_link_t link, ddal_rp3_str_tr_group_type_t* type);

/// Reserves a group of rules, all of them idle.
/// @param type        what its rules can do
/// @param[out] group  the group, to be given back with ddal_rp3_str_tr_group_free; unchanged unless DDAL_OK
/// @return DDAL_OK, DDAL_NO_RESOURCE (none of this type free), DDAL_INVALID_PARAMETER, DDAL_NO_DEVICE
/// Any thread. Does not block.
int ddal_rp3_str_tr_group_reserve(ddal_rp3_str_tr_group_type_t type, uint32_t* group);

/// Gives a group of rules back; its rules stop first.
/// @param group  a group from ddal_rp3_str_tr_group_reserve
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_group_free(uint32_t group);

/// Sets a rule: the stream is sent on the link in the slots whose number modulo `modulo` is `index`.
/// @param group   a group from ddal_rp3_str_tr_group_reserve
/// @param rule    the rule
/// @param link    the link
/// @param stream  a transmitting stream from ddal_rp3_str_stream_reserve
/// @param index   0 to `modulo` - 1
/// @param modulo  1 or more
/// @param slot    which message slots are counted
/// @return DDAL_OK, DDAL_NOT_FOUND (group or stream not reserved), DDAL_NO_DEVICE (no such link),
///         DDAL_INVALID_PARAMETER (also a receiving stream), DDAL_BUSY (another rule sends in these slots),
///         DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_ctrl_set(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, ddal_rp3_link_t link, uint32_t stream,
                             uint16_t index, uint16_t modulo, ddal_rp3_str_tr_slot_t slot);

/// Makes a rule write time stamps into the messages that it sends.
/// @param group      a group from ddal_rp3_str_tr_group_reserve
/// @param rule       the rule
/// @param timeStamp  time stamp of the first message of a radio frame, 0 to 63
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_tstamp_enable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t timeStamp);

/// Makes a rule leave time stamps as they come.
/// @param group  a group from ddal_rp3_str_tr_group_reserve
/// @param rule   the rule
/// @return DDAL_OK (also when it did so), DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_tstamp_disable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule);

/// Sets a group's first bitmap. Bit n of its 80 bits says whether the n-th slot is used.
/// @param group       a group of type DDAL_RP3_STR_TR_GROUP_DUAL_BITMAP
/// @param streams     streams that share the bitmap, 1 or more
/// @param multiplier  how often the first bitmap is gone through before the second one
/// @param size        bits used, 1 to 80
/// @param bits0To31   bits 0 to 31, bit 0 lowest
/// @param bits32To63  bits 32 to 63, bit 32 lowest
/// @param bits64To79  bits 64 to 79, bit 64 lowest
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (also a group without bitmaps), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_dbm_bitmap1_set(uint32_t group, uint8_t streams, uint8_t multiplier, uint8_t size,
                                    uint32_t bits0To31, uint32_t bits32To63, uint16_t bits64To79);

/// Sets a group's second bitmap. Bit n of its 48 bits says whether the n-th slot is used.
/// @param group       a group of type DDAL_RP3_STR_TR_GROUP_DUAL_BITMAP
/// @param size        bits used, 0 (no second bitmap) to 48
/// @param bits0To31   bits 0 to 31, bit 0 lowest
/// @param bits32To47  bits 32 to 47, bit 32 lowest
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (also a group without bitmaps), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_dbm_bitmap2_set(uint32_t group, uint8_t size, uint32_t bits0To31, uint16_t bits32To47);

/// Makes a rule use its group's bitmaps.
/// @param group   a group of type DDAL_RP3_STR_TR_GROUP_DUAL_BITMAP
/// @param rule    the rule
/// @param offset  which of the streams that share the bitmaps the rule sends, from 0
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (also a group without bitmaps, or a first
///         bitmap that was never set), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_dbm_enable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule, uint8_t offset);

/// Makes a rule go by modulo only.
/// @param group  a group from ddal_rp3_str_tr_group_reserve
/// @param rule   the rule
/// @return DDAL_OK (also when it did so), DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_rp3_str_tr_dbm_disable(uint32_t group, ddal_rp3_str_tr_group_rule_t rule);

/// Opens a source of stream reports. It reports what happens from then on, each source all of it.
/// @return a descriptor, 0 or more, that poll() takes and ddal_rp3_str_close_event_file gives back; DDAL_NO_DEVICE,
///         DDAL_NO_RESOURCE
/// Any thread. Does not block.
int ddal_rp3_str_open_event_file(void);

/// Takes the oldest report.
/// @param fd          a descriptor from ddal_rp3_str_open_event_file
/// @param[out] event  the report; unchanged unless the result is DDAL_OK
/// @param timeoutMs   time limit in milliseconds, 0: only look, -1: no limit
/// @return DDAL_OK, DDAL_TIMEOUT, DDAL_BAD_HANDLE, DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread, one at a time. Blocks up to the time limit.
int ddal_rp3_str_get_event(int fd, ddal_rp3_str_event* event, int timeoutMs);

/// Closes a source of stream reports. Reports not yet read are lost.
/// @param fd  a descriptor from ddal_rp3_str_open_event_file
/// @return DDAL_OK, DDAL_BAD_HANDLE
/// Any thread, not while another one reads from it. Does not block.
int ddal_rp3_str_close_event_file(int fd);

#ifdef __cplusplus
}
#endif
