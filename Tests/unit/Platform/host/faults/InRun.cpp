#include "InRun.hpp"

#include "support/TemporaryDirectory.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>

#include <host/board/CreateRun.hpp>

#include <algorithm>
#include <stdexcept>

namespace mox::testing {
namespace {

class StartedInRun : public ::testing::Environment {
public:
    void SetUp() override {
        constexpr const char* text = R"({"nodes": [{"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}},
                                                   {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}}]})";
        std::string why;
        ASSERT_TRUE(host::createRun(runPath(), text, "board.json", why)) << why;
        setenv("MOX_RUN", runPath().c_str(), 1);
        setenv("MOX_NODE", "1011", 1);
        setenv("MOX_SERVICE", "Fan", 1);
        ASSERT_EQ(AaConfigEarlyStartup(), EAaConfigRetVal_NoError);
        ASSERT_EQ(AaStartupEeStartup(), EAaStartupRetVal_NoError);
        ASSERT_EQ(AaSysComEuUserRegister(ownCpid), ownCpid);
    }
    void TearDown() override {
        EXPECT_EQ(AaStartupEeShutdown(), EAaStartupRetVal_NoError);
        m_directory.reset();
    }
    std::string path() const { return *m_directory / "run"; }

private:
    static constexpr std::uint16_t ownCpid = 0x0700;
    std::unique_ptr<TemporaryDirectory> m_directory = std::make_unique<TemporaryDirectory>();
};

StartedInRun& environment() {
    static auto* const added = new StartedInRun; // the framework's
    return *added;
}

const auto* const s_started = ::testing::AddGlobalTestEnvironment(&environment());

} // namespace

const std::string& runPath() {
    static const auto& path = *new std::string(environment().path());
    return path;
}

void InRun::SetUp() {
    std::string why;
    faults = host::faults::Plan::open(runPath(), why);
    ASSERT_NE(faults, nullptr) << why;
}

void InRun::TearDown() {
    if (faults)
        faults->clearAll();
}

std::uint32_t InRun::plan(const host::faults::Rule& rule) {
    std::string why;
    const auto id = faults->add(rule, why);
    if (!id)
        throw std::runtime_error(why);
    return *id;
}

host::faults::PlannedFault InRun::fault(std::uint32_t id) const {
    for (const host::faults::PlannedFault& planned : faults->list())
        if (planned.id == id)
            return planned;
    throw std::runtime_error("no fault " + std::to_string(id));
}

host::faults::Rule answering(const std::string& function, std::int64_t result) {
    host::faults::Rule rule;
    rule.function = function;
    rule.result = static_cast<std::uint64_t>(result);
    return rule;
}

host::faults::Rule with(host::faults::Action action, const std::string& function) {
    host::faults::Rule rule = answering(function, 0);
    rule.action = action;
    return rule;
}

} // namespace mox::testing
