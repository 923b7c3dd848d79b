#include "TagObservers.hpp"

#include "../run/Run.hpp"
#include "TagAudience.hpp"
#include "Tags.hpp"

#include <algorithm>
#include <mutex>
#include <optional>

namespace mox::host::tags {
namespace {

struct Entry {
    std::uint64_t number; ///< never used again
    Registration registration;
    Observer observer;
};

struct Entries {
    std::mutex mutex;
    std::uint64_t lastNumber = 0;
    std::vector<Entry> all; ///< in the order of registration
};

Entries& entries() {
    static auto& all = *new Entries;
    return all;
}

bool sameName(const Registration& a, const Registration& b) {
    return a.interest == b.interest && a.name == b.name;
}

bool same(const Registration& a, const Registration& b) {
    return sameName(a, b) && a.callback == b.callback;
}

std::vector<Entry>::iterator find(const Registration& registration) {
    auto& all = entries().all;
    return std::find_if(all.begin(), all.end(), [&](const Entry& e) { return same(e.registration, registration); });
}

bool others(const Registration& registration) {
    const auto& all = entries().all;
    return std::any_of(all.begin(), all.end(), [&](const Entry& e) { return sameName(e.registration, registration); });
}

/// What a notice carries: name, a zero byte, type and value.
struct Notice {
    std::string_view name;
    TypedValue value;
};

std::string body(const std::string& name, const TypedValue& value) {
    return name + '\0' + encode(value);
}

std::optional<Notice> parse(std::string_view text) {
    const auto end = text.find('\0');
    auto value = end != std::string_view::npos ? decode(text.substr(end + 1)) : std::nullopt;
    return value ? std::optional(Notice{text.substr(0, end), std::move(*value)}) : std::nullopt;
}

bool wants(const Registration& registration, std::string_view name, ProcessAddress from) {
    const ProcessAddress own = ownProcess();
    switch (registration.interest) {
    case Interest::tag:
        return registration.name == name;
    case Interest::process:
        return from == own && covers(registration.name, name);
    case Interest::node:
        return from.node == own.node && covers(registration.name, name);
    case Interest::system:
        break;
    }
    return covers(registration.name, name);
}

std::vector<std::uint64_t> numbersOf(const std::function<bool(const Registration&)>& wanted) {
    std::vector<std::uint64_t> numbers;
    const std::lock_guard lock(entries().mutex);
    for (const Entry& entry : entries().all) {
        if (wanted(entry.registration)) {
            numbers.push_back(entry.number);
        }
    }
    return numbers;
}

// Looked up anew before each call: the call before may have ended a later registration.
Observer observerOf(std::uint64_t number) {
    const std::lock_guard lock(entries().mutex);
    const auto& all = entries().all;
    const auto entry = std::find_if(all.begin(), all.end(), [number](const Entry& e) { return e.number == number; });
    return entry != all.end() ? entry->observer : Observer();
}

void call(const Notice& notice, const std::function<bool(const Registration&)>& wanted) {
    for (const std::uint64_t number : numbersOf(wanted)) {
        if (const Observer observer = observerOf(number)) {
            observer({notice.name, notice.value});
        }
    }
}

bool anyObserver() {
    const std::lock_guard lock(entries().mutex);
    return !entries().all.empty();
}

} // namespace

Observed observe(const Registration& registration, Observer observer) {
    const std::lock_guard lock(entries().mutex);
    if (find(registration) != entries().all.end()) {
        return Observed::already;
    }
    if (!others(registration) && !enterAudience(registration)) {
        return Observed::storeFull;
    }
    entries().all.push_back({++entries().lastNumber, registration, std::move(observer)});
    return Observed::done;
}

bool unobserve(const Registration& registration) {
    const std::lock_guard lock(entries().mutex);
    const auto entry = find(registration);
    if (entry == entries().all.end()) {
        return false;
    }
    entries().all.erase(entry);
    if (!others(registration)) {
        leaveAudience(registration);
    }
    return true;
}

void tellPublication(const std::string& name, const TypedValue& value, const std::vector<ProcessAddress>& audience) {
    const std::string text = body(name, value);
    if (anyObserver()) {
        tell(ownProcess(), Topic::tagPublished, text);
    }
    tellAudience(audience, name, text);
}

void tellOwnChange(const std::string& name, const TypedValue& value) {
    if (anyObserver()) {
        tell(ownProcess(), Topic::serviceChanged, body(name, value));
    }
}

void startObserving() {
    onNotice(Topic::tagPublished, [](ProcessAddress from, std::string_view text) {
        if (const auto notice = parse(text)) {
            call(*notice, [&](const Registration& r) { return wants(r, notice->name, from); });
        }
    });
    onNotice(Topic::serviceChanged, [](ProcessAddress, std::string_view text) {
        if (const auto notice = parse(text)) {
            call(*notice, [&](const Registration& r) {
                return r.interest == Interest::process && covers(r.name, notice->name);
            });
        }
    });
}

void stopObserving() {
    std::vector<Entry> ended;
    {
        const std::lock_guard lock(entries().mutex);
        ended.swap(entries().all);
    }
    for (const Entry& entry : ended) {
        leaveAudience(entry.registration);
    }
}

} // namespace mox::host::tags
