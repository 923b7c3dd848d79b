#include "host/log/Log.hpp"

#include <testkit/CapturedLog.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sstream>

namespace mox::testkit {
namespace {

struct Captured {
    LogLine line;
    bool expected = false;
};

/// Most lines that a failure message repeats.
constexpr std::size_t mostShown = 40;

std::atomic<const CapturedLog*> s_living{nullptr};

} // namespace

struct CapturedLog::State {
    mutable std::mutex mutex;
    std::condition_variable added;
    std::vector<Captured> lines;
    std::vector<LogMatcher> announced;
    int lowest = warningLevel;

    void add(int level, unsigned int feature, std::string_view text) {
        const std::lock_guard<std::mutex> guard(mutex);
        lines.push_back(Captured{LogLine{level, feature, std::string(text)}, false});
        added.notify_all();
    }

    /// Marks all lines that match. @return how many
    std::size_t markAll(const LogMatcher& matcher) {
        std::size_t found = 0;
        for (Captured& captured : lines)
            if (matcher.matches(captured.line)) {
                captured.expected = true;
                ++found;
            }
        return found;
    }

    bool failsTest(const Captured& captured) const {
        return captured.line.level >= lowest && !captured.expected &&
               std::none_of(announced.begin(), announced.end(),
                            [&captured](const LogMatcher& matcher) { return matcher.matches(captured.line); });
    }

    std::string shown() const {
        std::ostringstream out;
        const std::size_t first = lines.size() > mostShown ? lines.size() - mostShown : 0;
        out << "\nthe log" << (first != 0 ? ", newest lines" : "") << (lines.empty() ? " is empty" : ":");
        for (std::size_t i = first; i < lines.size(); ++i)
            out << "\n  " << lines[i].line;
        return out.str();
    }
};

CapturedLog::CapturedLog() : m_state(std::make_shared<State>()) {
    const CapturedLog* none = nullptr;
    if (!s_living.compare_exchange_strong(none, this)) {
        ADD_FAILURE() << "a second captured log gets no lines: one at a time (a BoardTest has one, `log`)";
        return;
    }
    host::log::setCapture([state = m_state](int level, unsigned int feature, std::string_view text) {
        state->add(level, feature, text);
    });
}

CapturedLog::~CapturedLog() {
    if (s_living.load() != this)
        return;
    host::log::setCapture(nullptr);
    s_living = nullptr;
    for (const LogLine& line : unexpected())
        ADD_FAILURE() << "a line that nobody expected was logged: " << line;
}

::testing::AssertionResult CapturedLog::has(const LogMatcher& line) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    if (m_state->markAll(line) != 0)
        return ::testing::AssertionSuccess() << "there is a line: " << line.describe();
    return ::testing::AssertionFailure() << "no line: " << line.describe() << m_state->shown();
}

::testing::AssertionResult CapturedLog::hasInOrder(std::initializer_list<LogMatcher> lines) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    auto at = m_state->lines.begin();
    for (const LogMatcher& wanted : lines) {
        at = std::find_if(at, m_state->lines.end(),
                          [&wanted](const Captured& captured) { return wanted.matches(captured.line); });
        if (at == m_state->lines.end())
            return ::testing::AssertionFailure()
                   << "no line behind the ones before: " << wanted.describe() << m_state->shown();
        at->expected = true;
        ++at;
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult CapturedLog::hasAll(std::initializer_list<LogMatcher> lines) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    std::vector<bool> taken(m_state->lines.size());
    for (const LogMatcher& wanted : lines) {
        std::size_t i = 0;
        while (i < taken.size() && (taken[i] || !wanted.matches(m_state->lines[i].line)))
            ++i;
        if (i == taken.size())
            return ::testing::AssertionFailure() << "no further line: " << wanted.describe() << m_state->shown();
        taken[i] = true;
        m_state->lines[i].expected = true;
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult CapturedLog::hasNot(const LogMatcher& line) const {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    for (const Captured& captured : m_state->lines)
        if (line.matches(captured.line))
            return ::testing::AssertionFailure() << "there is a line: " << captured.line << m_state->shown();
    return ::testing::AssertionSuccess() << "no line: " << line.describe();
}

std::size_t CapturedLog::count(const LogMatcher& line) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    return m_state->markAll(line);
}

::testing::AssertionResult CapturedLog::await(const LogMatcher& line, unsigned limitMs) {
    std::unique_lock<std::mutex> lock(m_state->mutex);
    const bool came =
        m_state->added.wait_for(lock, std::chrono::milliseconds(limitMs), [&] { return m_state->markAll(line) != 0; });
    if (came)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "within " << limitMs << " ms no line: " << line.describe()
                                         << m_state->shown();
}

void CapturedLog::expect(const LogMatcher& line) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    m_state->announced.push_back(line);
}

void CapturedLog::failOnUnexpected(int lowestLevel) {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    m_state->lowest = lowestLevel;
}

std::vector<LogLine> CapturedLog::unexpected() const {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    std::vector<LogLine> found;
    for (const Captured& captured : m_state->lines)
        if (m_state->failsTest(captured))
            found.push_back(captured.line);
    return found;
}

std::vector<LogLine> CapturedLog::lines() const {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    std::vector<LogLine> all;
    for (const Captured& captured : m_state->lines)
        all.push_back(captured.line);
    return all;
}

std::string CapturedLog::newest() {
    const CapturedLog* living = s_living.load();
    if (living == nullptr)
        return {};
    const std::lock_guard<std::mutex> guard(living->m_state->mutex);
    return living->m_state->shown();
}

void CapturedLog::clear() {
    const std::lock_guard<std::mutex> guard(m_state->mutex);
    m_state->lines.clear();
}

} // namespace mox::testkit
