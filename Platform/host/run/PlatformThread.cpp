#include "PlatformThread.hpp"

#include <pthread.h>

#include <csignal>
#include <string>
#include <utility>

namespace mox::host {

std::thread startPlatformThread(const char* name, std::function<void()> body) {
    sigset_t all{};
    sigset_t before{};
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before); // the new thread inherits the mask
    std::thread thread([shown = std::string(name), run = std::move(body)] {
        pthread_setname_np(pthread_self(), shown.c_str());
        run();
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace mox::host
