#pragma once
#include <mox/ddal/AbstractCpriAxc.hpp>

#include <memory>

namespace ps::hwapi::common::ddal {

/// The containers of the hardware: hands each operation on to the driver layer. Holds nothing.
class CpriAxc : public AbstractCpriAxc {
public:
    /// @return the one shared object, created on the first call and released at process exit. Any thread.
    static std::shared_ptr<CpriAxc> createInstance();

    int free(uint32_t axc) const override;
    int enable(uint32_t axc) const override;
    int disable(uint32_t axc) const override;
    int airframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const override;
    int tstampSet(uint32_t axc, uint8_t timeStamp) const override;
    int prioritySet(uint32_t axc, ddal_cpri_axc_priority_t priority) const override;
    int fpgaAirframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const override;
    int ownershipSet(uint32_t axc, uint8_t owner) const override;
    int request(uint32_t module, ddal_cpri_direction_t direction, uint8_t link, uint32_t* axc) const override;
    int rp3Set(uint32_t axc, uint16_t address, uint8_t type) const override;
    int containerSet(uint32_t axc, uint8_t position, ddal_cpri_axc_iq_format_t format, uint8_t sampleWidth,
                     uint8_t samples) const override;
    int streamSet(uint32_t axc, uint32_t stream) const override;
};

} // namespace ps::hwapi::common::ddal
