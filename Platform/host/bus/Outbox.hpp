#pragma once
/// Datagrams from this process to others of the run, over connected sockets that are kept open.
#include "SocketNames.hpp"

#include <sys/uio.h>

#include <cstddef>

namespace mox::host {

enum class Delivery { done, gone, full, tooLong };

/// Sends one datagram made of `parts`. A receiver that is full is asked to drain its socket, and waited for up to 2 s.
/// Datagrams from one thread to one receiver arrive in order. Any thread.
Delivery deliver(const Run& run, SocketKey to, const iovec* parts, std::size_t partCount);

} // namespace mox::host
