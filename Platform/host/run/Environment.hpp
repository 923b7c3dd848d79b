#pragma once
/// Whether the execution environment of this process runs.
#include <atomic>

namespace mox::host {

enum class EnvironmentState { ended, running };

namespace detail {
inline std::atomic<EnvironmentState> environmentState{EnvironmentState::ended};
}

/// For AaStartupEeStartup, and for AaStartupEeShutdown after its call-backs have returned.
inline void setEnvironmentState(EnvironmentState state) noexcept {
    detail::environmentState.store(state, std::memory_order_release);
}

/// Whether families that need the environment may be used; otherwise they answer "not started". Any thread.
inline bool environmentRuns() noexcept {
    return detail::environmentState.load(std::memory_order_acquire) == EnvironmentState::running;
}

} // namespace mox::host
