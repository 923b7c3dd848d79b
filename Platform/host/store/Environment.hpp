#pragma once
/// The LMDB environment behind Store: opened once a process, shared by every Store of the same directory.
#include "Store.hpp"

#include <lmdb.h>

#include <array>
#include <memory>
#include <string>

namespace mox::host {

struct Store::Environment {
    MDB_env* env = nullptr;
    std::array<MDB_dbi, static_cast<std::size_t>(Table::count)> tables{};

    Environment() = default;
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { mdb_env_close(env); }

    /// Opens the directory, or hands out what this process has open for it already.
    static std::shared_ptr<Environment> of(const std::string& path, bool create, std::string& why);
};

} // namespace mox::host
