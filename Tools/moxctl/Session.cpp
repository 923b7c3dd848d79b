#include "Session.hpp"

#include "Failure.hpp"
#include "Numbers.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>

#include <host/faults/Faults.hpp>
#include <host/run/Run.hpp>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <system_error>

namespace mox::tools {

namespace {

std::string environmentText(const char* name) {
    const char* text = std::getenv(name);
    return text != nullptr ? text : "";
}

/// Absolute, because services and sandboxes have other working directories.
std::string absolutePath(const std::string& path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) != nullptr ? std::string(resolved) : path;
}

/// "1011, 1021".
std::string nodeNames(const std::string& run) {
    std::set<std::string> sorted;
    std::error_code none; // then there are no names
    for (const auto& entry : std::filesystem::directory_iterator(run + "/nodes", none)) {
        sorted.insert(entry.path().filename().string());
    }
    std::string names;
    for (const std::string& name : sorted) {
        names += (names.empty() ? "" : ", ") + name;
    }
    return names.empty() ? "none" : names;
}

} // namespace

Session::Session(const GlobalOptions& options)
    : m_options(options), m_output(options.json, options.quiet, options.verbose) {
    if (m_options.run.empty()) {
        m_options.run = environmentText("MOX_RUN");
    }
    if (m_options.node.empty()) {
        m_options.node = environmentText("MOX_NODE");
    }
}

Session::~Session() {
    if (m_started) {
        AaStartupEeShutdown();
    }
}

void Session::useRun(const std::string& directory) {
    if (!directory.empty()) {
        m_options.run = directory;
    }
}

std::optional<std::uint16_t> Session::namedNode() const {
    return m_options.node.empty() ? std::nullopt : std::optional(readNodeId(m_options.node));
}

const host::Run& Session::run() const {
    if (const host::Run* joined = host::Run::current()) {
        return *joined;
    }
    if (m_options.run.empty()) {
        throw Failure(ExitStatus::noRun, "no run: give --run DIR or set MOX_RUN ('moxctl sim new DIR' makes one)");
    }
    setenv("MOX_RUN", absolutePath(m_options.run).c_str(), 1);
    const auto node = namedNode();
    if (node) {
        setenv("MOX_NODE", host::hex4(*node).c_str(), 1);
    } else {
        unsetenv("MOX_NODE");
    }
    if (!m_takesPart) {
        host::faults::spareThisProcess();
    }
    std::string why;
    const host::Run::Attach result = host::Run::attach(why);
    if (result == host::Run::Attach::noSuchNode && node) {
        throw Failure(ExitStatus::notFound,
                      "no node " + host::hex4(*node) + "; the run has " + nodeNames(m_options.run));
    }
    if (result != host::Run::Attach::done) {
        throw Failure(ExitStatus::noRun, why);
    }
    return *host::Run::current();
}

void Session::startPlatform() {
    if (m_started) {
        return;
    }
    run();
    if (const int result = AaConfigEarlyStartup(); result != EAaConfigRetVal_NoError) {
        throw Failure(ExitStatus::noRun, "the run's configuration cannot be opened (" + std::to_string(result) + ")");
    }
    AaConfigTagSetString("pal.service.aapro.eename", "moxctl");
    if (const int result = AaStartupEeStartup(); result != EAaStartupRetVal_NoError) {
        throw Failure(ExitStatus::noRun, "the run's messages cannot be reached (" + std::to_string(result) + ")");
    }
    m_started = true;
}

} // namespace mox::tools
