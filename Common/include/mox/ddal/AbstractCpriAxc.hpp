#pragma once
#include <ddal/ddal_cpri_axc.h>

#include <memory>

namespace ps::hwapi::common::ddal {

/// CPRI antenna-carrier containers as an object, for services that want to be given other hardware in a test.
///
/// Each operation is a function of the driver layer, `ddal_cpri_axc_` and the operation's name in the layer's spelling
/// (`airframeSet` is `ddal_cpri_axc_airframe_set`), with its parameters and results; its text in the layer's header
/// holds here too. The order is the order of the slots: nothing moves, new operations go to the end.
class AbstractCpriAxc {
public:
    virtual ~AbstractCpriAxc() = default;

    /// @return the object that all users of the hardware share; see createInstance() of the implementation. Any thread.
    static std::shared_ptr<AbstractCpriAxc> instance();

    virtual int free(uint32_t axc) const = 0;
    virtual int enable(uint32_t axc) const = 0;
    virtual int disable(uint32_t axc) const = 0;
    virtual int airframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const = 0;
    virtual int tstampSet(uint32_t axc, uint8_t timeStamp) const = 0;
    virtual int prioritySet(uint32_t axc, ddal_cpri_axc_priority_t priority) const = 0;
    virtual int fpgaAirframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const = 0;
    virtual int ownershipSet(uint32_t axc, uint8_t owner) const = 0;
    virtual int request(uint32_t module, ddal_cpri_direction_t direction, uint8_t link, uint32_t* axc) const = 0;
    virtual int rp3Set(uint32_t axc, uint16_t address, uint8_t type) const = 0;
    virtual int containerSet(uint32_t axc, uint8_t position, ddal_cpri_axc_iq_format_t format, uint8_t sampleWidth,
                             uint8_t samples) const = 0;
    virtual int streamSet(uint32_t axc, uint32_t stream) const = 0;
};

} // namespace ps::hwapi::common::ddal
