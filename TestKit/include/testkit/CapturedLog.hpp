#pragma once
/// The log lines of the test's process, and what a test says of them.
///
///     CapturedLog log;                                      // BoardTest has one
///     sut.start();
///     EXPECT_TRUE(log.has(info(0x20003, "Fan: started")));
///     EXPECT_TRUE(log.hasInOrder({warning(0x20003, HasSubstr("slow")), error(0x20003, "Fan: stopped")}));
///     EXPECT_TRUE(log.await(error(anyFeature, HasSubstr("lost")), 2000));
///
/// A line that one of these has found is an expected one. When the log ends, warnings and errors that nobody expected
/// fail the test; expect() announces lines that may come, failOnUnexpected() sets how grave a line must be. Debug lines
/// are seen only while the R&D flag of their feature is set, as everywhere. Lines of the C library's syslog() have
/// feature 0, and debug lines are always among them.
///
/// One at a time, a second one fails the test; while it lives the lines do not go to the terminal. Built and destroyed
/// by the test's thread; the rest may be called by any thread. Only await() blocks.
#include <testkit/LogLine.hpp>

#include <gmock/gmock.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace mox::testkit {

class CapturedLog {
public:
    CapturedLog();
    /// Fails the test for each unexpected line.
    ~CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// Whether a line was logged; all such lines count as expected.
    ::testing::AssertionResult has(const LogMatcher& line);
    /// Whether lines were logged one behind the other, with others in between or not; the first that fit are expected.
    ::testing::AssertionResult hasInOrder(std::initializer_list<LogMatcher> lines);
    /// Whether each was logged, a line of its own for each, in any order.
    ::testing::AssertionResult hasAll(std::initializer_list<LogMatcher> lines);
    /// Whether no such line was logged.
    ::testing::AssertionResult hasNot(const LogMatcher& line) const;
    /// How many such lines were logged; they count as expected.
    std::size_t count(const LogMatcher& line);
    /// Waits in real time for a line, which may have been logged before.
    ::testing::AssertionResult await(const LogMatcher& line, unsigned limitMs = 10'000);

    /// Lines that match may come any number of times, before or after this call, without failing the test.
    void expect(const LogMatcher& line);
    /// From which severity on an unexpected line fails the test; nothing(): none does.
    void failOnUnexpected(int lowestLevel);
    static constexpr int nothing() { return 5; }

    /// The lines so far that fail the test if it ends now.
    std::vector<LogLine> unexpected() const;
    std::vector<LogLine> lines() const;
    /// The newest lines of the log that lives, as failures show them. @return empty when there is none
    static std::string newest();
    /// Forgets all lines so far, unexpected ones too.
    void clear();

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace mox::testkit
