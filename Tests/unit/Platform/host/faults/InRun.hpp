#pragma once
/// The tests of this executable run in a process of node 0x1011 of a run, as the service "Fan", with the platform
/// started; each begins without faults.
#include <gtest/gtest.h>
#include <host/faults/Plan.hpp>

#include <memory>
#include <string>

namespace mox::testing {

/// Directory of the run.
const std::string& runPath();

class InRun : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Plans a fault. @return its id
    std::uint32_t plan(const host::faults::Rule& rule);
    /// The fault as the run knows it.
    host::faults::PlannedFault fault(std::uint32_t id) const;

    std::unique_ptr<host::faults::Plan> faults;
};

/// A rule by which all calls of a function answer a number.
host::faults::Rule answering(const std::string& function, std::int64_t result);

/// The same with another action and no result.
host::faults::Rule with(host::faults::Action action, const std::string& function);

} // namespace mox::testing
