#include "RunTable.hpp"

#include "Run.hpp"

#include <map>
#include <mutex>

namespace mox::host {

namespace {

/// What a process remembers that stands alone.
struct Alone {
    std::mutex mutex;
    std::map<std::string, std::string, std::less<>> tables[static_cast<unsigned>(Table::count)];
};

Alone& alone() {
    static auto& instance = *new Alone;
    return instance;
}

} // namespace

std::optional<std::string> RunTable::get(std::string_view key) const {
    if (const Run* run = Run::current())
        return run->store().get(m_table, key);
    const std::lock_guard<std::mutex> guard(alone().mutex);
    const auto& table = alone().tables[static_cast<unsigned>(m_table)];
    const auto found = table.find(key);
    return found == table.end() ? std::nullopt : std::optional<std::string>(found->second);
}

void RunTable::put(std::string_view key, std::string_view value) const {
    if (const Run* run = Run::current()) {
        run->store().put(m_table, key, value);
        return;
    }
    const std::lock_guard<std::mutex> guard(alone().mutex);
    alone().tables[static_cast<unsigned>(m_table)].insert_or_assign(std::string(key), std::string(value));
}

bool RunTable::erase(std::string_view key) const {
    if (const Run* run = Run::current())
        return run->store().erase(m_table, key);
    const std::lock_guard<std::mutex> guard(alone().mutex);
    auto& table = alone().tables[static_cast<unsigned>(m_table)];
    const auto found = table.find(key);
    if (found == table.end())
        return false;
    table.erase(found);
    return true;
}

std::vector<std::pair<std::string, std::string>> RunTable::entries(std::string_view prefix) const {
    std::vector<std::pair<std::string, std::string>> found;
    if (const Run* run = Run::current()) {
        run->store().forEach(m_table, prefix, [&](std::string_view key, std::string_view value) {
            found.emplace_back(key, value);
            return true;
        });
        return found;
    }
    const std::lock_guard<std::mutex> guard(alone().mutex);
    const auto& table = alone().tables[static_cast<unsigned>(m_table)];
    for (auto entry = table.lower_bound(prefix); entry != table.end(); ++entry) {
        if (entry->first.compare(0, prefix.size(), prefix) != 0)
            break;
        found.emplace_back(*entry);
    }
    return found;
}

} // namespace mox::host
