#pragma once
/// The longer things that a process of these tests does with messages.
#include <chrono>
#include <cstdint>
#include <string>

namespace mox::testing {

class Stopwatch {
public:
    long long ms() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_begin)
            .count();
    }

private:
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

/// A message whose payload begins with its place in the sender's sequence, if it is large enough, and is patterned.
void* numbered(std::uint16_t id, std::uint32_t size, std::uint32_t receiver, std::uint32_t place);

/// Sends `count` numbered messages; what could not be sent keeps its number for the next one.
/// @return "<sent> <last result> <milliseconds>"
std::string sendMany(std::uint32_t to, std::uint16_t id, std::uint32_t size, std::uint32_t count, std::uint32_t first,
                     bool untilFailure);

/// Receives numbered messages, with a nap of some milliseconds after each `napAfter` of them (0: none). @return "all"
/// when each sender's came in order and whole, else what was wrong
std::string collect(std::uint32_t count, std::int32_t timeoutUs, std::uint32_t napAfter);

/// A message in words; "none" for null.
std::string describe(const void* message);

/// Starts an EU that answers every message for ever. @return the result of its creation, when it can be reached
std::string startServer(std::uint16_t cpid);

struct Bursts {
    std::uint32_t to;
    std::uint32_t count;
    std::uint32_t burst;
};

/// Sends with moments of silence between bursts, so that the receiver goes to sleep in the way that suits each.
void sendInBursts(const Bursts& what);

} // namespace mox::testing
