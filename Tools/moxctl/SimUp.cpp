#include "Deadline.hpp"
#include "Failure.hpp"
#include "Interruption.hpp"
#include "Launch.hpp"
#include "Readiness.hpp"
#include "RunLock.hpp"
#include "RunView.hpp"
#include "Session.hpp"
#include "Sim.hpp"
#include "StopProcesses.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include <cstring>

namespace mox::tools {

namespace {

constexpr double secondsToStop = 5;
constexpr double secondsBetweenRemarks = 3;
constexpr int listenMs = 20;

std::string labelOf(const Launched& service) {
    return host::hex4(service.node) + "/" + service.name;
}

/// What a wait status says.
std::string endText(int status) {
    constexpr int signalBase = 128; // as the sandbox and every shell report a signal
    const int exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : signalBase + WTERMSIG(status);
    const int signal = exitStatus - signalBase;
    const char* name = signal > 0 ? sigabbrev_np(signal) : nullptr;
    return name != nullptr ? std::string("SIG") + name : "status " + std::to_string(exitStatus);
}

/// All that does not run yet. Every executable is looked for before the first one is started.
std::vector<LaunchRequest> missingServices(const host::Run& run, const SimOptions& options,
                                           std::optional<std::uint16_t> only) {
    const StartedServices started(run);
    std::vector<LaunchRequest> missing;
    for (const host::NodeDescription& node : nodesOf(run, only)) {
        for (const host::ServiceDescription& service : node.services) {
            if (started.find(node.id, service.name)) {
                continue;
            }
            std::vector<std::string> argv{findExecutable(service.executable, options.executableDirectories)};
            argv.insert(argv.end(), service.arguments.begin(), service.arguments.end());
            missing.push_back({run.path(), node.id, service.name, std::move(argv),
                               run.nodePath(node.id) + "/log/" + service.name + ".out"});
        }
    }
    return missing;
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
            throw Failure(ExitStatus::timeLimit, "time limit reached; no service loop answers of " + missing);
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

void bringUp(Session& session, const SimOptions& options) {
    session.useRun(options.directory);
    const host::Run& run = session.run();
    const RunLock lock(run);
    const std::vector<LaunchRequest> missing = missingServices(run, options, session.namedNode());
    if (missing.empty()) {
        session.output().object({{"started", Json::array()}});
        session.output().note("nothing to do: all services run");
        return;
    }
    session.startPlatform();
    Rising rising(run);
    Json names = Json::array();
    for (const LaunchRequest& request : missing) {
        session.output().detail("starting " + host::hex4(request.node) + "/" + request.name);
        interruption::check();
        rising.start(request);
        names.push_back(host::hex4(request.node) + "/" + request.name);
    }
    rising.waitUntilReady(session.output(), options.seconds);
    rising.keep();
    session.output().object({{"started", names}});
    session.output().note("started " + cellText(names));
}

} // namespace mox::tools
