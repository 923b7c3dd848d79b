#pragma once
#include "Components.hpp"
#include "FirmMessages.hpp"
#include "Requester.hpp"
#include "Verdict.hpp"

#include <string>

namespace mox::firm {

/// One update, from the question whether it is needed to the answer:
///
///     UpdateJob(Requester(msg, GetRadId()), *component, request, m_directory)();
///
/// Holds copies of all that it needs, so that it may outlive the request and run on any EU. Two updates of one
/// component must not run at once. Blocks for the time of the update, up to some minutes.
class UpdateJob {
public:
    UpdateJob(const Requester& requester, const ComponentFunctions& component, const Request& request,
              std::string directory)
        : m_requester(requester), m_component(component), m_request(request), m_directory(std::move(directory)) {}

    /// Updates if needed and possible. Tells the requester each step, and the outcome in any case.
    void operator()() const;

private:
    void report(Step step) const;
    Verdict run() const;
    void flash(Verdict& verdict) const;
    void answer(const Verdict& verdict) const;

    Requester m_requester;
    ComponentFunctions m_component;
    Request m_request;
    std::string m_directory;
};

/// @return what a client is answered
Answer answerOf(const Request& request, const Verdict& verdict);

/// A state as a word, for log lines.
const char* wordOf(State state);

} // namespace mox::firm
