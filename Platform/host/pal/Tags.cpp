#include "Tags.hpp"

#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "TagAudience.hpp"

#include <cstring>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace mox::host::tags {
namespace {

using Values = std::map<std::string, TypedValue, std::less<>>;

struct Local {
    std::shared_mutex mutex;
    Values own;
    Values published; ///< while the process stands alone
};

Local& local() {
    static auto& all = *new Local;
    return all;
}

// Held from storing a value until everybody is told: so observers see this process's publications in stored order.
std::mutex& publishing() {
    static auto& mutex = *new std::mutex;
    return mutex;
}

std::optional<TypedValue> in(const Values& values, std::string_view name) {
    const auto found = values.find(name);
    return found != values.end() ? std::optional(found->second) : std::nullopt;
}

bool storeInRun(Store& store, const std::string& name, const TypedValue& value, std::vector<ProcessAddress>& audience) {
    Store::Write write(store);
    if (!write.put(Table::tags, name, encode(value))) {
        return false;
    }
    audience = audienceOf(write, name);
    return write.commit();
}

bool storePublic(const std::string& name, const TypedValue& value, std::vector<ProcessAddress>& audience) {
    if (const Run* run = Run::current()) {
        return storeInRun(run->store(), name, value, audience);
    }
    const std::unique_lock lock(local().mutex);
    local().published[name] = value;
    return true;
}

} // namespace

bool isName(const char* name) {
    return name != nullptr && *name != '\0' && ::strnlen(name, maxTagName + 1) <= maxTagName;
}

std::optional<TypedValue> get(std::string_view name) {
    {
        const std::shared_lock lock(local().mutex);
        if (auto own = in(local().own, name)) {
            return own;
        }
        if (Run::current() == nullptr) {
            return in(local().published, name);
        }
    }
    const auto record = Run::current()->store().get(Table::tags, name);
    return record ? decode(*record) : std::nullopt;
}

void setOwn(const std::string& name, const TypedValue& value) {
    const std::lock_guard order(publishing());
    {
        const std::unique_lock lock(local().mutex);
        local().own[name] = value;
    }
    tellOwnChange(name, value);
}

bool publish(const std::string& name, const TypedValue& value) {
    const std::lock_guard order(publishing());
    std::vector<ProcessAddress> audience;
    if (!storePublic(name, value, audience)) {
        return false;
    }
    tellPublication(name, value, audience);
    return true;
}

void clear() {
    const std::unique_lock lock(local().mutex);
    local().own.clear();
    local().published.clear();
}

std::string encode(const TypedValue& value) {
    return std::string(1, static_cast<char>(value.type)) + value.bytes;
}

std::optional<TypedValue> decode(std::string_view record) {
    if (record.empty()) {
        return std::nullopt;
    }
    return TypedValue{static_cast<ValueType>(record.front()), std::string(record.substr(1))};
}

} // namespace mox::host::tags
