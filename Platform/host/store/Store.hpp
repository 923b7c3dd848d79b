#pragma once
/// What a run remembers: tables of byte strings in one LMDB environment, shared by all its processes.
///
/// A commit survives the death of any process, though not a loss of power: nothing waits for the disk. A process that
/// is killed while it writes leaves the state before its transaction; one that is killed while it reads blocks nobody.
/// The environment is opened once a process, however many Stores look at it. A 32-bit and a 64-bit process cannot share
/// a run. After fork() the child must not touch a Store of its parent before exec.
///
/// No function throws. An operation that fails (store full, disk full, key of a wrong length) is logged in one line and
/// answers as its text says; the store then still holds what it held before.
///
/// Any thread may call anything; a thread holds at most one transaction.
#include "../run/NoCancellation.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct MDB_txn;

namespace mox::host {

/// The tables. A new one is added at the end, here and in Store.cpp's list of names.
enum class Table : unsigned {
    tags,         ///< public configuration tags: name -> type byte + value
    tagObservers, ///< name + process -> nothing
    radNames,     ///< node id + parameter id (big-endian) -> default + name
    mailboxes,    ///< mailbox contents
    subscribers,  ///< mailbox id + subscriber
    services,     ///< configuration services: name + scope + process -> nothing
    nodes,        ///< node id (four lower-case hexadecimal digits) -> what the description says of it (JSON)
    devices,      ///< device state: <nid>/<family>/<key> -> bytes
    processes,    ///< services started by the run: <nid>/<name> -> pid and start time
    settings,     ///< what holds for the whole run: name -> text
    count
};

class Store {
public:
    /// Takes one entry; false ends the listing. Must not use the store.
    using Visitor = std::function<bool(std::string_view key, std::string_view value)>;

    /// Most bytes of a key; the least is 1.
    static constexpr std::size_t maxKey = 511;

    /// One write transaction; committed by commit(), else rolled back by the destructor. Blocks while another thread
    /// or process writes; keep it short. After one operation has failed, commit() stores nothing.
    class Write {
    public:
        explicit Write(Store& store);
        ~Write();
        Write(const Write&) = delete;
        Write& operator=(const Write&) = delete;
        /// @return whether the entry is now part of the transaction
        bool put(Table table, std::string_view key, std::string_view value);
        /// @return whether there was such an entry
        bool erase(Table table, std::string_view key);
        std::optional<std::string> get(Table table, std::string_view key) const;
        /// As Store::forEach, with what this transaction has changed.
        void forEach(Table table, std::string_view prefix, const Visitor& each) const;
        /// @return whether everything is stored; false also for a second commit
        bool commit();

    private:
        const NoCancellation m_whileItHoldsTheLock;
        const Store& m_store;
        MDB_txn* m_txn = nullptr;
        bool m_failed = false;
    };

    /// Opens (and with `create` makes) the environment in the directory `path`.
    /// @return null, and in `why` one line for a person, when it cannot be opened
    static std::unique_ptr<Store> open(const std::string& path, bool create, std::string& why);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    std::optional<std::string> get(Table table, std::string_view key) const;
    /// @return whether the entry is stored
    bool put(Table table, std::string_view key, std::string_view value);
    /// @return whether there was such an entry, and it is gone
    bool erase(Table table, std::string_view key);
    /// Calls `each` for all entries whose key begins with `prefix`, in key order, from one consistent snapshot.
    void forEach(Table table, std::string_view prefix, const Visitor& each) const;

private:
    struct Environment;
    explicit Store(std::shared_ptr<Environment> environment);
    unsigned handle(Table table) const;

    std::shared_ptr<Environment> m_environment;
};

} // namespace mox::host
