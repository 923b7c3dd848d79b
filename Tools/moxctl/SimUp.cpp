#include "Deadline.hpp"
#include "Failure.hpp"
#include "Interruption.hpp"
#include "Launch.hpp"
#include "Readiness.hpp"
#include "RunLock.hpp"
#include "RunView.hpp"
#include "Session.hpp"
#include "Sim.hpp"
#include "SimServices.hpp"
#include "StopProcesses.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

namespace mox::tools {

namespace {

constexpr double secondsToStop = 5;
constexpr double secondsBetweenRemarks = 3;
constexpr int listenMs = 20;

std::string labelOf(const Launched& service) {
    return serviceLabel(service.node, service.name);
}

/// What a wait status says.
std::string endText(int status) {
    const std::string signal = signalName(exitStatusOf(status));
    return signal.empty() ? "status " + std::to_string(exitStatusOf(status)) : signal;
}

/// Services on their way up; those that this call has started end with it unless keep() was called.
class Rising {
public:
    explicit Rising(const host::Run& run) : m_run(run), m_started(run) {}
    ~Rising() {
        if (!m_kept) {
            stop();
        }
    }
    Rising(const Rising&) = delete;
    Rising& operator=(const Rising&) = delete;

    void start(const LaunchRequest& request) {
        m_services.push_back(launch(request));
        m_started.remember(request.node, request.name, m_services.back().process);
    }
    void waitUntilReady(const Output& output, double seconds);
    void keep() { m_kept = true; }

private:
    void stop();
    void checkAlive(const Launched& service) const;
    std::string waitedFor(const Readiness& readiness) const;

    const host::Run& m_run;
    StartedServices m_started;
    std::vector<Launched> m_services;
    bool m_kept = false;
};

void Rising::stop() {
    std::vector<ProcessFacts> processes;
    for (const Launched& service : m_services) {
        processes.push_back(service.process);
        m_started.forget(service.node, service.name);
    }
    try {
        stopProcesses(processes, secondsToStop);
    } catch (const Failure&) {
        // What made this necessary is what the user is told.
    }
    for (const Launched& service : m_services) {
        removeDeadSockets(m_run, service.node);
    }
}

void Rising::checkAlive(const Launched& service) const {
    int status = 0;
    if (waitpid(service.sandbox, &status, WNOHANG) == service.sandbox) {
        throw Failure(ExitStatus::failed, "service '" + labelOf(service) + "' ended with " + endText(status),
                      outputTail(service.outputPath, service.outputBegin));
    }
}

std::string Rising::waitedFor(const Readiness& readiness) const {
    std::string names;
    for (const Launched& service : m_services) {
        if (!readiness.isReady(service.process.pid)) {
            names += (names.empty() ? "" : ", ") + labelOf(service);
        }
    }
    return names;
}

void Rising::waitUntilReady(const Output& output, double seconds) {
    Readiness readiness(m_run);
    const Deadline deadline(seconds);
    Deadline remark(secondsBetweenRemarks);
    for (;;) {
        for (const Launched& service : m_services) {
            checkAlive(service);
            if (!readiness.isReady(service.process.pid)) {
                readiness.ask(service.node, service.process.pid);
            }
        }
        const std::string missing = waitedFor(readiness);
        if (missing.empty()) {
            return;
        }
        if (deadline.passed()) {
            throw Failure(ExitStatus::timeLimit, "time limit reached; not ready to take messages: " + missing);
        }
        if (remark.passed()) {
            output.note("waiting for " + missing);
            remark = Deadline(secondsBetweenRemarks);
        }
        readiness.listen(deadline.leftMs(listenMs));
        interruption::check();
    }
}

} // namespace

std::string serviceLabel(std::uint16_t node, const std::string& name) {
    return host::hex4(node) + "/" + name;
}

// Every executable is looked for before the first one is started.
std::vector<LaunchRequest> requestsFor(Which which, const host::Run& run,
                                       const std::vector<std::string>& executableDirectories,
                                       std::optional<std::uint16_t> only) {
    const StartedServices started(run);
    std::vector<LaunchRequest> requests;
    for (const host::NodeDescription& node : nodesOf(run, only)) {
        for (const host::ServiceDescription& service : node.services) {
            if (started.find(node.id, service.name).has_value() != (which == Which::running)) {
                continue;
            }
            std::vector<std::string> argv{findExecutable(service.executable, executableDirectories)};
            argv.insert(argv.end(), service.arguments.begin(), service.arguments.end());
            requests.push_back({run.path(), node.id, service.name, std::move(argv),
                                run.nodePath(node.id) + "/log/" + service.name + ".out"});
        }
    }
    return requests;
}

std::vector<std::string> startServices(Session& session, const std::vector<LaunchRequest>& requests, double seconds) {
    std::vector<std::string> labels;
    if (requests.empty()) {
        return labels;
    }
    session.startPlatform();
    Rising rising(session.run());
    for (const LaunchRequest& request : requests) {
        const std::string label = serviceLabel(request.node, request.name);
        session.output().detail("starting " + label);
        interruption::check();
        rising.start(request);
        labels.push_back(label);
    }
    rising.waitUntilReady(session.output(), seconds);
    rising.keep();
    return labels;
}

void bringUp(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const RunLock lock(run);
    const auto missing = requestsFor(Which::down, run, options.executableDirectories, session.namedNode());
    const auto labels = startServices(session, missing, options.seconds);
    session.output().object({{"started", labels}});
    session.output().note(labels.empty() ? "nothing to do: all services run" : "started " + cellText(labels));
}

} // namespace mox::tools
