#include "Environment.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>
#include <utility>

namespace mox::host {
namespace {

// In the order of Table. Stored in the environment's files: never renamed.
constexpr const char* tableNames[] = {"tags",     "tagObservers", "radNames", "mailboxes", "subscribers",
                                      "services", "nodes",        "devices",  "processes", "settings"};
static_assert(std::size(tableNames) == static_cast<std::size_t>(Table::count));

// Address space only: the file grows with what is written. A 32-bit process has little of it.
constexpr std::size_t mapSize = sizeof(void*) == 4 ? 128u << 20 : std::size_t{1} << 30;

// A reading thread takes a place for as long as it lives.
constexpr unsigned maxReaders = 1022;

// Without a writable map: a service under development that writes through a stray pointer must not reach the store,
// and a full disk has to be an error and not a signal.
constexpr unsigned openFlags = MDB_NOSYNC;

using DirectoryId = std::pair<dev_t, ino_t>;

std::mutex openMutex;

// Keyed by process too: a child of fork() must not use its parent's environment.
std::map<std::pair<pid_t, DirectoryId>, std::weak_ptr<void>>& openEnvironments() {
    static auto& all = *new std::map<std::pair<pid_t, DirectoryId>, std::weak_ptr<void>>;
    return all;
}

int openTables(MDB_env* env, MDB_dbi* tables, unsigned txnFlags, unsigned dbiFlags) {
    MDB_txn* txn = nullptr;
    int rc = mdb_txn_begin(env, nullptr, txnFlags, &txn);
    if (rc != 0) {
        return rc;
    }
    for (const char* name : tableNames) {
        rc = mdb_dbi_open(txn, name, dbiFlags, tables++);
        if (rc != 0) {
            mdb_txn_abort(txn);
            return rc;
        }
    }
    return mdb_txn_commit(txn);
}

int openEnvironment(MDB_env* env, const char* path) {
    int rc = mdb_env_set_mapsize(env, mapSize);
    rc = rc != 0 ? rc : mdb_env_set_maxdbs(env, static_cast<MDB_dbi>(Table::count));
    rc = rc != 0 ? rc : mdb_env_set_maxreaders(env, maxReaders);
    rc = rc != 0 ? rc : mdb_env_open(env, path, openFlags, 0600);
    if (rc == 0) {
        // A killed reader would keep the pages of its snapshot from being used again.
        int dead = 0;
        rc = mdb_reader_check(env, &dead);
    }
    return rc;
}

bool isDirectory(const std::string& path, struct stat& status, std::string& why) {
    if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        return true;
    }
    why = "store " + path + ": " + (errno != 0 ? std::strerror(errno) : "not a directory");
    return false;
}

} // namespace

std::shared_ptr<Store::Environment> Store::Environment::of(const std::string& path, bool create, std::string& why) {
    const std::lock_guard lock(openMutex);
    if (create) {
        ::mkdir(path.c_str(), 0700);
    }
    errno = 0;
    struct stat status {};
    if (!isDirectory(path, status, why)) {
        return nullptr;
    }
    auto& known = openEnvironments()[{::getpid(), {status.st_dev, status.st_ino}}];
    if (auto open = std::static_pointer_cast<Environment>(known.lock())) {
        return open;
    }
    if (!create && ::access((path + "/data.mdb").c_str(), F_OK) != 0) {
        why = "store " + path + ": " + (errno == ENOENT ? "there is none" : std::strerror(errno));
        return nullptr;
    }
    auto fresh = std::make_shared<Environment>();
    int rc = mdb_env_create(&fresh->env);
    rc = rc != 0 ? rc : openEnvironment(fresh->env, path.c_str());
    if (rc == 0) {
        // Tables that exist are opened without waiting for a writer.
        rc = openTables(fresh->env, fresh->tables.data(), MDB_RDONLY, 0);
        rc = rc != MDB_NOTFOUND ? rc : openTables(fresh->env, fresh->tables.data(), 0, MDB_CREATE);
    }
    if (rc != 0) {
        why = "store " + path + ": " + mdb_strerror(rc);
        return nullptr;
    }
    known = fresh;
    return fresh;
}

} // namespace mox::host
