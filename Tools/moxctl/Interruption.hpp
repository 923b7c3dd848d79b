#pragma once
/// SIGINT and SIGTERM, for commands that wait: they end in order, with the exit status for it. The second signal ends
/// the process at once.
namespace mox::tools::interruption {

/// Takes over the signals. First thread, before there is another.
void begin();

/// Whether a signal has come. Any thread.
bool pending();

/// Readable as soon as a signal has come; to be polled, never read.
int fd();

/// Throws Failure with ExitStatus::interrupted when a signal has come.
void check();

/// Waits until `other` (-1: nothing) is readable, a signal has come, or the time is up.
/// @param timeoutMs  -1: no limit
/// @return whether `other` is readable. Throws as check().
bool wait(int other, int timeoutMs);

} // namespace mox::tools::interruption
