#pragma once
/// Keeps cancellation (pthread_cancel) out of calls of the platform.
#include <pthread.h>
#include <unistd.h>

namespace mox::host {

/// While it lives, the calling thread is not cancelled; a cancellation waits for the thread's next cancellation point
/// behind it. Scopes nest. For whatever touches files and sockets: an unwinding there would leave a message without
/// owner or a receiver without its wake-up, and out of a destructor it would end the process.
class NoCancellation {
public:
    NoCancellation() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_before); }
    ~NoCancellation() { pthread_setcancelstate(m_before, nullptr); }
    NoCancellation(const NoCancellation&) = delete;
    NoCancellation& operator=(const NoCancellation&) = delete;

private:
    int m_before = PTHREAD_CANCEL_ENABLE;
};

/// A system call that is no cancellation point. For the paths of messages: a NoCancellation costs more than the C
/// library's own call, this one less.
template <typename... Arguments>
inline ssize_t uncancelled(long number, Arguments... arguments) {
    return static_cast<ssize_t>(::syscall(number, arguments...));
}

} // namespace mox::host
