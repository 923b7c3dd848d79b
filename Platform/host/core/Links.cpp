#include "Links.hpp"

#include "../bus/SocketNames.hpp"
#include "../run/Clock.hpp"
#include "../run/PlatformThread.hpp"
#include "../run/Run.hpp"
#include "Registry.hpp"
#include "Send.hpp"

#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace mox::host {

namespace {

constexpr std::uint64_t lookEveryNs = 200'000'000;

bool isUp(std::uint32_t sicad) {
    const Run* run = Run::current();
    const auto node = static_cast<std::uint16_t>(sicad >> 16U);
    const auto cpid = static_cast<std::uint16_t>(sicad);
    const bool own = run == nullptr || node == run->node();
    if (own && Registry::instance().find(cpid) != nullptr) {
        return true;
    }
    const int directory = run != nullptr ? nodeDirectory(*run, node) : -1;
    return directory >= 0 && isAlive(directory, socketName({SocketKey::Kind::endpoint, node, cpid}));
}

void indicate(std::uint32_t sicad, std::uint32_t receiver, bool up) {
    Message* message = Message::allocate(sizeof(SAaSysComLinkInd));
    if (message == nullptr) {
        return;
    }
    const SAaSysComLinkInd payload{sicad, up ? 1U : 0U};
    message->header = {AASYSCOM_LINK_IND_MSG, 0, receiver, sicad, 0, sizeof(payload)};
    std::memcpy(message->payload(), &payload, sizeof(payload));
    sendMessage(message);
}

class Watches {
public:
    void add(std::uint32_t sicad, std::uint32_t receiver) {
        const bool up = isUp(sicad);
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_watches[{sicad, receiver}] = up;
            if (!m_thread.joinable()) {
                m_ending = false;
                m_thread = startPlatformThread("mox-links", [this] { run(); });
            }
        }
        indicate(sicad, receiver, up);
    }

    bool remove(std::uint32_t sicad, std::uint32_t receiver) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_watches.erase({sicad, receiver}) != 0;
    }

    void end() {
        std::thread thread;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_watches.clear();
            m_ending = true;
            thread.swap(m_thread);
            m_changed.notify_all();
        }
        if (thread.joinable()) {
            thread.join();
        }
    }

private:
    struct Change {
        std::uint32_t sicad;
        std::uint32_t receiver;
        bool up;
    };

    void run() {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!waitUntil(m_changed, lock, deadlineIn(lookEveryNs), [this] { return m_ending; })) {
            std::vector<Change> changes;
            for (auto& [watch, wasUp] : m_watches) {
                const bool up = isUp(watch.first);
                if (up != wasUp) {
                    wasUp = up;
                    changes.push_back({watch.first, watch.second, up});
                }
            }
            lock.unlock();
            for (const Change& change : changes) {
                indicate(change.sicad, change.receiver, change.up);
            }
            lock.lock();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::pair<std::uint32_t, std::uint32_t>, bool> m_watches; ///< (endpoint, receiver) -> was up
    std::thread m_thread;
    bool m_ending = false;
};

Watches& watches() {
    static auto* all = new Watches; // outlives every thread
    return *all;
}

} // namespace

void watchLink(std::uint32_t sicad, std::uint32_t receiver) {
    watches().add(sicad, receiver);
}

bool unwatchLink(std::uint32_t sicad, std::uint32_t receiver) {
    return watches().remove(sicad, receiver);
}

void endLinks() {
    watches().end();
}

} // namespace mox::host
