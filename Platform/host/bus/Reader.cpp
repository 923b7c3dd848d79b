#include "Reader.hpp"

#include "../run/PlatformThread.hpp"
#include "Endpoint.hpp"

#include <sys/epoll.h>

#include <array>
#include <cerrno>
#include <chrono>

namespace mox::host {

namespace {

/// Messages moved from one socket before the next one is looked at.
constexpr unsigned fairShare = 64;
/// How long to leave a process without memory for messages alone.
constexpr std::chrono::milliseconds memoryPause{10};

} // namespace

Reader& Reader::instance() {
    static auto* reader = new Reader; // outlives every thread
    return *reader;
}

Reader::Reader() : m_epoll(epoll_create1(EPOLL_CLOEXEC)) {}

void Reader::startIfNeeded() {
    if (!m_started) {
        m_started = true;
        startPlatformThread("mox-reader", [this] { run(); }).detach();
    }
}

bool Reader::add(const std::shared_ptr<Endpoint>& endpoint) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    epoll_event event{};
    event.data.fd = endpoint->fd();
    if (epoll_ctl(m_epoll, EPOLL_CTL_ADD, endpoint->fd(), &event) != 0) {
        return false;
    }
    startIfNeeded();
    m_endpoints.emplace(endpoint->fd(), endpoint);
    return true;
}

void Reader::remove(const Endpoint& endpoint) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_endpoints.erase(endpoint.fd()) != 0) {
        epoll_ctl(m_epoll, EPOLL_CTL_DEL, endpoint.fd(), nullptr);
    }
}

void Reader::watch(const Endpoint& endpoint, bool on) const {
    watch(endpoint.fd(), on);
}

void Reader::watch(int fd, bool on) const {
    epoll_event event{};
    event.events = on ? static_cast<std::uint32_t>(EPOLLIN) : 0U;
    event.data.fd = fd;
    epoll_ctl(m_epoll, EPOLL_CTL_MOD, fd, &event);
}

bool Reader::addDescriptor(int fd, std::function<void()> readable) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    if (epoll_ctl(m_epoll, EPOLL_CTL_ADD, fd, &event) != 0) {
        return false;
    }
    startIfNeeded();
    m_descriptors[fd] = std::make_shared<std::function<void()>>(std::move(readable));
    return true; // what is readable already is served as soon as the mutex is free
}

void Reader::removeDescriptor(int fd) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_descriptors.erase(fd);
        epoll_ctl(m_epoll, EPOLL_CTL_DEL, fd, nullptr);
    }
    const std::lock_guard<std::mutex> notServing(m_servingMutex);
}

void Reader::awaitRoom(int fd, std::function<void()> room) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    startIfNeeded();
    const bool known = m_rooms.count(fd) != 0;
    m_rooms[fd] = std::move(room);
    epoll_event event{};
    event.events = static_cast<std::uint32_t>(EPOLLOUT) | static_cast<std::uint32_t>(EPOLLONESHOT);
    event.data.fd = fd;
    epoll_ctl(m_epoll, known ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, fd, &event);
}

void Reader::forgetRoom(int fd) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_rooms.erase(fd) != 0) {
        epoll_ctl(m_epoll, EPOLL_CTL_DEL, fd, nullptr);
    }
}

bool Reader::serveRoom(int fd) {
    std::function<void()> room;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto known = m_rooms.find(fd);
        if (known == m_rooms.end()) {
            return false;
        }
        room.swap(known->second);
    }
    if (room) {
        room();
    }
    return true;
}

void Reader::run() {
    std::array<epoll_event, 16> events{};
    for (;;) {
        const int count = epoll_wait(m_epoll, events.data(), static_cast<int>(events.size()), -1);
        for (int i = 0; i < count; ++i) {
            serve(events[static_cast<std::size_t>(i)].data.fd);
        }
    }
}

void Reader::serve(int fd) {
    if (serveRoom(fd)) {
        return;
    }
    const std::lock_guard<std::mutex> serving(m_servingMutex);
    std::shared_ptr<Endpoint> endpoint;
    std::shared_ptr<std::function<void()>> readable;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (const auto known = m_endpoints.find(fd); known != m_endpoints.end()) {
            endpoint = known->second;
        } else if (const auto other = m_descriptors.find(fd); other != m_descriptors.end()) {
            readable = other->second;
        }
    }
    if (endpoint && !endpoint->moveToInbox(fairShare)) {
        std::this_thread::sleep_for(memoryPause);
    }
    if (readable) {
        (*readable)();
    }
}

} // namespace mox::host
