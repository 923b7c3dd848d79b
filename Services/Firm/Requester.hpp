#pragma once
#include <mox/ERadHwapi.hpp>
#include <mox/kit/PayloadWriter.hpp>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

#include <cstdint>

namespace mox::firm {

/// Who has asked, and so is told: taken from the request, which may be gone by then.
/// Any EU, one at a time.
class Requester {
public:
    /// @param msg      the request
    /// @param feature  of the log lines
    Requester(const void* msg, ps::hwapi::common::ERadHwapi feature)
        : m_address(AaSysComMsgGetSender(msg)), m_own(AaSysComMsgGetReceiver(msg)), m_feature(feature) {}

    std::uint32_t address() const { return m_address; }
    ps::hwapi::common::ERadHwapi feature() const { return m_feature; }

    /// Sends a record of FirmMessages.hpp. One that does not arrive is logged, and nothing else: an update that has
    /// begun is worth more than its requester.
    template <typename Record>
    void tell(std::uint16_t id, const Record& record) const {
        void* const msg = AaSysComMsgCreate(id, Record::size, m_address);
        if (msg == nullptr) {
            return notTold(id, EAaSysComRetVal_OutOfResources);
        }
        kit::PayloadWriter payload = kit::PayloadWriter::of(msg, kit::ByteOrder::little);
        record.write(payload);
        const EAaSysComRetVal result = AaSysComMsgSendS(msg, m_own);
        if (result != EAaSysComRetVal_NoError) {
            notTold(id, result);
        }
    }

private:
    void notTold(std::uint16_t id, EAaSysComRetVal result) const {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, m_feature, "message 0x%04X does not reach 0x%08X: %d",
                       static_cast<unsigned int>(id), static_cast<unsigned int>(m_address), static_cast<int>(result));
    }

    std::uint32_t m_address;
    std::uint32_t m_own;
    ps::hwapi::common::ERadHwapi m_feature;
};

} // namespace mox::firm
