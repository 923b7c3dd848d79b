#pragma once
/// The fixture of tests on a simulated board. Each test has a run of its own, made fresh and removed after it, and a
/// mount namespace of its own, in which the stated absolute paths (/ffs, /ram, /rpram, /tmp, ...) are the board's.
///
///     class FanOnKora : public mox::testkit::BoardTest {};
///     const mox::testkit::BoardOf s_board("FanOnKora", mox::testkit::Board::named("kora"));
///     TEST_F(FanOnKora, StopsWhenToldTo) {
///         FanService fan;
///         const InProcessService running(fan);
///         ...
///     }
///
/// The kit's main() does this: it starts each test as a process of its own in a sandbox, waits for it, and removes the
/// run, also when the test crashed. So a failure of one test leaves no other test without a board, and any number of
/// executables run side by side. Everything of one test executable happens so, whatever its fixture is. Each test
/// writes a report of its own: give --gtest_output a directory ("xml:reports/").
///
/// A warning or error that nobody expected fails the test; see CapturedLog.
#include <testkit/CapturedLog.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace mox::testkit {

class BoardTest : public ::testing::Test {
protected:
    BoardTest();
    ~BoardTest() override;

    /// The node that this process belongs to.
    static std::uint16_t node();
    /// Directory of the run, for looking at what the platform keeps there.
    static std::string runPath();

    /// What this process logs.
    CapturedLog log;
};

/// Starts the platform in the test's process, without a service, unless it runs already: messages, execution units,
/// timers and mailboxes can be used then. It is shut down when the test ends. First thread.
void startPlatform();

/// Ends what startPlatform() has begun, if anything.
void stopPlatform();

} // namespace mox::testkit
