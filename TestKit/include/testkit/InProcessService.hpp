#pragma once
/// Runs a service's main loop within the test's process, from start-up to shut-down.
///
///     LedService led;                                    // derived from Service, in the test or linked
///     InProcessService running(led, {"--verbose"});      // waits until the service waits for messages
///     EXPECT_EQ(led.GetServiceStateRad(), 2U);
///     EXPECT_TRUE(running.stop());                       // what Startup answered
///
/// One at a time, in a test on a board (BoardTest). Built and destroyed by the test's thread; the service's first
/// thread is one of the kit. Doubles, manual clock and captured log hold for the service too. Blocks only for the
/// limits given, in real time.
#include <mox/Service.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace mox::testkit {

/// Message id by which the kit ends a service; the service gets a handler for it.
constexpr std::uint16_t stopMessageId = 0xFFFE;

class InProcessService {
public:
    /// Starts the service; fails the test, with the newest log lines, unless it waits for messages within the limit.
    /// @param service    outlives this object; started once at most
    /// @param arguments  of its command line, without the program's name
    explicit InProcessService(ps::hwapi::common::Service& service, const std::vector<std::string>& arguments = {},
                              unsigned limitMs = 10'000);
    /// Stops it, if stop() has not. A service that does not end within 10 s ends the process, and the test has failed:
    /// its threads still use what the test would destroy.
    ~InProcessService();
    InProcessService(const InProcessService&) = delete;
    InProcessService& operator=(const InProcessService&) = delete;

    /// Whether it has come to its main loop.
    bool isRunning() const;
    /// The service's address.
    std::uint32_t address() const;
    /// Ends the main loop, then shuts the platform down; fails the test, with the newest log lines, when the service
    /// does not end within the limit. @return what Startup answered; false also when it did not end
    bool stop(unsigned limitMs = 10'000);
    /// Waits until the service ends by itself. @return false when the limit has passed first; the test has failed then
    bool awaitEnd(unsigned limitMs = 10'000);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace mox::testkit
