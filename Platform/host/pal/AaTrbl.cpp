#include "AaTrbl.hpp"

#include "../log/Log.hpp"
#include "../run/Environment.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "FileCopy.hpp"
#include "Shell.hpp"
#include "Troubleshooting.hpp"

#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>

namespace mox::host {

namespace {

struct Registration {
    std::string name;
    std::string fileName;
    EAaTrblFilePriority priority = EAaTrblFilePriority_Normal;
    std::uint32_t maxBytes = 0;
    TAaTrblPrepareFileCb prepare = nullptr;
    TAaTrblStoreFileCb store = nullptr;
    TAaTrblDeleteFileCb discard = nullptr;
    std::uint32_t* opaque = nullptr;
};
using Entry = std::shared_ptr<const Registration>;

/// Never destroyed: the command thread may use it until the process ends.
struct State {
    std::mutex mutex;
    std::vector<Entry> entries; ///< in the order of their priority
    Entry running;              ///< whose call-backs are being called
    std::condition_variable idle;
    bool introduced = false;
};

State& state() {
    static auto& instance = *new State;
    return instance;
}

/// Calls the call-backs of one registration and takes its file. @return why it is left out; empty: taken
std::string take(const Registration& entry, const std::string& target) {
    if (entry.prepare && entry.prepare(entry.fileName.c_str(), entry.opaque) != EAaTrblCbStatus_Ok)
        return "not prepared";
    if (entry.store(entry.fileName.c_str(), entry.opaque, entry.maxBytes) != EAaTrblCbStatus_Ok)
        return "not stored";
    std::string problem = copyFile(entry.fileName, target, entry.maxBytes);
    if (entry.discard && entry.discard(entry.fileName.c_str(), entry.opaque, entry.maxBytes) != EAaTrblCbStatus_Ok)
        logPlatform(3, "troubleshooting file %s was not removed", entry.fileName.c_str());
    return problem;
}

/// Marks a registration as running, unless it has been ended meanwhile.
bool begin(const Entry& entry) {
    const std::lock_guard<std::mutex> guard(state().mutex);
    const auto& entries = state().entries;
    if (std::find(entries.begin(), entries.end(), entry) == entries.end())
        return false;
    state().running = entry;
    return true;
}

void finish() {
    const std::lock_guard<std::mutex> guard(state().mutex);
    state().running.reset();
    state().idle.notify_all();
}

std::string asFileName(std::string name) {
    std::replace(name.begin(), name.end(), '/', '_');
    return name == "." || name == ".." ? "_" : name;
}

void note(Collection& result, const std::string& name, const std::string& problem) {
    if (problem.empty()) {
        result.files.push_back(name);
        return;
    }
    result.leftOut.push_back(name + ": " + problem);
    logPlatform(3, "troubleshooting file %s: %s", name.c_str(), problem.c_str());
}

void collectRegistered(Collection& result) {
    std::vector<Entry> entries;
    {
        const std::lock_guard<std::mutex> guard(state().mutex);
        entries = state().entries;
    }
    for (const Entry& entry : entries) {
        if (!begin(entry))
            continue;
        const std::string name = asFileName(entry->name);
        const std::string problem = take(*entry, result.directory + "/" + name);
        finish();
        note(result, name, problem);
    }
}

void collectDomains(Collection& result) {
    log::forEachDomain([&](log::Domain& domain) {
        std::string startup;
        std::string runtime;
        {
            const std::lock_guard<std::mutex> guard(domain.mutex);
            startup = domain.startup.lines();
            runtime = domain.runtime.lines();
        }
        const std::string stem = asFileName("log-" + domain.name);
        note(result, stem + "-startup.log", writeFile(result.directory + "/" + stem + "-startup.log", startup));
        note(result, stem + "-runtime.log", writeFile(result.directory + "/" + stem + "-runtime.log", runtime));
    });
}

std::string defaultDirectory() {
    const Run* run = Run::current();
    if (!run)
        return {};
    return run->nodePath() + "/troubleshooting/" + log::processName() + "." + std::to_string(getpid());
}

void collect(Collection& result) {
    std::error_code error;
    std::filesystem::create_directories(result.directory, error);
    if (error) {
        note(result, result.directory, error.message());
        return;
    }
    collectRegistered(result);
    collectDomains(result);
}

shell::Answer collectCommand(const std::vector<std::string>& words) {
    const Collection result = collectTroubleshooting(words.size() > 1 ? words[1] : std::string());
    shell::Answer answer;
    answer.status = result.leftOut.empty() ? 0 : 1;
    answer.text = result.directory + "\n";
    for (const std::string& file : result.files)
        answer.text += "+ " + file + "\n";
    for (const std::string& file : result.leftOut)
        answer.text += "- " + file + "\n";
    return answer;
}

/// With the first registration the process takes the command, and forgets the registrations at the platform's end.
void introduce() {
    if (state().introduced)
        return;
    state().introduced = true;
    shell::addBuiltin("@collect", "[directory]  collects troubleshooting files", collectCommand);
    shell::listen();
    atPlatformEnd([] {
        const std::lock_guard<std::mutex> guard(state().mutex);
        state().entries.clear();
        state().introduced = false;
    });
}

int add(Entry entry) {
    const std::lock_guard<std::mutex> guard(state().mutex);
    auto& entries = state().entries;
    const auto sameName = [&](const Entry& other) { return other->name == entry->name; };
    if (std::any_of(entries.begin(), entries.end(), sameName))
        return EAaTrblRetVal_AlreadyExists;
    introduce();
    const auto later = [&](const Entry& other) { return other->priority > entry->priority; };
    entries.insert(std::find_if(entries.begin(), entries.end(), later), std::move(entry));
    return EAaTrblRetVal_NoError;
}

} // namespace

Collection collectTroubleshooting(const std::string& directory) {
    Collection result;
    result.directory = directory.empty() ? defaultDirectory() : directory;
    if (result.directory.empty()) {
        result.leftOut.emplace_back("no directory: the process belongs to no run");
        return result;
    }
    shell::onCommandThread([&] { collect(result); });
    return result;
}

int AaTrblFileRegister(const char* name, const char* fileName, EAaTrblFilePriority priority, std::uint32_t maxBytes,
                       TAaTrblPrepareFileCb prepare, TAaTrblStoreFileCb store, TAaTrblDeleteFileCb discard,
                       // NOLINTNEXTLINE(readability-non-const-parameter): call-backs may write to it
                       std::uint32_t* opaque) {
    if (!name || *name == '\0' || !fileName || !store || priority < EAaTrblFilePriority_High ||
        priority > EAaTrblFilePriority_Low)
        return EAaTrblRetVal_InvalidValue;
    if (!environmentRuns())
        return EAaTrblRetVal_NotStarted;
    try {
        return add(std::make_shared<const Registration>(
            Registration{name, fileName, priority, maxBytes, prepare, store, discard, opaque}));
    } catch (const std::bad_alloc&) {
        return EAaTrblRetVal_OutOfResources;
    }
}

int AaTrblFileUnregister(const char* name) {
    if (!name)
        return EAaTrblRetVal_InvalidValue;
    const NoCancellation untilItsCallBacksHaveReturned;
    std::unique_lock<std::mutex> lock(state().mutex);
    auto& entries = state().entries;
    const auto found =
        std::find_if(entries.begin(), entries.end(), [name](const Entry& entry) { return entry->name == name; });
    if (found == entries.end())
        return EAaTrblRetVal_NotFound;
    const Entry entry = *found;
    entries.erase(found);
    state().idle.wait(lock, [&] { return state().running != entry; });
    return EAaTrblRetVal_NoError;
}

} // namespace mox::host
