#pragma once
#include "Components.hpp"
#include "FirmMessages.hpp"
#include "Requester.hpp"

#include <mox/Service.hpp>

#include <string>

namespace mox::firm {

/// Answers whether boot loader, BMU and FPGA of its board need another image, and updates them.
class FirmService : public ps::hwapi::common::Service {
public:
    FirmService();
    void Init() override;

private:
    using Handler = void (FirmService::*)(const Requester&, const ComponentFunctions&, const Request&);

    void onCheck(void* msg);
    void onUpdate(void* msg);
    void understand(void* msg, std::uint16_t responseId, Handler handler);
    void refuse(const Requester& requester, std::uint16_t responseId, const Request& request, State state) const;
    void check(const Requester& requester, const ComponentFunctions& component, const Request& request);
    void update(const Requester& requester, const ComponentFunctions& component, const Request& request);
    std::string directoryOption();

    std::string m_directory;
};

} // namespace mox::firm
