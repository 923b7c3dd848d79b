#pragma once
/// What leaves this process for others of the run, over connections that are kept open.
#include "Connection.hpp"

namespace mox::host {

/// Sends one message to an endpoint. A full receiver is asked to drain its socket, and waited for up to 2 s; messages
/// that wait for room when the process ends are given as long. Messages from one thread to one endpoint arrive in
/// order. Any thread.
Delivery deliverMessage(const Run& run, SocketKey to, const void* message, std::size_t size);

/// Sends one datagram made of `parts`; waits for room. Those from one thread to one receiver arrive in order. Any
/// thread.
/// @param giveUpAt  by realMonotonicNs()
Delivery deliverDatagram(const Run& run, SocketKey to, const iovec* parts, std::size_t partCount,
                         std::uint64_t giveUpAt);

} // namespace mox::host
