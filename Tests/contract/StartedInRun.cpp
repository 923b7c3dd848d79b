// The tests of this executable run in a started execution environment of a process of a run.
#include "EuFixture.hpp"
#include "scenario/bus/TestRun.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

class StartedInRun : public testing::Environment {
    void SetUp() override {
        m_run = std::make_unique<mox::testing::TestRun>();
        setenv("MOX_RUN", m_run->path().c_str(), 1);
        setenv("MOX_NODE", "1011", 1);
        ASSERT_EQ(AaConfigEarlyStartup(), EAaConfigRetVal_NoError);
        ASSERT_EQ(AaStartupEeStartup(), EAaStartupRetVal_NoError);
    }
    void TearDown() override {
        EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NoError);
        EXPECT_TRUE(m_run->sockets().empty());
        m_run.reset();
    }

    std::unique_ptr<mox::testing::TestRun> m_run;
};

const auto* const s_started = testing::AddGlobalTestEnvironment(new StartedInRun);

} // namespace

std::uint16_t mox::testing::expectedOwnNode() {
    return mox::testing::firstNode;
}
