#include "Links.hpp"

#include "../bus/Process.hpp"
#include "../bus/Reader.hpp"
#include "../bus/SocketNames.hpp"
#include "../run/Clock.hpp"
#include "../run/PlatformThread.hpp"
#include "../run/Run.hpp"
#include "Registry.hpp"
#include "Send.hpp"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
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

/// An endpoint that has got or lost its name.
struct NameChange {
    std::uint32_t sicad;
    bool up;
};

/// The kernel's news of names in the directories of nodes, so that no change is missed however short it is.
class NameEvents {
public:
    NameEvents() : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~NameEvents() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    NameEvents(const NameEvents&) = delete;
    NameEvents& operator=(const NameEvents&) = delete;

    int fd() const { return m_fd; }

    void addNode(const Run& run, std::uint16_t node) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const int number = inotify_add_watch(m_fd, run.nodePath(node).c_str(), IN_CREATE | IN_DELETE | IN_ONLYDIR);
        if (number >= 0) {
            m_nodes[number] = node;
        }
    }

    std::vector<NameChange> read() {
        alignas(inotify_event) std::array<char, 4096> buffer;
        std::vector<NameChange> changes;
        for (ssize_t got = 0; (got = ::read(m_fd, buffer.data(), buffer.size())) > 0;) {
            for (ssize_t at = 0; at < got;) {
                const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
                at += static_cast<ssize_t>(sizeof(event) + event.len);
                addChange(event, changes);
            }
        }
        return changes;
    }

private:
    void addChange(const inotify_event& event, std::vector<NameChange>& changes) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto node = m_nodes.find(event.wd);
        if (node == m_nodes.end() || event.len == 0) {
            return;
        }
        const auto cpid = static_cast<std::uint16_t>(std::strtoul(event.name, nullptr, 16));
        if (socketName({SocketKey::Kind::endpoint, node->second, cpid}) == event.name) {
            changes.push_back({static_cast<std::uint32_t>(node->second) << 16U | cpid, (event.mask & IN_CREATE) != 0});
        }
    }

    const int m_fd;
    std::mutex m_mutex;
    std::map<int, std::uint16_t> m_nodes;
};

/// Receivers are told on the notice thread only, so that they get the changes of an endpoint in their order. A name
/// that comes or goes is news from the kernel; that a process has died under a name is seen by looking.
class Watches {
public:
    void add(std::uint32_t sicad, std::uint32_t receiver) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_watches[{sicad, receiver}] = Told::nothing;
        if (!m_thread.joinable()) {
            m_ending = false;
            m_events = std::make_unique<NameEvents>();
            if (m_events->fd() >= 0) {
                Reader::instance().addDescriptor(m_events->fd(), [this] { takeEvents(); });
            }
            m_thread = startPlatformThread("mox-links", [this] { run(); });
        }
        m_events->addNode(*Run::current(), static_cast<std::uint16_t>(sicad >> 16U));
        runOnNoticeThread([this] { look(); });
    }

    bool remove(std::uint32_t sicad, std::uint32_t receiver) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_watches.erase({sicad, receiver}) != 0;
    }

    void end() {
        std::thread thread;
        std::unique_ptr<NameEvents> events;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_watches.clear();
            m_ending = true;
            thread.swap(m_thread);
            events.swap(m_events);
            m_changed.notify_all();
        }
        if (thread.joinable()) {
            thread.join();
        }
        if (events) {
            Reader::instance().removeDescriptor(events->fd());
        }
    }

private:
    enum class Told { nothing, up, down };
    using Watch = std::pair<std::uint32_t, std::uint32_t>; ///< endpoint, receiver

    void takeEvents() {
        std::vector<NameChange> changes;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_events) {
                changes = m_events->read();
            }
        }
        for (const NameChange& change : changes) {
            runOnNoticeThread([this, change] { tellAll(change); });
        }
    }

    std::vector<Watch> all() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        std::vector<Watch> result;
        for (const auto& known : m_watches) {
            result.push_back(known.first);
        }
        return result;
    }

    void tellAll(const NameChange& change) {
        for (const Watch& watch : all()) {
            if (watch.first == change.sicad) {
                tellOne(watch, change.up);
            }
        }
    }

    void look() {
        m_looks = false;
        for (const Watch& watch : all()) {
            tellOne(watch, isUp(watch.first));
        }
    }

    void tellOne(const Watch& watch, bool up) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            const auto known = m_watches.find(watch);
            const Told news = up ? Told::up : Told::down;
            if (known == m_watches.end() || known->second == news) {
                return;
            }
            known->second = news;
        }
        indicate(watch.first, watch.second, up);
    }

    void run() {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!waitUntil(m_changed, lock, deadlineIn(lookEveryNs), [this] { return m_ending; })) {
            if (!m_looks.exchange(true)) {
                runOnNoticeThread([this] { look(); });
            }
        }
    }

    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    std::map<Watch, Told> m_watches;
    std::unique_ptr<NameEvents> m_events;
    std::thread m_thread;
    bool m_ending = false;
    std::atomic<bool> m_looks{false}; ///< whether a look waits for its turn already
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
