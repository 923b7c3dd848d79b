#include "LogBuffers.hpp"

#include <map>

namespace mox::host::log {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<unsigned int, std::unique_ptr<Domain>> domains;
};

/// Never destroyed: lines are logged until the very end of the process.
Registry& registry() {
    static auto& instance = *new Registry;
    return instance;
}

} // namespace

bool addRing(std::unique_ptr<FeatureRing> ring) {
    const std::lock_guard<std::mutex> guard(registry().mutex);
    if (ringOf(ring->feature))
        return false;
    auto& bucket = detail::rings[ring->feature % detail::ringBuckets];
    ring->next = bucket.load(std::memory_order_relaxed);
    bucket.store(ring.release(), std::memory_order_release);
    detail::anyRing.store(true, std::memory_order_relaxed);
    return true;
}

bool addDomain(std::unique_ptr<Domain> domain) {
    const std::lock_guard<std::mutex> guard(registry().mutex);
    const unsigned int id = domain->id;
    return registry().domains.emplace(id, std::move(domain)).second;
}

bool chooseDomain(unsigned int id) {
    const std::lock_guard<std::mutex> guard(registry().mutex);
    const auto found = registry().domains.find(id);
    if (found == registry().domains.end())
        return false;
    detail::ownDomain.store(found->second.get(), std::memory_order_release);
    return true;
}

void forEachDomain(const std::function<void(Domain&)>& visit) {
    const std::lock_guard<std::mutex> guard(registry().mutex);
    for (const auto& domain : registry().domains)
        visit(*domain.second);
}

void keepInDomain(std::string_view formatted) {
    Domain* domain = ownDomain();
    if (!domain)
        return;
    const std::lock_guard<std::mutex> guard(domain->mutex);
    domain->startup.add(formatted);
    domain->runtime.add(formatted);
}

void keepInRing(FeatureRing& ring, std::string_view formatted) {
    const std::lock_guard<std::mutex> guard(ring.mutex);
    ring.ring.add(formatted.substr(0, ring.lineBytes));
}

} // namespace mox::host::log
