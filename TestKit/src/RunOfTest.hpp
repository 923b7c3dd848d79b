#pragma once
/// A run that exists for one test.
#include <testkit/Board.hpp>

#include <cstdint>
#include <string>

namespace mox::testkit {

class RunOfTest {
public:
    /// Makes a run in a new directory below TMPDIR, and removes those that killed processes have left there.
    /// @param[out] why  one line for a person; empty when the run exists
    RunOfTest(const Board& board, std::string& why);
    /// Removes it.
    ~RunOfTest();
    RunOfTest(const RunOfTest&) = delete;
    RunOfTest& operator=(const RunOfTest&) = delete;

    std::string path() const { return m_top + "/run"; }
    std::uint16_t node() const { return m_node; }

private:
    std::string m_top;
    int m_lock = -1; ///< held as long as the run is in use
    std::uint16_t m_node = 0;
};

} // namespace mox::testkit
