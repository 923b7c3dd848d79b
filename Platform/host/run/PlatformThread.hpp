#pragma once
/// Threads of the platform itself: signals blocked, named, without an EU id until one asks.
#include <functional>
#include <thread>

namespace mox::host {

/// Starts a thread. @param name  at most 15 characters. The caller joins it.
std::thread startPlatformThread(const char* name, std::function<void()> body);

} // namespace mox::host
