#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "Ddal.hpp"
#include "FileDescriptor.hpp"
#include "NodeProcesses.hpp"
#include "Reset.hpp"
#include "SimulatedUnit.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>

namespace mox::host {

// A reboot ends what the run has started on the node, as a supply that fails would: at once. Nothing starts the
// services again but 'moxctl sim up'. A process that has joined the run by itself (a test, a tool) goes on and is told
// DDAL_OK, as on a platform where the reboot happens a moment later.
int ddal_watchdog_reboot() {
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const std::string path = unit.run().nodePath(unit.node()) + "/reboot.lock";
    const FileDescriptor underWay(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (underWay.get() < 0)
        return DDAL_IO_ERROR;
    if (::flock(underWay.get(), LOCK_EX | LOCK_NB) != 0)
        return DDAL_BUSY;
    const unsigned killed = killServices(unit.run(), unit.node());
    if (!resetNode(unit.run(), unit.node()))
        return DDAL_IO_ERROR;
    logPlatform(3, "node %04x: rebooted by the watchdog; %u other services were killed", unit.node(), killed);
    if (isService(unit.run(), unit.node()))
        ::kill(::getpid(), SIGKILL);
    return DDAL_OK;
}

} // namespace mox::host
