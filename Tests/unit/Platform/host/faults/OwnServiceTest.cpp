#include <gtest/gtest.h>
#include <host/faults/Faults.hpp>

#include <cerrno>
#include <cstdlib>
#include <ostream>

namespace mox::host::faults {
namespace {

struct ServiceRow {
    const char* variable; ///< MOX_SERVICE; null: not set
    const char* program;
    const char* service;
};

void PrintTo(const ServiceRow& row, std::ostream* stream) {
    *stream << row.program << " " << (row.variable == nullptr ? "" : row.variable);
}

class OwnService : public ::testing::TestWithParam<ServiceRow> {
protected:
    ~OwnService() override { program_invocation_short_name = m_program; }

private:
    char* m_program = program_invocation_short_name;
};

TEST_P(OwnService, IsToldOrTakenFromTheProgram) {
    const ServiceRow& row = GetParam();
    unsetenv("MOX_SERVICE");
    if (row.variable != nullptr)
        setenv("MOX_SERVICE", row.variable, 1);
    std::string program = row.program;
    program_invocation_short_name = program.data();
    EXPECT_EQ(ownService(), row.service);
}

INSTANTIATE_TEST_SUITE_P(Faults, OwnService,
                         ::testing::Values(ServiceRow{nullptr, "MOXFanExe", "Fan"}, ServiceRow{"", "MOXFanExe", "Fan"},
                                           ServiceRow{"Left", "MOXFanExe", "Left"},
                                           ServiceRow{nullptr, "MOXExe", "MOXExe"}, ServiceRow{nullptr, "fan", "fan"},
                                           ServiceRow{nullptr, "MOXFan", "MOXFan"},
                                           ServiceRow{nullptr, "FanExe", "FanExe"}));

} // namespace
} // namespace mox::host::faults
