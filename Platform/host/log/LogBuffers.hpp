#pragma once
/// Lines that a process keeps in memory: the two buffers of its log domains, and the ring buffers of features. They
/// live as long as the process. Any thread.
#include "LineRing.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace mox::host::log {

/// A log domain: the first lines since the start, and the newest ones.
struct Domain {
    Domain(unsigned int domainId, std::string_view domainName, std::size_t startupBytes, std::size_t runtimeBytes)
        : id(domainId),
          name(domainName),
          startup(startupBytes, LineRing::Keep::first),
          runtime(runtimeBytes, LineRing::Keep::newest) {}

    const unsigned int id;
    const std::string name;
    std::mutex mutex; ///< guards the rings
    LineRing startup;
    LineRing runtime;
};

/// A feature's ring buffer.
struct FeatureRing {
    FeatureRing(unsigned int featureId, std::size_t bufferBytes, std::size_t longestLine, int lowest)
        : feature(featureId), lineBytes(longestLine), lowestLevel(lowest), ring(bufferBytes, LineRing::Keep::newest) {}

    const unsigned int feature;
    const std::size_t lineBytes;
    const int lowestLevel;
    FeatureRing* next = nullptr; ///< of the same bucket; set before the ring can be found
    std::mutex mutex;            ///< guards the ring
    LineRing ring;
};

namespace detail {
constexpr std::size_t ringBuckets = 64;
inline std::atomic<FeatureRing*> rings[ringBuckets];
inline std::atomic<bool> anyRing{false};
inline std::atomic<Domain*> ownDomain{nullptr};
} // namespace detail

/// The ring buffer of a feature, or null. Without a lock: it stands on the path of debug lines that nobody wants.
inline FeatureRing* ringOf(unsigned int feature) noexcept {
    if (!detail::anyRing.load(std::memory_order_relaxed))
        return nullptr;
    auto* ring = detail::rings[feature % detail::ringBuckets].load(std::memory_order_acquire);
    while (ring && ring->feature != feature)
        ring = ring->next;
    return ring;
}

/// The process's log domain, or null.
inline Domain* ownDomain() noexcept {
    return detail::ownDomain.load(std::memory_order_acquire);
}

/// @return false: the feature has a ring buffer already. Throws std::bad_alloc.
bool addRing(std::unique_ptr<FeatureRing> ring);
/// @return false: the domain exists. Throws std::bad_alloc.
bool addDomain(std::unique_ptr<Domain> domain);
/// @return false: no such domain
bool chooseDomain(unsigned int id);
/// Visits all domains in the order of their ids.
void forEachDomain(const std::function<void(Domain&)>& visit);

/// Adds a line to the own domain's buffers.
void keepInDomain(std::string_view formatted);
void keepInRing(FeatureRing& ring, std::string_view formatted);

} // namespace mox::host::log
