#include "Registry.hpp"

#include "../bus/Claim.hpp"
#include "../bus/Endpoint.hpp"
#include "../bus/Reader.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "Inbox.hpp"
#include "pal/AaSysCom.h"

#include <cerrno>
#include <cstring>
#include <vector>

namespace mox::host {

namespace {

constexpr std::uint16_t firstDynamic = AASYSCOM_FIRST_DYNAMIC_CPID;
constexpr std::uint16_t lastDynamic = 0xFFFE;

} // namespace

Registry& Registry::instance() {
    static auto* registry = new Registry; // outlives every thread
    return *registry;
}

std::uint32_t Registry::addressOf(std::uint16_t cpid) const {
    const Run* run = Run::current();
    return (run != nullptr ? static_cast<std::uint32_t>(run->node()) << 16U : 0U) | cpid;
}

void Registry::set(std::uint16_t cpid, Inbox* inbox) {
    std::atomic<Page*>& page = m_pages[cpid >> 8U];
    if (page.load(std::memory_order_relaxed) == nullptr) {
        page.store(new Page{}, std::memory_order_release);
    }
    (*page.load(std::memory_order_relaxed))[cpid & 0xFFU].store(inbox, std::memory_order_release);
}

/// Takes over the bound socket `fd`. @return null: the operating system refuses, which is logged
std::shared_ptr<Endpoint> Registry::openEndpoint(const Run& run, std::uint16_t cpid, int fd, Inbox& inbox) {
    auto endpoint = std::make_shared<Endpoint>(instance().addressOf(cpid), fd, inbox);
    if (Reader::instance().add(endpoint)) {
        if (inbox.attach(endpoint)) {
            return endpoint;
        }
        Reader::instance().remove(*endpoint);
    }
    logPlatform(4, "cannot register 0x%04X: %s", cpid, std::strerror(errno));
    unclaimEndpoint(run, cpid);
    return nullptr;
}

Registry::Claim Registry::claim(std::uint16_t cpid, Inbox& inbox) {
    if (find(cpid) != nullptr) {
        return Claim::taken;
    }
    if (const Run* run = Run::current()) {
        const int fd = claimEndpoint(*run, cpid);
        if (fd < 0) {
            return fd == claimTaken ? Claim::taken : Claim::failed;
        }
        auto endpoint = openEndpoint(*run, cpid, fd, inbox);
        if (!endpoint) {
            return Claim::failed;
        }
        m_endpoints.emplace(cpid, std::move(endpoint));
    }
    set(cpid, &inbox);
    return Claim::done;
}

std::uint16_t Registry::addDynamic(Inbox& inbox) {
    constexpr unsigned count = lastDynamic - firstDynamic + 1U;
    for (unsigned i = 0; i < count; ++i) {
        const auto cpid = static_cast<std::uint16_t>(firstDynamic + m_nextDynamic);
        m_nextDynamic = static_cast<std::uint16_t>((m_nextDynamic + 1U) % count);
        const Claim result = claim(cpid, inbox);
        if (result != Claim::taken) {
            return result == Claim::done ? cpid : std::uint16_t{0};
        }
    }
    return 0;
}

std::uint16_t Registry::add(std::uint16_t cpid, Inbox& inbox) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (cpid == 0) {
        return addDynamic(inbox);
    }
    return claim(cpid, inbox) == Claim::done ? cpid : std::uint16_t{0};
}

bool Registry::remove(std::uint16_t cpid, const Inbox* inbox) {
    std::shared_ptr<Endpoint> endpoint;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Inbox* receiver = find(cpid);
        if (receiver == nullptr || (inbox != nullptr && receiver != inbox)) {
            return false;
        }
        set(cpid, nullptr);
        const auto known = m_endpoints.find(cpid);
        if (known != m_endpoints.end()) {
            endpoint = std::move(known->second);
            m_endpoints.erase(known);
            Reader::instance().remove(*endpoint);
            receiver->detach(endpoint.get());
            unclaimEndpoint(*Run::current(), cpid);
        }
    }
    if (endpoint) {
        endpoint->shutDown();
    }
    return true;
}

void Registry::removeAll() {
    std::vector<std::uint16_t> cpids;
    for (unsigned high = 0; high < m_pages.size(); ++high) {
        if (m_pages[high].load(std::memory_order_acquire) == nullptr) {
            continue;
        }
        for (unsigned low = 0; low < 256; ++low) {
            const auto cpid = static_cast<std::uint16_t>(high << 8U | low);
            if (find(cpid) != nullptr) {
                cpids.push_back(cpid);
            }
        }
    }
    for (const std::uint16_t cpid : cpids) {
        remove(cpid);
    }
}

void Registry::serveFull(std::uint16_t cpid) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto known = m_endpoints.find(cpid);
    if (known != m_endpoints.end()) {
        known->second->serveFullSocket();
    }
}

} // namespace mox::host
