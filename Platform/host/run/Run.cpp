#include "Run.hpp"

#include "../faults/Faults.hpp"
#include "../store/Store.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

namespace mox::host {

namespace {

std::atomic<const Run*> g_current{nullptr};

/// The lowest node id of the run's directory; 0: there is none.
std::uint16_t firstNode(const std::string& path) {
    unsigned long lowest = 0;
    if (DIR* nodes = opendir((path + "/nodes").c_str())) {
        while (const dirent* entry = readdir(nodes)) {
            char* end = nullptr;
            const unsigned long node = std::strtoul(entry->d_name, &end, 16);
            if (node != 0 && *end == '\0' && (lowest == 0 || node < lowest)) {
                lowest = node;
            }
        }
        closedir(nodes);
    }
    return static_cast<std::uint16_t>(lowest);
}

/// The node that the environment names; 0: it is no node id.
std::uint16_t wantedNode(const std::string& path) {
    const char* variable = std::getenv("MOX_NODE");
    if (variable == nullptr || *variable == '\0') {
        return firstNode(path);
    }
    char* end = nullptr;
    const unsigned long node = std::strtoul(variable, &end, 16);
    return *end == '\0' && node <= 0xFFFF ? static_cast<std::uint16_t>(node) : std::uint16_t{0};
}

} // namespace

std::string hex4(std::uint16_t value) {
    char text[5];
    std::snprintf(text, sizeof(text), "%04x", value);
    return text;
}

Run::Run(std::string path, std::uint16_t node, int nodeFd, std::unique_ptr<Store> store)
    : m_path(std::move(path)), m_node(node), m_nodeFd(nodeFd), m_store(std::move(store)) {}

Run::~Run() {
    ::close(m_nodeFd);
}

std::string Run::nodePath(std::uint16_t nid) const {
    return m_path + "/nodes/" + hex4(nid);
}

const Run* Run::current() {
    return g_current.load(std::memory_order_acquire);
}

Run::Attach Run::attach(std::string& why) {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    why.clear();
    if (current() != nullptr) {
        return Attach::done;
    }
    const char* variable = std::getenv("MOX_RUN");
    if (variable == nullptr || *variable == '\0') {
        why = "MOX_RUN is not set: a service runs on a simulated board, see 'moxctl sim up'";
        return Attach::noVariable;
    }
    const std::string path = variable;
    if (access((path + "/nodes").c_str(), R_OK | X_OK) != 0) {
        why = path + ": no run: " + std::strerror(errno) + " (expected a directory made by 'moxctl sim new')";
        return Attach::noDirectory;
    }
    const std::uint16_t node = wantedNode(path);
    const int nodeFd = ::open((path + "/nodes/" + hex4(node)).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (node == 0 || nodeFd < 0) {
        const char* name = std::getenv("MOX_NODE");
        why = path + ": no node '" + (name != nullptr ? name : "") + "' (MOX_NODE, a node id in hexadecimal)";
        return Attach::noSuchNode;
    }
    auto store = Store::open(path + "/store", false, why);
    if (!store) {
        ::close(nodeFd);
        return Attach::storeFailed;
    }
    g_current.store(new Run(path, node, nodeFd, std::move(store)), std::memory_order_release); // until the process ends
    faults::attach(*current());
    return Attach::done;
}

} // namespace mox::host
