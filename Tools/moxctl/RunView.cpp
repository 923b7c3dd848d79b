#include "RunView.hpp"

#include "Numbers.hpp"
#include "RadAccess.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <host/board/CreateRun.hpp>
#include <host/bus/SocketNames.hpp>
#include <host/run/Run.hpp>
#include <host/store/Store.hpp>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace mox::tools {

namespace {

constexpr const char* socketEnd = ".sock";

std::vector<std::string> namesIn(int directory) {
    std::vector<std::string> names;
    const int readable = openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* entries = readable >= 0 ? fdopendir(readable) : nullptr;
    if (entries == nullptr) {
        return names;
    }
    while (const dirent* entry = readdir(entries)) {
        names.emplace_back(entry->d_name);
    }
    closedir(entries);
    return names;
}

bool endsInSocket(const std::string& name) {
    const std::string end = socketEnd;
    return name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

/// The CPID of "0600.sock".
std::optional<std::uint16_t> cpidOfName(const std::string& name) {
    char* end = nullptr;
    const unsigned long cpid = std::strtoul(name.c_str(), &end, 16);
    const bool isEndpoint = name.size() == 9 && endsInSocket(name) && end == name.c_str() + 4;
    return isEndpoint ? std::optional(static_cast<std::uint16_t>(cpid)) : std::nullopt;
}

/// The process of "p123.sock" and of "p123.0600".
std::optional<std::uint32_t> pidOfName(const std::string& name) {
    char* end = nullptr;
    const unsigned long pid = std::strtoul(name.c_str() + 1, &end, 10);
    const bool isProcess = name.front() == 'p' && end != name.c_str() + 1 && *end == '.';
    return isProcess ? std::optional(static_cast<std::uint32_t>(pid)) : std::nullopt;
}

std::string recordKey(std::uint16_t node, const std::string& name) {
    return host::hex4(node) + "/" + name;
}

} // namespace

std::vector<host::NodeDescription> nodesOf(const host::Run& run, std::optional<std::uint16_t> only) {
    std::vector<host::NodeDescription> nodes = host::readNodes(run.store());
    if (only) {
        const auto isOther = [only](const host::NodeDescription& node) { return node.id != *only; };
        nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isOther), nodes.end());
    }
    return nodes;
}

std::vector<RegisteredEndpoint> endpointsOf(const host::Run& run, std::uint16_t node) {
    std::vector<RegisteredEndpoint> endpoints;
    const int directory = host::nodeDirectory(run, node);
    for (const std::string& name : namesIn(directory)) {
        const auto cpid = cpidOfName(name);
        if (cpid && host::isAlive(directory, name)) {
            endpoints.push_back({*cpid, host::ownerOf(directory, *cpid)});
        }
    }
    std::sort(endpoints.begin(), endpoints.end(), [](auto a, auto b) { return a.cpid < b.cpid; });
    return endpoints;
}

std::vector<std::uint16_t> cpidsOf(const std::vector<RegisteredEndpoint>& endpoints, std::uint32_t pid) {
    std::vector<std::uint16_t> cpids;
    for (const RegisteredEndpoint& endpoint : endpoints) {
        if (endpoint.pid == pid) {
            cpids.push_back(endpoint.cpid);
        }
    }
    return cpids;
}

std::vector<std::string> cpidTexts(const std::vector<std::uint16_t>& cpids) {
    std::vector<std::string> texts;
    texts.reserve(cpids.size());
    for (const std::uint16_t cpid : cpids) {
        texts.push_back(showHex(cpid, 4));
    }
    return texts;
}

std::vector<std::uint32_t> joinedProcesses(const host::Run& run, std::uint16_t node) {
    std::vector<std::uint32_t> processes;
    const int directory = host::nodeDirectory(run, node);
    for (const std::string& name : namesIn(directory)) {
        const auto pid = pidOfName(name);
        if (pid && endsInSocket(name) && host::isAlive(directory, name)) {
            processes.push_back(*pid);
        }
    }
    std::sort(processes.begin(), processes.end());
    return processes;
}

unsigned removeDeadSockets(const host::Run& run, std::uint16_t node) {
    unsigned removed = 0;
    const int directory = host::nodeDirectory(run, node);
    for (const std::string& name : namesIn(directory)) {
        const bool isSocket = cpidOfName(name) || pidOfName(name);
        if (isSocket && !host::isAlive(directory, name) && unlinkat(directory, name.c_str(), 0) == 0) {
            ++removed;
        }
    }
    return removed;
}

StartedServices::StartedServices(const host::Run& run) : m_store(run.store()) {}

std::optional<ProcessFacts> StartedServices::find(std::uint16_t node, const std::string& name) const {
    const auto record = m_store.get(host::Table::processes, recordKey(node, name));
    if (!record) {
        return std::nullopt;
    }
    std::uint32_t pid = 0;
    std::uint64_t startTicks = 0;
    std::istringstream(*record) >> pid >> startTicks;
    auto process = readProcess(pid);
    // The number of a dead process may be somebody else's by now.
    return process && process->startTicks == startTicks ? process : std::nullopt;
}

void StartedServices::remember(std::uint16_t node, const std::string& name, const ProcessFacts& process) {
    m_store.put(host::Table::processes, recordKey(node, name),
                std::to_string(process.pid) + " " + std::to_string(process.startTicks));
}

void StartedServices::forget(std::uint16_t node, const std::string& name) {
    m_store.erase(host::Table::processes, recordKey(node, name));
}

std::string serviceState(const host::Run& run, std::uint16_t node, const std::string& service) {
    constexpr std::uint32_t stateDomain = 34;
    static constexpr std::array common{"not started", "starting", "waiting", "handling", "ended", "failed"};
    const auto rad = openRad(run, node);
    for (const char* end : {"State", "SState"}) {
        for (const host::RadParameter& parameter : rad->find(service + end)) {
            if (parameter.id >> 16U == stateDomain) {
                return parameter.value < common.size() ? common[parameter.value] : showHex(parameter.value, 1);
            }
        }
    }
    return "";
}

} // namespace mox::tools
