// Part of every test that links the doubles: a test that ends with something open fails.
#include "mock/Faults.hpp"
#include "mock/Ledger.hpp"

#include <gtest/gtest.h>

namespace mox::mock {
namespace {

/// How long an execution unit that was told to end may take to do so.
constexpr unsigned executionUnitEndMs = 10'000;

class LedgerListener : public ::testing::EmptyTestEventListener {
public:
    void OnTestStart(const ::testing::TestInfo&) override { m_start = ledger().mark(); }

    void OnTestEnd(const ::testing::TestInfo&) override {
        clearFaults();
        ledger().settle();
        ledger().awaitExecutionUnits(m_start, executionUnitEndMs);
        for (const OpenItem& item : ledger().open(m_start))
            ADD_FAILURE() << "left open at the end of the test: " << item.text();
        ledger().forgive(m_start);
    }

private:
    Mark m_start;
};

const bool s_listens = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new LedgerListener);
    return true;
}();

} // namespace
} // namespace mox::mock
