#pragma once
/// What the echo service understands and answers. Numbers in payloads are little-endian.
#include <cstdint>

namespace mox::echo {

constexpr std::uint16_t cpid = 0x0600;

/// Payload: anything. Answered by echoResponse with the same bytes.
constexpr std::uint16_t echoRequest = 0x0601;
constexpr std::uint16_t echoResponse = 0x0602;

/// Payload: u32 SIC address of another echo service, then anything. Answered by forwardResponse.
constexpr std::uint16_t forwardRequest = 0x0603;
/// Payload: u32 Outcome, then what the other service answered.
constexpr std::uint16_t forwardResponse = 0x0604;

/// Payload: the address of a request of this process, then its u32 ticket, in its own byte order. The service sends it
/// to itself; from anybody else it is ignored.
constexpr std::uint16_t forwardTimeout = 0x0605;

/// What became of a forwarded request.
enum class Outcome : std::uint32_t {
    answered = 0,
    timedOut = 1, ///< no answer within the time limit
    notSent = 2,  ///< nobody receives at the given address, or the platform has no means left to ask
    malformed = 3 ///< the request holds no address
};

} // namespace mox::echo
