#pragma once
/// Runs a service's executable, MOX<Name>Exe, as a process of its own on the test's board.
///
///     ChildService led("Led", ERadHwapiState_LedState);         // waits until it waits for messages
///     const auto far = ChildService::at(0x1021, "Led", ERadHwapiState_LedState);
///     EXPECT_TRUE(led.awaitOutput(HasSubstr("Service initialized"), 2000));
///     EXPECT_EQ(led.stop(), 128 + SIGTERM);                    // exit status, or 128 + signal
///
/// The executable is looked for in MOX_EXE_PATH (directories, separated by colons), then where the build put it. Owned
/// and used by one thread; the process ends with the object, and with the test in any case. Time limits are in real
/// time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mox::testkit {

/// What to start, and where.
struct ChildRequest {
    std::string name;                   ///< "Echo" for MOXEchoExe
    unsigned int stateRadId = 0;        ///< R&D parameter that mirrors the service's state; 0: do not wait for it
    std::vector<std::string> arguments; ///< of the executable
    std::uint16_t node = 0;             ///< 0: the test's own
    unsigned limitMs = 10'000;          ///< for coming up
    /// Further variables. The service prints all log lines that pass, unless MOX_LOG says otherwise.
    std::vector<std::pair<std::string, std::string>> environment = {};
};

class ChildService {
public:
    /// Starts it; fails the test, with what it printed, unless its state becomes 2 within the limit. Without a
    /// parameter of the state it may not have begun yet.
    explicit ChildService(const ChildRequest& request);
    ChildService(const std::string& name, unsigned int stateRadId, const std::vector<std::string>& arguments = {})
        : ChildService(ChildRequest{name, stateRadId, arguments, 0}) {}
    /// On another node of the board.
    static ChildService at(std::uint16_t node, const std::string& name, unsigned int stateRadId) {
        return ChildService(ChildRequest{name, stateRadId, {}, node});
    }
    ~ChildService();
    ChildService(ChildService&&) noexcept;
    ChildService& operator=(ChildService&&) = delete;

    bool isRunning();
    /// Sends SIGTERM, after the limit SIGKILL. @return exit status, or 128 + signal; -1 when it was never started
    int stop(unsigned limitMs = 10'000);
    /// Sends any signal, if it runs.
    void signal(int number);
    /// Waits for its end. @return exit status, or 128 + signal; -1 when the limit has passed first
    int awaitEnd(unsigned limitMs = 10'000);

    /// The value of an R&D parameter of its node. @return 0 when there is no such parameter
    unsigned int radValue(unsigned int id) const;
    /// Waits until the service's state has a value.
    ::testing::AssertionResult awaitState(unsigned int state, unsigned limitMs = 10'000);

    /// What it has printed on both streams, log lines included, line by line.
    std::vector<std::string> output() const;
    ::testing::AssertionResult awaitOutput(const ::testing::Matcher<std::string>& line, unsigned limitMs = 10'000);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace mox::testkit
