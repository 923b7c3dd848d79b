#pragma once
/// What a run remembers: tables of byte strings in one LMDB environment, shared by all its processes.
/// A commit survives the death of any process. Any thread may call anything; a thread holds at most one transaction.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct MDB_env;
struct MDB_txn;

namespace mox::host {

/// The tables. A new one is added at the end of Store.cpp's list of names.
enum class Table : unsigned {
    tags,           ///< public configuration tags: name -> type byte + value
    tagObservers,   ///< name + process -> nothing
    radNames,       ///< parameter id (big-endian) -> default + name
    mailboxes,      ///< mailbox contents
    subscribers,    ///< mailbox id + subscriber
    services,       ///< configuration services
    nodes,          ///< node id -> what the description says of it (JSON)
    devices,        ///< device state: <nid>/<family>/<key> -> bytes
    processes,      ///< services started by the run: <nid>/<name> -> pid
    count
};

class Store {
public:
    /// One write transaction; committed by commit(), else rolled back by the destructor. Blocks while another thread
    /// or process writes; keep it short.
    class Write {
    public:
        explicit Write(Store& store);
        ~Write();
        Write(const Write&) = delete;
        Write& operator=(const Write&) = delete;
        void put(Table table, std::string_view key, std::string_view value);
        bool erase(Table table, std::string_view key);
        std::optional<std::string> get(Table table, std::string_view key) const;
        void commit();

    private:
        Store& m_store;
        MDB_txn* m_txn;
    };

    /// Opens (and with `create` makes) the environment in the directory `path`.
    /// @return null, and in `why` one line for a person, when it cannot be opened
    static std::unique_ptr<Store> open(const std::string& path, bool create, std::string& why);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    std::optional<std::string> get(Table table, std::string_view key) const;
    void put(Table table, std::string_view key, std::string_view value);
    bool erase(Table table, std::string_view key);
    /// Calls `each` for all entries whose key begins with `prefix`, in key order, from one consistent snapshot, until it
    /// answers false. `each` must not write to the store.
    void forEach(Table table, std::string_view prefix,
                 const std::function<bool(std::string_view key, std::string_view value)>& each) const;

private:
    friend class Write;
    explicit Store(MDB_env* env, std::vector<unsigned> tables);
    MDB_env* m_env;
    std::vector<unsigned> m_tables; ///< LMDB's handle of each Table
};

} // namespace mox::host
