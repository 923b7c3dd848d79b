#pragma once
/// Which inbox receives for which CPID in this process, and the claim of a CPID in the run.
#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace mox::host {

class Endpoint;
class Inbox;
class Run;

/// One object. find() is on the path of every message: two reads, no lock.
class Registry {
public:
    static Registry& instance();

    /// Claims a CPID of the own node for an inbox. Called by the inbox's owner.
    /// @param cpid  0: any dynamic one
    /// @return the CPID, or 0: taken, or none left
    std::uint16_t add(std::uint16_t cpid, Inbox& inbox);
    /// Gives a CPID up, if `inbox` is null or its receiver. @return false: not registered here. Any thread.
    bool remove(std::uint16_t cpid, const Inbox* inbox = nullptr);
    /// Gives all CPIDs up. Any thread.
    void removeAll();

    /// Who receives for a CPID, or null. Any thread.
    Inbox* find(std::uint16_t cpid) const {
        const Page* page = m_pages[cpid >> 8U].load(std::memory_order_acquire);
        return page != nullptr ? (*page)[cpid & 0xFFU].load(std::memory_order_acquire) : nullptr;
    }
    /// SIC address of a CPID on the own node.
    std::uint32_t addressOf(std::uint16_t cpid) const;
    /// Another process found an endpoint of this one full.
    void serveFull(std::uint16_t cpid);

private:
    using Page = std::array<std::atomic<Inbox*>, 256>;

    Registry() = default;
    std::uint16_t addDynamic(Inbox& inbox);
    enum class Claim { done, taken, failed };
    Claim claim(std::uint16_t cpid, Inbox& inbox);
    static std::shared_ptr<Endpoint> openEndpoint(const Run& run, std::uint16_t cpid, int fd, Inbox& inbox);
    void set(std::uint16_t cpid, Inbox* inbox);

    std::array<std::atomic<Page*>, 256> m_pages{}; ///< a page, once made, stays
    std::mutex m_mutex;                            ///< guards changes and m_endpoints
    std::unordered_map<std::uint16_t, std::shared_ptr<Endpoint>> m_endpoints;
    std::uint16_t m_nextDynamic = 0;
};

} // namespace mox::host
