// The tests of this executable run in a started execution environment of a process that belongs to no run.
#include "EuFixture.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class Started : public testing::Environment {
    void SetUp() override {
        unsetenv("MOX_RUN");
        ASSERT_EQ(AaConfigEarlyStartup(), EAaConfigRetVal_NoError);
        ASSERT_EQ(AaStartupEeStartup(), EAaStartupRetVal_NoError);
    }
    void TearDown() override { EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NoError); }
};

const auto* const s_started = testing::AddGlobalTestEnvironment(new Started);

} // namespace

std::uint16_t mox::testing::expectedOwnNode() {
    return 0;
}
