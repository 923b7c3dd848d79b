#pragma once
/// A table of the run's store; for a process that stands alone, a table of its own with the same behaviour.
#include "../store/Store.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mox::host {

/// Any thread. A call blocks while another process writes to the store. Failures of the store throw std::exception, as
/// the store itself does.
class RunTable {
public:
    constexpr explicit RunTable(Table table) : m_table(table) {}

    std::optional<std::string> get(std::string_view key) const;
    void put(std::string_view key, std::string_view value) const;
    /// @return false: there was no such entry
    bool erase(std::string_view key) const;
    /// All entries whose key begins with `prefix`, in key order, from one moment.
    std::vector<std::pair<std::string, std::string>> entries(std::string_view prefix) const;

private:
    Table m_table;
};

} // namespace mox::host
