#include "Interruption.hpp"

#include "Failure.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace mox::tools::interruption {

namespace {

std::atomic<bool> g_pending{false};
std::array<int, 2> g_pipe{-1, -1};

extern "C" void handleSignal(int /*signal*/) {
    if (g_pending.exchange(true)) {
        _exit(static_cast<int>(ExitStatus::interrupted));
    }
    const int before = errno;
    const char byte = 0;
    // The pipe is empty, so the byte finds room.
    [[maybe_unused]] const ssize_t written = write(g_pipe[1], &byte, 1);
    errno = before;
}

} // namespace

void begin() {
    if (pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw Failure(ExitStatus::failed, std::string("no pipe: ") + std::strerror(errno));
    }
    struct sigaction action {};
    action.sa_handler = handleSignal;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A reader that goes away is a failed write, so that what was registered is given up in order.
    std::signal(SIGPIPE, SIG_IGN);
}

bool pending() {
    return g_pending.load();
}

int fd() {
    return g_pipe[0];
}

void check() {
    if (pending()) {
        throw Failure(ExitStatus::interrupted, "interrupted");
    }
}

bool wait(int other, int timeoutMs) {
    std::array<pollfd, 2> watched{pollfd{g_pipe[0], POLLIN, 0}, pollfd{other, POLLIN, 0}};
    const int ready = poll(watched.data(), watched.size(), timeoutMs);
    check();
    return ready > 0 && watched[1].revents != 0;
}

} // namespace mox::tools::interruption
