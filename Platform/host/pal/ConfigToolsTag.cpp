#include "../store/Store.hpp"
#include "ConfigTools.hpp"
#include "TagObservers.hpp"
#include "Tags.hpp"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace mox::host {

std::vector<PublicTag> listTags(const Store& store, std::string_view prefix) {
    std::vector<PublicTag> found;
    store.forEach(Table::tags, prefix, [&](std::string_view name, std::string_view record) {
        if (auto value = tags::decode(record)) {
            found.push_back({std::string(name), std::move(*value)});
        }
        return true;
    });
    return found;
}

std::optional<TypedValue> getTag(const Store& store, std::string_view name) {
    const auto record = store.get(Table::tags, name);
    return record ? tags::decode(*record) : std::nullopt;
}

bool setTag(const std::string& name, const TypedValue& value) {
    return tags::isName(name.c_str()) && value.bytes.size() <= maxTagValue && tags::publish(name, value);
}

bool removeTag(Store& store, std::string_view name) {
    return store.erase(Table::tags, name);
}

struct TagWatch::Shared {
    std::mutex mutex;
    std::condition_variable idle;
    std::thread::id reporting;
    bool ended = false;
    std::string prefix;
    Report report;

    void take(const tags::Change& change);
    tags::Registration registration() const {
        return {tags::Interest::system, "", reinterpret_cast<std::uintptr_t>(this)};
    }
};

void TagWatch::Shared::take(const tags::Change& change) {
    if (change.name.substr(0, prefix.size()) != prefix) {
        return;
    }
    std::unique_lock lock(mutex);
    if (ended) {
        return;
    }
    reporting = std::this_thread::get_id();
    lock.unlock();
    report({std::string(change.name), change.value});
    lock.lock();
    reporting = {};
    idle.notify_all();
}

TagWatch::TagWatch(std::string prefix, Report report) : m_shared(std::make_shared<Shared>()) {
    m_shared->prefix = std::move(prefix);
    m_shared->report = std::move(report);
    tags::startObserving();
    const auto observer = [shared = m_shared](const tags::Change& change) { shared->take(change); };
    m_works = tags::observe(m_shared->registration(), observer) == tags::Observed::done;
}

TagWatch::~TagWatch() {
    tags::unobserve(m_shared->registration());
    std::unique_lock lock(m_shared->mutex);
    m_shared->ended = true;
    m_shared->idle.wait(lock, [this] {
        return m_shared->reporting == std::thread::id() || m_shared->reporting == std::this_thread::get_id();
    });
}

} // namespace mox::host
