#include "SocketNames.hpp"

#include "../run/Run.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>

namespace mox::host {

namespace {

/// The process whose socket has this name; 0: it is no such name
std::uint32_t processOf(const char* name) {
    return name[0] == 'p' ? static_cast<std::uint32_t>(std::strtoul(name + 1, nullptr, 10)) : 0;
}

} // namespace

std::string socketName(SocketKey key) {
    return key.kind == SocketKey::Kind::endpoint ? hex4(static_cast<std::uint16_t>(key.id)) + ".sock"
                                                 : "p" + std::to_string(key.id) + ".sock";
}

std::string endpointSocketName(std::uint16_t cpid, std::uint32_t pid) {
    return "p" + std::to_string(pid) + "." + hex4(cpid);
}

int nodeDirectory(const Run& run, std::uint16_t node) {
    if (node == run.node()) {
        return run.nodeFd();
    }
    static std::mutex mutex;
    static auto* open = new std::map<std::uint16_t, int>;
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = open->find(node);
    if (known != open->end()) {
        return known->second;
    }
    const int fd = ::open(run.nodePath(node).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        open->emplace(node, fd);
    }
    return fd;
}

sockaddr_un addressIn(int directory, const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof(address.sun_path), "/proc/self/fd/%d/%s", directory, name.c_str());
    return address;
}

int datagramSocket() {
    return ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

bool connectTo(int fd, int directory, const std::string& name) {
    const sockaddr_un address = addressIn(directory, name);
    return ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

bool isAlive(int directory, const std::string& name) {
    const int fd = datagramSocket();
    if (fd < 0) {
        return true; // nobody knows, and a living one must not lose its name
    }
    const bool alive = connectTo(fd, directory, name);
    ::close(fd);
    return alive;
}

void removeSocketsOfTheDead(const Run& run) {
    DIR* directory = opendir(run.nodePath().c_str());
    if (directory == nullptr) {
        return;
    }
    while (const dirent* entry = readdir(directory)) {
        const std::uint32_t pid = processOf(entry->d_name);
        if (pid != 0 && kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH) {
            unlinkat(run.nodeFd(), entry->d_name, 0);
        }
    }
    closedir(directory);
}

std::uint32_t ownerOf(int directory, std::uint16_t cpid) {
    std::array<char, 64> target{};
    const std::string name = socketName({SocketKey::Kind::endpoint, 0, cpid});
    const ssize_t length = readlinkat(directory, name.c_str(), target.data(), target.size() - 1);
    return length > 0 ? processOf(target.data()) : 0;
}

} // namespace mox::host
