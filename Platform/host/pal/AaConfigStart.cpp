#include "../run/Lifecycle.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/Run.hpp"
#include "AaConfig.hpp"
#include "AaConfigState.hpp"
#include "Rad.hpp"
#include "TagObservers.hpp"
#include "Tags.hpp"

#include <atomic>
#include <cstdio>
#include <mutex>

namespace mox::host {
namespace config {
namespace {

std::atomic<bool> open{false};

std::mutex& starting() {
    static auto& mutex = *new std::mutex;
    return mutex;
}

void end() {
    open = false;
    tags::stopObserving();
    tags::clear();
}

bool start(std::string& why) {
    const std::lock_guard lock(starting());
    if (open) {
        return true;
    }
    if (!rad::attach(why)) {
        return false;
    }
    tags::startObserving();
    atPlatformEnd(end);
    open = true;
    return true;
}

} // namespace

bool started() {
    return open.load(std::memory_order_acquire);
}

} // namespace config

int AaConfigEarlyStartup() {
    if (config::started()) {
        return EAaConfigRetVal_NoError;
    }
    const NoCancellation whileFilesAreOpen;
    std::string why;
    int result = EAaConfigRetVal_NoError;
    const Run::Attach attached = Run::attach(why);
    if (attached != Run::Attach::done && attached != Run::Attach::noVariable) {
        result = EAaConfigRetVal_FileError;
    } else if (std::string reason; !config::start(reason)) {
        result = EAaConfigRetVal_OutOfResources;
        why = reason;
    }
    if (!why.empty()) {
        // There is no log yet, and the caller prints no more than the number.
        std::fprintf(stderr, "AaConfigEarlyStartup: %s\n", why.c_str());
    }
    return result;
}

} // namespace mox::host
