#include "NodeProcesses.hpp"

#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "FileDescriptor.hpp"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace mox::host {

namespace {

constexpr int patienceMs = 500;

/// A process as the run has noted it; together with its start the number names one process for good.
struct Service {
    pid_t pid = 0;
    std::uint64_t startTicks = 0;
};

std::vector<Service> servicesOf(const Run& run, std::uint16_t node) {
    std::vector<Service> services;
    run.store().forEach(Table::processes, hex4(node) + "/", [&services](std::string_view, std::string_view record) {
        Service service;
        std::istringstream(std::string(record)) >> service.pid >> service.startTicks;
        if (service.pid > 0)
            services.push_back(service);
        return true;
    });
    return services;
}

/// Start of a process since that of the machine; 0: there is none.
std::uint64_t startTicksOf(pid_t pid) {
    constexpr std::size_t startTicks = 19;
    // That of the first thread, which an emulator does not make up for the process that asks.
    const std::string directory = "/proc/" + std::to_string(pid);
    std::ifstream file(directory + "/task/" + std::to_string(pid) + "/stat");
    std::string status;
    std::getline(file, status, '\0');       // fails, but does not throw, when the process ends just now
    const auto nameEnd = status.rfind(')'); // a name may hold blanks and brackets
    if (nameEnd == std::string::npos)
        return 0;
    std::istringstream fields(status.substr(nameEnd + 1));
    const std::vector<std::string> field{std::istream_iterator<std::string>(fields), {}};
    return field.size() > startTicks ? std::strtoull(field[startTicks].c_str(), nullptr, 10) : 0;
}

bool kill(const Service& service) {
    // Held first, so that its number cannot become another process's meanwhile.
    const FileDescriptor held(static_cast<int>(::syscall(SYS_pidfd_open, service.pid, 0)));
    if (held.get() < 0 || startTicksOf(service.pid) != service.startTicks)
        return false;
    if (::syscall(SYS_pidfd_send_signal, held.get(), SIGKILL, nullptr, 0) != 0)
        return false;
    pollfd watched{held.get(), POLLIN, 0};
    return ::poll(&watched, 1, patienceMs) == 1;
}

} // namespace

unsigned killServices(const Run& run, std::uint16_t node) {
    unsigned killed = 0;
    for (const Service& service : servicesOf(run, node))
        if (service.pid != ::getpid() && kill(service))
            ++killed;
    return killed;
}

bool isService(const Run& run, std::uint16_t node) {
    for (const Service& service : servicesOf(run, node))
        if (service.pid == ::getpid() && startTicksOf(service.pid) == service.startTicks)
            return true;
    return false;
}

} // namespace mox::host
