#pragma once
/// CPRI antenna-carrier (AxC) containers: the places of one antenna carrier's samples in the frames of a CPRI link.
/// A container is requested, set up, enabled, and later disabled and freed. Settings other than priority and ownership
/// are refused with DDAL_BUSY while it is enabled.
#include <ddal/ddal.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Direction of the samples.
typedef enum ddal_cpri_direction_t {
    DDAL_CPRI_DIRECTION_DOWNLINK = 0, ///< towards the radio
    DDAL_CPRI_DIRECTION_UPLINK = 1    ///< from the radio
} ddal_cpri_direction_t;

/// Who goes first when two containers want the same transfer slot.
typedef enum ddal_cpri_axc_priority_t {
    DDAL_CPRI_AXC_PRIORITY_LOW = 0, ///< waits for containers of high priority
    DDAL_CPRI_AXC_PRIORITY_HIGH = 1 ///< goes before containers of low priority
} ddal_cpri_axc_priority_t;

/// Sample format.
typedef enum ddal_cpri_axc_iq_format_t {
    DDAL_CPRI_AXC_IQ_FORMAT_INTERLEAVED = 0, ///< I and Q bit by bit in turn
    DDAL_CPRI_AXC_IQ_FORMAT_SEQUENTIAL = 1   ///< the bits of I, then the bits of Q
} ddal_cpri_axc_iq_format_t;

/// Reserves a container.
/// @param module     CPRI module, from 0
/// @param direction  direction of the samples
/// @param link       link of that module, from 0
/// @param[out] axc   the container, to be given back with ddal_cpri_axc_free; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such module or link), DDAL_NO_RESOURCE (none free), DDAL_INVALID_PARAMETER
/// Any thread. Does not block.
int ddal_cpri_axc_request(uint32_t module, ddal_cpri_direction_t direction, uint8_t link, uint32_t* axc);

/// Gives a container back; an enabled one is disabled first.
/// @param axc  a container from ddal_cpri_axc_request
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_IO_ERROR
/// Any thread. Blocks up to 20 ms, two radio frames.
int ddal_cpri_axc_free(uint32_t axc);

/// Lets samples flow, from the next radio frame on.
/// @param axc  a container from ddal_cpri_axc_request
/// @return DDAL_OK (also when it was enabled), DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (its place in the
///         frame was never set), DDAL_IO_ERROR
/// Any thread. Blocks up to 20 ms, two radio frames.
int ddal_cpri_axc_enable(uint32_t axc);

/// Stops the samples, at the end of the radio frame. Settings are kept.
/// @param axc  a container from ddal_cpri_axc_request
/// @return DDAL_OK (also when it was disabled), DDAL_NOT_FOUND (not reserved), DDAL_IO_ERROR
/// Any thread. Blocks up to 20 ms, two radio frames.
int ddal_cpri_axc_disable(uint32_t axc);

/// Sets where in the CPRI radio frame the air frame begins.
/// @param axc         a container from ddal_cpri_axc_request
/// @param hyperFrame  hyperframe, 0 to 149
/// @param basicFrame  basic frame in it, 0 to 255
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_BUSY (enabled), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_airframe_set(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame);

/// Sets where in the radio frame the FPGA takes the air frame to begin, when that differs from the CPRI side.
/// @param axc         a container from ddal_cpri_axc_request
/// @param hyperFrame  hyperframe, 0 to 149
/// @param basicFrame  basic frame in it, 0 to 255
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_BUSY (enabled), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_fpga_airframe_set(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame);

/// Sets the time stamp of the message that carries the first sample of an air frame.
/// @param axc        a container from ddal_cpri_axc_request
/// @param timeStamp  time stamp, 0 to 63
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_BUSY (enabled), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_tstamp_set(uint32_t axc, uint8_t timeStamp);

/// Sets the priority.
/// @param axc       a container from ddal_cpri_axc_request
/// @param priority  the priority
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_priority_set(uint32_t axc, ddal_cpri_axc_priority_t priority);

/// Hands a container to another owner: only the owner's processes can change it afterwards.
/// @param axc    a container from ddal_cpri_axc_request
/// @param owner  processor number of the new owner
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (no such processor), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_ownership_set(uint32_t axc, uint8_t owner);

/// Sets the RP3 message header that the samples have on the RP3 side.
/// @param axc      a container from ddal_cpri_axc_request
/// @param address  RP3 address, 0 to 0x1FFF
/// @param type     RP3 message type, 0 to 31
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER, DDAL_BUSY (enabled), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_rp3_set(uint32_t axc, uint16_t address, uint8_t type);

/// Sets the container's place in the basic frame and what is in it.
/// @param axc          a container from ddal_cpri_axc_request
/// @param position     first bit pair of the container in the basic frame, from 0
/// @param format       sample format
/// @param sampleWidth  bits of I, and of Q, in one sample: 4 to 20
/// @param samples      samples in one container: 1 or more
/// @return DDAL_OK, DDAL_NOT_FOUND (not reserved), DDAL_INVALID_PARAMETER (also when it does not fit the basic frame),
///         DDAL_BUSY (enabled, or another container is there), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_container_set(uint32_t axc, uint8_t position, ddal_cpri_axc_iq_format_t format, uint8_t sampleWidth,
                                uint8_t samples);

/// Connects a container with an RP3 stream.
/// @param axc     a container from ddal_cpri_axc_request
/// @param stream  a stream from ddal_rp3_str_stream_reserve
/// @return DDAL_OK, DDAL_NOT_FOUND (container or stream not reserved), DDAL_BUSY (enabled), DDAL_IO_ERROR
/// Any thread. Does not block.
int ddal_cpri_axc_stream_set(uint32_t axc, uint32_t stream);

#ifdef __cplusplus
}
#endif
