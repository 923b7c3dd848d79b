#include "UpdateJob.hpp"

#include <pal/AaSysLog.h>

namespace mox::firm {

namespace {
namespace constant {
constexpr int updated = 0;
constexpr int secondarySlotFailed = -4; // only components with two slots have it
// By state.
constexpr const char* stateWords[] = {"not needed", "needed",       "updated",       "partly updated",
                                      "disabled",   "check failed", "update failed", "unknown component",
                                      "malformed"};
// By step; there is no step 0.
constexpr const char* stepWords[] = {"", "asked", "checking", "flashing", "done"};
} // namespace constant

State stateOfUpdate(int result) {
    switch (result) {
    case constant::updated:
        return State::updated;
    case constant::secondarySlotFailed:
        return State::partlyUpdated;
    default:
        return State::updateFailed;
    }
}

EAaSysLogSeverityLevel severityOf(State state) {
    const bool failed = state == State::partlyUpdated || state == State::checkFailed || state == State::updateFailed;
    return failed ? EAaSysLogSeverityLevel_Warning : EAaSysLogSeverityLevel_Info;
}

} // namespace

Answer answerOf(const Request& request, const Verdict& verdict) {
    return {request.ticket, request.component, verdict.state, verdict.result, verdict.forced ? 1U : 0U, verdict.path};
}

const char* wordOf(State state) {
    return constant::stateWords[static_cast<std::uint32_t>(state)];
}

void UpdateJob::operator()() const {
    report(Step::asked);
    const Verdict verdict = run();
    report(Step::done);
    answer(verdict);
}

Verdict UpdateJob::run() const {
    report(Step::checking);
    Verdict verdict = decide(m_component, m_request, m_directory, Force::byMarker);
    if (verdict.state == State::needed) {
        report(Step::flashing);
        flash(verdict);
    }
    return verdict;
}

void UpdateJob::flash(Verdict& verdict) const {
    verdict.result = m_component.update(verdict.path.c_str());
    verdict.state = stateOfUpdate(verdict.result);
}

void UpdateJob::report(Step step) const {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, m_requester.feature(), "%s update %u of 0x%08X: %s", m_component.name,
                   m_request.ticket, m_requester.address(), constant::stepWords[static_cast<std::uint32_t>(step)]);
    m_requester.tell(progressIndication, Progress{m_request.ticket, m_request.component, step});
}

void UpdateJob::answer(const Verdict& verdict) const {
    AaSysLogPrintE(severityOf(verdict.state), m_requester.feature(),
                   "%s update %u of 0x%08X: %s, result %d%s, file '%s'", m_component.name, m_request.ticket,
                   m_requester.address(), wordOf(verdict.state), verdict.result, verdict.forced ? ", forced" : "",
                   verdict.path.c_str());
    m_requester.tell(updateResponse, answerOf(m_request, verdict));
}

} // namespace mox::firm
