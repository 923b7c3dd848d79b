#pragma once
/// Which services have begun to take messages.
#include <cstdint>
#include <set>

namespace mox::host {
class Run;
}

namespace mox::tools {

/// Asks services through their endpoints. First thread; the platform has been started.
class Readiness {
public:
    /// Throws Failure when there is no address to ask from.
    explicit Readiness(const host::Run& run);

    /// Asks a process's endpoints of which none was asked yet, as soon as there is one.
    void ask(std::uint16_t node, std::uint32_t pid);
    /// Takes answers for a while. Blocks until one has come, at most so long.
    void listen(int timeoutMs);
    /// Whether the process has answered.
    bool isReady(std::uint32_t pid) const { return m_ready.count(pid) != 0; }

private:
    const host::Run& m_run;
    std::set<std::uint32_t> m_asked;
    std::set<std::uint32_t> m_ready;
};

} // namespace mox::tools
