// Any bytes as a datagram from another process: each message that comes of it lies wholly inside of it, and is for the
// address that it was sent to.
#include "Fuzz.hpp"

#include <host/bus/Endpoint.hpp>
#include <host/core/Inbox.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include <numeric>

using namespace mox::host;

namespace {

constexpr std::uint32_t ownAddress = 0x10110621;

struct Ends {
    Ends() { expect(::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, fds) == 0); }
    int fds[2] = {-1, -1};
};

} // namespace

void fuzz(std::string_view bytes) {
    static const Ends ends;
    static Inbox& inbox = *Inbox::acquire();
    static Endpoint endpoint(ownAddress, ends.fds[1], inbox);
    if (bytes.size() > maxWireSize + 1 || ::send(ends.fds[0], bytes.data(), bytes.size(), 0) < 0) {
        return;
    }
    endpoint.readForOwner();
    std::size_t size = 0;
    while (Message* message = inbox.take(0)) {
        expect((message->header.receiver >> 16U) != (ownAddress >> 16U) || message->header.receiver == ownAddress);
        const std::uint8_t* body = message->payload();
        const std::size_t bodySize = Message::bodySize(message->header);
        expect(std::accumulate(body, body + bodySize, std::size_t{0}) <= 0xFF * bodySize); // all of it is there
        size += message->wireSize();
        Message::release(message);
    }
    expect(size == 0 || size == bytes.size());
}
