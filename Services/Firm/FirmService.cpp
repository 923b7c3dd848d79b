#include "FirmService.hpp"

#include "UpdateJob.hpp"
#include "Verdict.hpp"

#include <mox/kit/MemberDelegate.hpp>
#include <mox/kit/PayloadView.hpp>
#include <pal/AaConfig.h>
#include <pal/AaSysLog.h>

namespace mox::firm {

using kit::ByteOrder;
using kit::makeDelegate;
using kit::PayloadView;
using ps::hwapi::common::ERadHwapi_FIRM;
using ps::hwapi::common::ERadHwapiState;

namespace {

// An index of the domain's room that no other service uses.
constexpr auto stateParameter = static_cast<ERadHwapiState>(0x220032);

constexpr const char* defaultDirectory = "/ffs/run/boot";

} // namespace

FirmService::FirmService() : Service("Firm", cpid, ERadHwapi_FIRM, stateParameter) {
    GetArgumentParser().SetArgumentInfo("--directory=PATH Where the image files lie (/ffs/run/boot)\n");
}

void FirmService::Init() {
    AaConfigRadSetDefault(stateParameter, "FirmState", 0);
    m_directory = directoryOption();
    AddMsgDelegate(makeDelegate(checkRequest, *this, &FirmService::onCheck));
    AddMsgDelegate(makeDelegate(updateRequest, *this, &FirmService::onUpdate));
}

std::string FirmService::directoryOption() {
    std::string text = GetArgumentParser().ReadArgument("directory");
    if (text == "arg off") {
        return defaultDirectory;
    }
    if (text.front() != '/') {
        throw InitFailedException("--directory: expected an absolute path", "Services/Firm/FirmService", __LINE__);
    }
    return text;
}

void FirmService::onCheck(void* msg) {
    understand(msg, checkResponse, &FirmService::check);
}

void FirmService::onUpdate(void* msg) {
    understand(msg, updateResponse, &FirmService::update);
}

void FirmService::understand(void* msg, std::uint16_t responseId, Handler handler) {
    const PayloadView payload = PayloadView::of(msg, ByteOrder::little);
    const Requester requester(msg, GetRadId());
    const auto request = Request::read(payload);
    if (!request) {
        return refuse(requester, responseId, Request::readLeniently(payload), State::malformed);
    }
    const ComponentFunctions* const component = findComponent(request->component);
    if (component == nullptr) {
        return refuse(requester, responseId, *request, State::unknownComponent);
    }
    (this->*handler)(requester, *component, *request);
}

void FirmService::refuse(const Requester& requester, std::uint16_t responseId, const Request& request,
                         State state) const {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, GetRadId(), "request %u of 0x%08X for %s refused: %s",
                   request.ticket, requester.address(), nameOf(request.component).c_str(), wordOf(state));
    Verdict verdict;
    verdict.state = state;
    requester.tell(responseId, answerOf(request, verdict));
}

void FirmService::check(const Requester& requester, const ComponentFunctions& component, const Request& request) {
    const Verdict verdict = decide(component, request, m_directory, Force::byRequest);
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, GetRadId(), "%s check %u of 0x%08X: %s, result %d, file '%s'",
                   component.name, request.ticket, requester.address(), wordOf(verdict.state), verdict.result,
                   verdict.path.c_str());
    requester.tell(checkResponse, answerOf(request, verdict));
}

void FirmService::update(const Requester& requester, const ComponentFunctions& component, const Request& request) {
    const UpdateJob job(requester, component, request, m_directory);
    job(); // on the main EU, where requests wait for each other: so there is one update at a time
}

} // namespace mox::firm
