#include "AaStartup.hpp"

#include "../bus/Process.hpp"
#include "../core/Links.hpp"
#include "../core/Registry.hpp"
#include "../run/Environment.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/NoCancellation.hpp"
#include "AaConfigState.hpp"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

namespace mox::host {

namespace {

class Environment {
public:
    int start() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!config::started()) {
            return EAaStartupRetVal_NoConfig;
        }
        if (m_running) {
            return EAaStartupRetVal_AlreadyStarted;
        }
        m_running = true;
        return EAaStartupRetVal_NoError;
    }

    void cancelStart() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_running = false;
    }

    /// @return whether it was running; its call-backs, newest first
    bool stop(std::vector<TAaStartupShutdownCb>& callbacks) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_running) {
            return false;
        }
        m_running = false;
        callbacks.swap(m_callbacks);
        std::reverse(callbacks.begin(), callbacks.end());
        return true;
    }

    void add(TAaStartupShutdownCb callback) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (std::find(m_callbacks.begin(), m_callbacks.end(), callback) == m_callbacks.end()) {
            m_callbacks.push_back(callback);
        }
    }

private:
    std::mutex m_mutex;
    bool m_running = false;
    std::vector<TAaStartupShutdownCb> m_callbacks;
};

Environment& environment() {
    static auto* one = new Environment; // outlives every thread
    return *one;
}

void serveFullEndpoints(ProcessAddress, std::string_view body) {
    std::uint16_t cpid = 0;
    if (body.size() == sizeof(cpid)) {
        std::memcpy(&cpid, body.data(), sizeof(cpid));
        Registry::instance().serveFull(cpid);
    }
}

} // namespace

int AaStartupEeStartup() {
    const NoCancellation wholeCall;
    const int result = environment().start();
    if (result != EAaStartupRetVal_NoError) {
        return result;
    }
    onNotice(Topic::drain, serveFullEndpoints);
    if (!startProcess()) {
        environment().cancelStart();
        return EAaStartupRetVal_OutOfResources;
    }
    atPlatformEnd([] { Registry::instance().removeAll(); });
    atPlatformEnd(endLinks);
    setEnvironmentState(EnvironmentState::running);
    return EAaStartupRetVal_NoError;
}

int AaStartupEeShutdown() {
    const NoCancellation wholeCall;
    std::vector<TAaStartupShutdownCb> callbacks;
    if (!environment().stop(callbacks)) {
        return EAaStartupRetVal_NotStarted;
    }
    for (const TAaStartupShutdownCb callback : callbacks) {
        callback();
    }
    setEnvironmentState(EnvironmentState::ended);
    endPlatform();
    return EAaStartupRetVal_NoError;
}

int AaStartupAtEeShutdown(TAaStartupShutdownCb callback) {
    if (callback == nullptr) {
        return EAaStartupRetVal_InvalidValue;
    }
    environment().add(callback);
    return EAaStartupRetVal_NoError;
}

} // namespace mox::host
