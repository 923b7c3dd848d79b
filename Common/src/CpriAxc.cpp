#include <mox/ddal/CpriAxc.hpp>

namespace ps::hwapi::common::ddal {

std::shared_ptr<AbstractCpriAxc> AbstractCpriAxc::instance() {
    return CpriAxc::createInstance();
}

std::shared_ptr<CpriAxc> CpriAxc::createInstance() {
    static const std::shared_ptr<CpriAxc> shared(new CpriAxc);
    return shared;
}

int CpriAxc::free(uint32_t axc) const {
    return ::ddal_cpri_axc_free(axc);
}

int CpriAxc::enable(uint32_t axc) const {
    return ::ddal_cpri_axc_enable(axc);
}

int CpriAxc::disable(uint32_t axc) const {
    return ::ddal_cpri_axc_disable(axc);
}

int CpriAxc::airframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const {
    return ::ddal_cpri_axc_airframe_set(axc, hyperFrame, basicFrame);
}

int CpriAxc::tstampSet(uint32_t axc, uint8_t timeStamp) const {
    return ::ddal_cpri_axc_tstamp_set(axc, timeStamp);
}

int CpriAxc::prioritySet(uint32_t axc, ddal_cpri_axc_priority_t priority) const {
    return ::ddal_cpri_axc_priority_set(axc, priority);
}

int CpriAxc::fpgaAirframeSet(uint32_t axc, uint8_t hyperFrame, uint8_t basicFrame) const {
    return ::ddal_cpri_axc_fpga_airframe_set(axc, hyperFrame, basicFrame);
}

int CpriAxc::ownershipSet(uint32_t axc, uint8_t owner) const {
    return ::ddal_cpri_axc_ownership_set(axc, owner);
}

int CpriAxc::request(uint32_t module, ddal_cpri_direction_t direction, uint8_t link, uint32_t* axc) const {
    return ::ddal_cpri_axc_request(module, direction, link, axc);
}

int CpriAxc::rp3Set(uint32_t axc, uint16_t address, uint8_t type) const {
    return ::ddal_cpri_axc_rp3_set(axc, address, type);
}

int CpriAxc::containerSet(uint32_t axc, uint8_t position, ddal_cpri_axc_iq_format_t format, uint8_t sampleWidth,
                          uint8_t samples) const {
    return ::ddal_cpri_axc_container_set(axc, position, format, sampleWidth, samples);
}

int CpriAxc::streamSet(uint32_t axc, uint32_t stream) const {
    return ::ddal_cpri_axc_stream_set(axc, stream);
}

} // namespace ps::hwapi::common::ddal
