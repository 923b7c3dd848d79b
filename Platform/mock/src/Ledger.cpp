#include "mock/Ledger.hpp"

#include "host/run/Clock.hpp"
#include "mock/src/FunctionRecord.hpp"
#include "mock/src/Open.hpp"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <sstream>

namespace mox::mock {
namespace {

/// All of it guarded by bookMutex().
struct Books {
    std::list<Entry> open; ///< in the order of opening
    std::list<Entry> deferred;
    std::condition_variable executionUnitEnded;
};

Books& books() {
    // never destroyed: execution units may still call while the process ends
    static auto* all = new Books;
    return *all;
}

bool isName(Kind kind) {
    return kind == Kind::subscription || kind == Kind::registration;
}

bool same(const Entry& entry, Kind kind, const Handle& handle) {
    return entry.kind == kind && !(entry.handle < handle) && !(handle < entry.handle);
}

bool hasExpired(const Entry& entry) {
    return entry.expiresNs != UINT64_MAX && host::monotonicNs() >= entry.expiresNs;
}

bool isOpen(const Entry& entry, Mark since) {
    return entry.opener.number > since.number && !hasExpired(entry);
}

/// What a manual clock has let expire stays so when the real clock, which shows an earlier time, goes on.
void strikeExpired() {
    const std::lock_guard<std::mutex> guard(bookMutex());
    books().open.remove_if(hasExpired);
}

const int s_follower = host::ManualClock::addFollower({[] { return host::noDeadline; }, strikeExpired});

std::string handleText(const Entry& entry) {
    std::ostringstream out;
    if (!entry.detail.empty())
        out << '"' << entry.detail << '"';
    else if (entry.kind == Kind::message || entry.kind == Kind::memory || entry.kind == Kind::semaphore ||
             entry.kind == Kind::xmlRoot || (entry.kind == Kind::file && entry.handle.value > UINT32_MAX))
        out << "0x" << std::hex << entry.handle.value;
    else if (entry.handle.name.empty())
        out << entry.handle.value;
    else
        out << '"' << entry.handle.name << '"';
    return out.str();
}

OpenItem itemOf(const Entry& entry) {
    return OpenItem{entry.kind, handleText(entry), entry.opener.function, entry.opener.nth, entry.opener.number};
}

} // namespace

const char* text(Kind kind) {
    static constexpr const char* texts[] = {"message",  "memory block",   "semaphore",    "timer",
                                            "file",     "execution unit", "subscription", "registration",
                                            "XML root", "SRIO handle"};
    return texts[static_cast<std::size_t>(kind)];
}

std::string OpenItem::text() const {
    return std::string(mock::text(kind)) + ' ' + handle + " from " + function + ", its call " + std::to_string(nth) +
           " (call " + std::to_string(number) + " of all)";
}

void enter(Entry entry) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    auto& open = books().open;
    if (isName(entry.kind) &&
        std::any_of(open.begin(), open.end(), [&entry](const Entry& e) { return same(e, entry.kind, entry.handle); }))
        return;
    const auto after = std::find_if(open.rbegin(), open.rend(),
                                    [&entry](const Entry& e) { return e.opener.number <= entry.opener.number; });
    open.insert(after.base(), std::move(entry));
}

std::unique_ptr<Entry> strike(Kind kind, const Handle& handle) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    for (auto* list : {&books().open, &books().deferred}) {
        const auto found =
            std::find_if(list->rbegin(), list->rend(), [&](const Entry& entry) { return same(entry, kind, handle); });
        if (found == list->rend())
            continue;
        auto entry = std::make_unique<Entry>(std::move(*found));
        list->erase(std::next(found).base());
        books().executionUnitEnded.notify_all();
        return entry;
    }
    return nullptr;
}

void strikeAll(Kind kind, std::thread::id thread) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    books().open.remove_if([&](const Entry& entry) {
        return entry.kind == kind && (thread == std::thread::id{} || entry.thread == thread);
    });
}

void defer(Entry entry) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    books().deferred.push_back(std::move(entry));
}

void restart(Kind kind, const Handle& handle) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    for (Entry& entry : books().open)
        if (same(entry, kind, handle) && entry.lastsNs != UINT64_MAX)
            entry.expiresNs = host::deadlineIn(entry.lastsNs);
}

Mark Ledger::mark() const {
    return Mark{callCount()};
}

std::vector<OpenItem> Ledger::open(Mark since) const {
    std::vector<OpenItem> items;
    const std::lock_guard<std::mutex> guard(bookMutex());
    for (const Entry& entry : books().open)
        if (isOpen(entry, since))
            items.push_back(itemOf(entry));
    return items;
}

std::size_t Ledger::count(Kind kind) const {
    const std::lock_guard<std::mutex> guard(bookMutex());
    const auto& open = books().open;
    return static_cast<std::size_t>(std::count_if(
        open.begin(), open.end(), [kind](const Entry& entry) { return entry.kind == kind && isOpen(entry, Mark{}); }));
}

bool Ledger::awaitExecutionUnits(Mark since, unsigned limitMs) const {
    std::unique_lock<std::mutex> lock(bookMutex());
    return books().executionUnitEnded.wait_for(lock, std::chrono::milliseconds(limitMs), [since] {
        const auto& open = books().open;
        return std::none_of(open.begin(), open.end(), [since](const Entry& entry) {
            return entry.kind == Kind::executionUnit && isOpen(entry, since);
        });
    });
}

void Ledger::forgive(Mark since) {
    const std::lock_guard<std::mutex> guard(bookMutex());
    books().open.remove_if([since](const Entry& entry) { return isOpen(entry, since); });
}

void Ledger::settle() {
    std::list<Entry> deferred;
    {
        const std::lock_guard<std::mutex> guard(bookMutex());
        deferred.swap(books().deferred);
    }
    for (const Entry& entry : deferred)
        if (entry.dispose)
            entry.dispose();
}

Ledger& ledger() {
    static Ledger one;
    return one;
}

} // namespace mox::mock
