#pragma once
/// How calls write into the ledger.
#include "mock/Ledger.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace mox::mock {

/// Which call it is.
struct CallId {
    const char* function = "";
    std::uint64_t nth = 0;
    std::uint64_t number = 0;
};

/// What names an open thing: a word (address, descriptor, id) or words in text form.
struct Handle {
    std::uint64_t value = 0;
    std::string name;
    friend bool operator<(const Handle& a, const Handle& b) {
        return a.value != b.value ? a.value < b.value : a.name < b.name;
    }
};

inline Handle handleOf(std::uint64_t value) {
    return Handle{value, {}};
}

/// An entry of the ledger.
struct Entry {
    Kind kind = Kind::message;
    Handle handle;
    CallId opener;
    std::string detail;                                  ///< shown with the handle; may be empty
    bool real = false;                                   ///< made by the platform, not by a mock's action
    std::function<void()> dispose;                       ///< gives it back to the platform; may be empty
    std::thread::id thread = std::this_thread::get_id(); ///< that opened it
    std::uint64_t expiresNs = UINT64_MAX;                ///< closes itself when the platform's clock shows this
    std::uint64_t lastsNs = UINT64_MAX;                  ///< from the opening to that
};

/// Writes an entry down. Handles of kinds that are names (registrations, subscriptions) are open once, others as often
/// as they were opened.
void enter(Entry entry);

/// Takes the newest entry of a handle out. @return the entry, or null
std::unique_ptr<Entry> strike(Kind kind, const Handle& handle);

/// Takes all entries of a kind out. @param thread  only those that it opened; no thread: all
void strikeAll(Kind kind, std::thread::id thread = {});

/// Keeps an entry that no longer counts as open until Ledger::settle() disposes of it.
void defer(Entry entry);

/// Starts the time of a one-shot timer anew.
void restart(Kind kind, const Handle& handle);

} // namespace mox::mock
