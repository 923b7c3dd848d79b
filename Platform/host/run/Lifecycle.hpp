#pragma once
/// Parts of the platform that must begin and end in an order say so here.
#include <functional>

namespace mox::host {

/// Registers what ends a part of the platform; run by AaStartupEeShutdown in reverse order of registration, once.
/// Any thread. After the shut-down the part may begin anew and register again.
void atPlatformEnd(std::function<void()> end);

/// Runs and forgets everything that atPlatformEnd has collected.
void endPlatform();

} // namespace mox::host
