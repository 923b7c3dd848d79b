#pragma once
/// Whether the execution environment of this process runs.
#include "Run.hpp"

#include <atomic>

namespace mox::host {

enum class EnvironmentState { untold, running, ended };

namespace detail {
inline std::atomic<EnvironmentState> environmentState{EnvironmentState::untold};
}

/// For AaStartupEeStartup, and for AaStartupEeShutdown after its call-backs have returned.
inline void setEnvironmentState(EnvironmentState state) noexcept {
    detail::environmentState.store(state, std::memory_order_release);
}

/// Whether families that need the environment may be used; otherwise they answer "not started". A process that has not
/// said anything yet may use them as soon as it belongs to a run. Any thread.
inline bool environmentRuns() noexcept {
    const EnvironmentState state = detail::environmentState.load(std::memory_order_acquire);
    return state == EnvironmentState::running || (state == EnvironmentState::untold && Run::current() != nullptr);
}

} // namespace mox::host
