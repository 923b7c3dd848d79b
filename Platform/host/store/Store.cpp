#include "Store.hpp"

#include "../run/PlatformLog.hpp"
#include "Environment.hpp"

namespace mox::host {
namespace {

constexpr int error = 4;

MDB_val valueOf(std::string_view bytes) {
    return {bytes.size(), const_cast<char*>(bytes.data())}; // LMDB does not write through keys and stored values
}

std::string_view bytesOf(const MDB_val& value) {
    return {static_cast<const char*>(value.mv_data), value.mv_size};
}

bool usable(std::string_view key) {
    return !key.empty() && key.size() <= Store::maxKey;
}

bool reportFailure(const char* operation, int rc) {
    logPlatform(error, "store: %s failed: %s", operation, mdb_strerror(rc));
    return false;
}

/// One snapshot; ends with the scope.
class Reading {
public:
    explicit Reading(MDB_env* env) {
        int rc = mdb_txn_begin(env, nullptr, MDB_RDONLY, &m_txn);
        if (rc == MDB_READERS_FULL) {
            int dead = 0;
            mdb_reader_check(env, &dead);
            rc = mdb_txn_begin(env, nullptr, MDB_RDONLY, &m_txn);
        }
        if (rc != 0) {
            m_txn = nullptr;
            reportFailure("read", rc);
        }
    }
    ~Reading() {
        if (m_txn != nullptr) {
            mdb_txn_abort(m_txn);
        }
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    MDB_txn* txn() const { return m_txn; }

private:
    MDB_txn* m_txn = nullptr;
};

std::optional<std::string> lookUp(MDB_txn* txn, MDB_dbi table, std::string_view key) {
    if (txn == nullptr || !usable(key)) {
        return std::nullopt;
    }
    MDB_val name = valueOf(key);
    MDB_val found{};
    const int rc = mdb_get(txn, table, &name, &found);
    if (rc == 0) {
        return std::string(bytesOf(found));
    }
    if (rc != MDB_NOTFOUND) {
        reportFailure("get", rc);
    }
    return std::nullopt;
}

void list(MDB_txn* txn, MDB_dbi table, std::string_view prefix, const Store::Visitor& each) {
    MDB_cursor* cursor = nullptr;
    if (txn == nullptr || mdb_cursor_open(txn, table, &cursor) != 0) {
        return;
    }
    MDB_val key = valueOf(prefix);
    MDB_val value{};
    int rc = mdb_cursor_get(cursor, &key, &value, prefix.empty() ? MDB_FIRST : MDB_SET_RANGE);
    while (rc == 0 && bytesOf(key).substr(0, prefix.size()) == prefix && each(bytesOf(key), bytesOf(value))) {
        rc = mdb_cursor_get(cursor, &key, &value, MDB_NEXT);
    }
    mdb_cursor_close(cursor);
}

} // namespace

std::unique_ptr<Store> Store::open(const std::string& path, bool create, std::string& why) {
    auto environment = Environment::of(path, create, why);
    return environment ? std::unique_ptr<Store>(new Store(std::move(environment))) : nullptr;
}

Store::Store(std::shared_ptr<Environment> environment) : m_environment(std::move(environment)) {}

Store::~Store() = default;

unsigned Store::handle(Table table) const {
    return m_environment->tables[static_cast<std::size_t>(table)];
}

std::optional<std::string> Store::get(Table table, std::string_view key) const {
    const Reading reading(m_environment->env);
    return lookUp(reading.txn(), handle(table), key);
}

bool Store::put(Table table, std::string_view key, std::string_view value) {
    Write write(*this);
    return write.put(table, key, value) && write.commit();
}

bool Store::erase(Table table, std::string_view key) {
    Write write(*this);
    return write.erase(table, key) && write.commit();
}

void Store::forEach(Table table, std::string_view prefix, const Visitor& each) const {
    const Reading reading(m_environment->env);
    list(reading.txn(), handle(table), prefix, each);
}

Store::Write::Write(Store& store) : m_store(store) {
    const int rc = mdb_txn_begin(store.m_environment->env, nullptr, 0, &m_txn);
    if (rc != 0) {
        m_txn = nullptr;
        reportFailure("write", rc);
    }
}

Store::Write::~Write() {
    if (m_txn != nullptr) {
        mdb_txn_abort(m_txn);
    }
}

bool Store::Write::put(Table table, std::string_view key, std::string_view value) {
    if (m_txn == nullptr) {
        return false;
    }
    MDB_val name = valueOf(key);
    MDB_val data = valueOf(value);
    const int rc = usable(key) ? mdb_put(m_txn, m_store.handle(table), &name, &data, 0) : MDB_BAD_VALSIZE;
    if (rc != 0) {
        m_failed = true;
        return reportFailure("put", rc);
    }
    return true;
}

bool Store::Write::erase(Table table, std::string_view key) {
    if (m_txn == nullptr || !usable(key)) {
        return false;
    }
    MDB_val name = valueOf(key);
    const int rc = mdb_del(m_txn, m_store.handle(table), &name, nullptr);
    if (rc != 0 && rc != MDB_NOTFOUND) {
        m_failed = true;
        return reportFailure("erase", rc);
    }
    return rc == 0;
}

std::optional<std::string> Store::Write::get(Table table, std::string_view key) const {
    return lookUp(m_txn, m_store.handle(table), key);
}

void Store::Write::forEach(Table table, std::string_view prefix, const Visitor& each) const {
    list(m_txn, m_store.handle(table), prefix, each);
}

bool Store::Write::commit() {
    if (m_txn == nullptr || m_failed) {
        return false;
    }
    const int rc = mdb_txn_commit(m_txn);
    m_txn = nullptr; // freed by the attempt, whatever its result
    return rc == 0 || reportFailure("commit", rc);
}

} // namespace mox::host
