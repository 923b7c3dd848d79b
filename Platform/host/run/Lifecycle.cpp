#include "Lifecycle.hpp"

#include <mutex>
#include <utility>
#include <vector>

namespace mox::host {

namespace {

struct Ends {
    std::mutex mutex;
    std::vector<std::function<void()>> all;
};

Ends& ends() {
    static auto* registered = new Ends; // outlives every thread
    return *registered;
}

} // namespace

void atPlatformEnd(std::function<void()> end) {
    const std::lock_guard<std::mutex> lock(ends().mutex);
    ends().all.push_back(std::move(end));
}

void endPlatform() {
    for (;;) {
        std::function<void()> end;
        {
            const std::lock_guard<std::mutex> lock(ends().mutex);
            if (ends().all.empty()) {
                return;
            }
            end = std::move(ends().all.back());
            ends().all.pop_back();
        }
        end();
    }
}

} // namespace mox::host
