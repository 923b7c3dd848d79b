#pragma once
/// Where the sockets of a run lie. A name is reached through the node directory's open descriptor, because a socket
/// address holds 107 characters and a run's path may be longer.
///
/// nodes/<nid>/<cpid>.sock is a symbolic link to the socket p<pid>.<cpid> of the process that has registered the
/// address, so that a look tells whose it is, and so that a dead process's name is replaced in one step.
#include <sys/un.h>

#include <cstdint>
#include <string>

namespace mox::host {

class Run;

/// One receiver of datagrams in a run.
struct SocketKey {
    enum class Kind : std::uint8_t { endpoint, process };
    Kind kind;
    std::uint16_t node;
    std::uint32_t id; ///< CPID or process id

    std::uint64_t packed() const {
        return (static_cast<std::uint64_t>(kind) << 48U) | (static_cast<std::uint64_t>(node) << 32U) | id;
    }
};

/// File name in the node's directory.
std::string socketName(SocketKey key);
/// File name of the socket to which the endpoint's name leads, in the directory of the process's node.
std::string endpointSocketName(std::uint16_t cpid, std::uint32_t pid);

/// An open directory of a node; -1 when the run has no such node. The own node's is kept open, others are opened once.
int nodeDirectory(const Run& run, std::uint16_t node);

/// The address of a name in an open directory.
sockaddr_un addressIn(int directory, const std::string& name);

/// A non-blocking-receive datagram socket. @return descriptor, or -1 with errno
int datagramSocket();

/// Connects a socket to a name in an open directory. @return false with errno: most likely nobody receives there
bool connectTo(int fd, int directory, const std::string& name);

/// Whether somebody receives under this name; true also when that cannot be found out.
bool isAlive(int directory, const std::string& name);

/// Removes the sockets that processes of the own node have left which were killed.
void removeSocketsOfTheDead(const Run& run);

/// The process that has registered an endpoint; 0: nobody
std::uint32_t ownerOf(int directory, std::uint16_t cpid);

} // namespace mox::host
