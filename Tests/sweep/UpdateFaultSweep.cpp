// Each call that the updates, and the questions before them, make of the platform fails in turn: each has a result that
// callers know it by, nothing stays open, and the next attempt goes well.
#include "mock/Faults.hpp"
#include "mock/Ledger.hpp"
#include "sweep/Report.hpp"
#include "sweep/SweepBoard.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>
#include <pal/AaConfig.h>
#include <testkit/BoardTest.hpp>

#include <filesystem>
#include <map>

namespace mox::sweep {
namespace {

/// Results by the function that failed: of its first call, its second call, ...
using Results = std::map<std::string, std::vector<int>>;

struct Subject {
    const Component* component;
    int resultOfQuestion; ///< when nothing fails
    Results question;
    Results update;
};

void PrintTo(const Subject& subject, std::ostream* out) {
    *out << subject.component->function;
}

class UpdateFaults : public testkit::BoardTest, public ::testing::WithParamInterface<Subject> {
protected:
    UpdateFaults() {
        AaConfigEarlyStartup();
        placeImage(component(), factoryVersion + 1);
    }

    static const Component& component() { return *GetParam().component; }

    static int ask() {
        char path[128] = "";
        return component().ask(imageDirectory, path, sizeof path);
    }
    static int update() { return component().update(imagePath(component()).c_str()); }

    /// The unit's texts are read anew in each round, as in a process that has just begun.
    static void forgetUnit() {
        const mock::Fault fault = mock::fail("ddal_devicetree_get_unit_id").with(DDAL_IO_ERROR);
        ASSERT_EQ(unit_init(), -1);
    }

    static std::ptrdiff_t openDescriptors() {
        std::filesystem::directory_iterator open("/proc/self/fd");
        return std::distance(begin(open), end(open));
    }

    /// Fails the n-th call. @return whether there was one
    bool failCall(std::uint64_t n, int (*scenario)(), const Results& expected,
                  std::map<std::string, std::size_t>& seen) {
        forgetUnit();
        const auto descriptors = openDescriptors();
        const mock::Mark mark = mock::ledger().mark();
        mock::Fault fault = mock::failAny(n);
        const int result = scenario();
        const std::string failed = fault.lastFailed();
        fault.cancel();
        if (failed.empty())
            return false;
        const std::size_t nth = seen[failed]++;
        const auto row = expected.find(failed);
        if (row == expected.end() || nth >= row->second.size())
            ADD_FAILURE() << "no result is known for call " << nth + 1 << " of " << failed;
        else
            EXPECT_EQ(result, row->second[nth]) << "call " << nth + 1 << " of " << failed;
        EXPECT_TRUE(mock::ledger().open(mark).empty());
        EXPECT_EQ(openDescriptors(), descriptors);
        EXPECT_FALSE(std::filesystem::exists(component().temporary));
        return true;
    }

    /// @return how many calls there were to fail
    std::uint64_t sweep(int (*scenario)(), int resultOfSuccess, const Results& expected) {
        std::map<std::string, std::size_t> seen;
        EXPECT_EQ(scenario(), resultOfSuccess); // what is opened once and kept is open then
        for (std::uint64_t n = 1;; ++n) {
            if (failCall(n, scenario, expected, seen) && !HasFailure())
                continue;
            EXPECT_EQ(scenario(), resultOfSuccess);
            for (const auto& [function, results] : expected)
                EXPECT_EQ(seen[function], results.size()) << function;
            return n - 1;
        }
    }
};

TEST_P(UpdateFaults, HaveTheirOwnResultsAndLeaveNothingOpen) {
    const std::uint64_t calls =
        sweep(&ask, GetParam().resultOfQuestion, GetParam().question) + sweep(&update, 0, GetParam().update);
    if (!HasFailure())
        report("fault sweep: " + std::string(component().function) + ": " + std::to_string(calls) +
               " calls of the platform");
}

// A unit whose identifier cannot be read is asked for again, by the question for its type and by that for its images.
const Subject subjects[] = {
    {&ubootComponent,
     1,
     {{"ddal_boot_get_uboot_id", {-10}},
      {"ddal_devicetree_get_unit_id", {-1}},
      {"ddal_devicetree_get_hw_sw_id", {-6}},
      {"AaGpuXmlParse", {-7}},
      {"ddal_boot_get_uboot_version", {-9}}},
     {{"AaConfigTagGetU32", {0}}, {"AaGpuXmlParse", {-1}}, {"ddal_boot_update_uboot", {-3}}}},
    {&bmuComponent,
     1,
     {{"ddal_devicetree_get_unit_id", {1, -1}},
      {"ddal_devicetree_get_hw_sw_id", {-6}},
      {"AaGpuXmlParse", {-7}},
      {"ddal_fpga_get_active_version", {-9}}},
     {{"AaConfigTagGetU32", {0}}, {"AaGpuXmlParse", {-1}}, {"ddal_fpga_update_mod", {-3}}}},
    {&fpgaComponent,
     1,
     {{"ddal_devicetree_get_unit_id", {1, -1}},
      {"ddal_devicetree_get_hw_sw_id", {-6}},
      {"AaGpuXmlParse", {-7}},
      {"ddal_fpga_get_active_version", {-9}}},
     {{"ddal_devicetree_get_unit_id", {0}},
      {"AaConfigTagGetU32", {0}},
      {"AaGpuXmlParse", {-1}},
      {"ddal_fpga_update_mod", {-3, -4}}}},
};

INSTANTIATE_TEST_SUITE_P(Of, UpdateFaults, ::testing::ValuesIn(subjects));

const testkit::BoardOf s_board("Of/UpdateFaults", sweepBoard());

} // namespace
} // namespace mox::sweep
