#include "TagAudience.hpp"

#include "../bus/SocketNames.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Keys.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>

namespace mox::host::tags {
namespace {

constexpr int warning = 3;

// Behind the name of a tag or service and its zero byte: interest, node (2 bytes), process (4 bytes), high byte first.
constexpr std::size_t entrySize = 7;

Table tableOf(Interest interest) {
    return interest == Interest::tag ? Table::tagObservers : Table::services;
}

std::string keyOf(const Registration& registration, ProcessAddress process) {
    std::string key = registration.name + '\0';
    key.push_back(static_cast<char>(registration.interest));
    appendBigEndian(key, process.node, 2);
    appendBigEndian(key, process.pid, 4);
    return key;
}

struct Member {
    Interest interest;
    ProcessAddress process;
};

std::optional<Member> memberIn(std::string_view key) {
    if (key.size() <= entrySize || key[key.size() - entrySize - 1] != '\0') {
        return std::nullopt;
    }
    const auto entry = key.substr(key.size() - entrySize);
    return Member{static_cast<Interest>(entry[0]),
                  {static_cast<std::uint16_t>(bigEndian(entry.substr(1, 2))), bigEndian(entry.substr(3))}};
}

void collect(const Store::Write& write, Table table, std::string_view name, std::vector<ProcessAddress>& members) {
    const ProcessAddress own = ownProcess();
    const std::string prefix = std::string(name) + '\0';
    write.forEach(table, prefix, [&](std::string_view key, std::string_view) {
        const auto member = key.size() == prefix.size() + entrySize ? memberIn(key) : std::nullopt;
        if (member && !(member->process == own) &&
            (member->interest != Interest::node || member->process.node == own.node) &&
            std::find(members.begin(), members.end(), member->process) == members.end()) {
            members.push_back(member->process);
        }
        return true;
    });
}

/// A process that has not opened its socket yet lives too.
bool lives(const Run& run, ProcessAddress process) {
    const int directory = nodeDirectory(run, process.node);
    const std::string socket = socketName({SocketKey::Kind::process, process.node, process.pid});
    if (isAlive(directory, socket)) {
        return true;
    }
    const bool opened = ::faccessat(directory, socket.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    return !opened && (::kill(static_cast<pid_t>(process.pid), 0) == 0 || errno == EPERM);
}

void forget(Store& store, ProcessAddress process) {
    for (const Table table : {Table::tagObservers, Table::services}) {
        std::vector<std::string> keys;
        store.forEach(table, "", [&](std::string_view key, std::string_view) {
            const auto member = memberIn(key);
            if (member && member->process == process) {
                keys.emplace_back(key);
            }
            return true;
        });
        for (const auto& key : keys) {
            store.erase(table, key);
        }
    }
}

// What only this process can change concerns nobody else.
bool concernsOthers(const Registration& registration) {
    return registration.interest != Interest::process;
}

} // namespace

bool covers(std::string_view service, std::string_view tag) {
    return service.empty() ||
           (tag.substr(0, service.size()) == service && (tag.size() == service.size() || tag[service.size()] == '.'));
}

bool enterAudience(const Registration& registration) {
    const Run* run = Run::current();
    return run == nullptr || !concernsOthers(registration) ||
           run->store().put(tableOf(registration.interest), keyOf(registration, ownProcess()), "");
}

void leaveAudience(const Registration& registration) {
    const Run* run = Run::current();
    if (run != nullptr && concernsOthers(registration)) {
        run->store().erase(tableOf(registration.interest), keyOf(registration, ownProcess()));
    }
}

std::vector<ProcessAddress> audienceOf(const Store::Write& write, std::string_view name) {
    std::vector<ProcessAddress> members;
    collect(write, Table::tagObservers, name, members);
    collect(write, Table::services, name, members);
    for (auto dot = name.rfind('.'); dot != std::string_view::npos && dot > 0; dot = name.rfind('.', dot - 1)) {
        collect(write, Table::services, name.substr(0, dot), members);
    }
    collect(write, Table::services, "", members);
    return members;
}

void tellAudience(const std::vector<ProcessAddress>& audience, const std::string& name, const std::string& notice) {
    const Run* run = Run::current();
    for (const ProcessAddress process : audience) {
        if (tell(process, Topic::tagPublished, notice)) {
            continue;
        }
        if (lives(*run, process)) {
            logPlatform(warning, "tag '%s': process %u of node 0x%04X did not take the publication", name.c_str(),
                        process.pid, process.node);
        } else {
            forget(run->store(), process);
        }
    }
}

} // namespace mox::host::tags
