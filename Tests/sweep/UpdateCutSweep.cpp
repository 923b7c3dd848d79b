// Each of the three updates is cut at, or failed by, every single operation of the flash memory. Afterwards the board
// is reset as after a power failure, a service asks whether an update is needed, and makes it.
#include "host/ddal/Flash.hpp"
#include "host/ddal/Reset.hpp"
#include "host/run/Run.hpp"
#include "sweep/Report.hpp"
#include "sweep/RunnerProcess.hpp"
#include "sweep/SweepBoard.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>
#include <testkit/BoardTest.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mox::sweep {
namespace {

using ::testing::ElementsAre;

/// What a component is to a board.
struct Subject {
    const Component* component;
    std::vector<std::string> areas; ///< in the order in which they are written
    /// Version that the device runs.
    std::uint32_t (*active)();
    /// Version that it runs after a reset with this many areas written and the next one broken.
    std::uint32_t (*activeAfterReset)(std::size_t written, std::uint32_t before, std::uint32_t after);
    /// Whether an update is then needed.
    int (*answerAfterReset)(std::size_t written);
    int answerWhenDone;
};

void PrintTo(const Subject& subject, std::ostream* out) {
    *out << subject.component->function;
}

std::uint32_t versionOf(std::uint32_t device) {
    std::uint32_t version = 0;
    EXPECT_EQ(ddal_fpga_get_active_version(device, &version), DDAL_OK);
    return version;
}

std::uint32_t bootVersion() {
    char text[128] = "";
    EXPECT_EQ(ddal_boot_get_uboot_version(sizeof text, text), DDAL_OK);
    return static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
}

class UpdateSweep : public testkit::BoardTest, public ::testing::WithParamInterface<Subject> {
protected:
    const Component& component() const { return *GetParam().component; }
    const std::vector<std::string>& areas() const { return GetParam().areas; }
    static const host::Run& run() { return *host::Run::current(); }
    static void restart() { ASSERT_TRUE(host::resetNode(run(), node())); }

    bool holds(const std::string& area, std::uint32_t version) const {
        const host::Flash flash(run(), node());
        const auto image = flash.image(area);
        if (!image || image->version != version)
            return false;
        if (version == factoryVersion)
            return true;
        std::ifstream file(flash.path(area), std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str() == payloadOf(version);
    }

    /// Right behind the operation that ended the update.
    void expectOneAreaBroken(std::size_t written, std::uint32_t before, std::uint32_t after) const {
        for (std::size_t i = 0; i < areas().size(); ++i) {
            if (i == written)
                EXPECT_FALSE(host::Flash(run(), node()).isWhole(areas()[i])) << areas()[i];
            else
                EXPECT_TRUE(holds(areas()[i], i < written ? after : before)) << areas()[i];
        }
    }

    void expectDone(std::uint32_t version) const {
        for (const std::string& area : areas())
            EXPECT_TRUE(holds(area, version)) << area;
        EXPECT_EQ(GetParam().active(), version);
        EXPECT_FALSE(std::filesystem::exists(component().temporary));
        char path[128] = "";
        EXPECT_EQ(component().ask(imageDirectory, path, sizeof path), GetParam().answerWhenDone);
        EXPECT_EQ(path, imagePath(component()));
    }

    /// What a board does that comes up again: it asks, and updates.
    void recover(std::size_t written, std::uint32_t before, std::uint32_t after) const {
        restart();
        EXPECT_EQ(GetParam().active(), GetParam().activeAfterReset(written, before, after));
        // A half-written secondary slot is not seen by the question: the device runs what it should. It is whole again
        // after the next update, here one that an operator forces.
        EXPECT_THAT(runUpdate(component().name, {"ask", "update"}).results,
                    ElementsAre(GetParam().answerAfterReset(written), 0));
        restart();
        expectDone(after);
    }

    /// Breaks an update at one operation. @return whether the update has that many
    bool breakAt(std::uint64_t operation, const std::string& kind, std::uint32_t before) const {
        const std::uint32_t after = before + 1;
        placeImage(component(), after);
        const RunnerOutcome outcome = runUpdate(component().name, {"update"}, kind + ":" + std::to_string(operation));
        if (!outcome.wasKilled && outcome.results == std::vector<int>{0})
            return false;
        const auto written = static_cast<std::size_t>((operation - 1) / operationsOfAnArea);
        EXPECT_EQ(outcome.wasKilled, kind == "cut");
        if (kind == "fail") {
            EXPECT_THAT(outcome.results, ElementsAre(written == 0 ? -3 : -4));
            EXPECT_FALSE(std::filesystem::exists(component().temporary));
        }
        expectOneAreaBroken(written, before, after);
        recover(written, before, after);
        return true;
    }

    /// @return how many operations there were to break
    std::uint64_t sweepWith(const std::string& kind, std::uint32_t& version) const {
        for (std::uint64_t operation = 1;; ++operation) {
            const ::testing::ScopedTrace trace(__FILE__, __LINE__, kind + " " + std::to_string(operation));
            const bool wasBroken = breakAt(operation, kind, version);
            ++version;
            if (wasBroken && !HasFailure())
                continue;
            restart();
            expectDone(version);
            return operation - 1;
        }
    }
};

TEST_P(UpdateSweep, LeavesTheBoardRightWhateverOperationWasItsLast) {
    std::uint32_t version = factoryVersion;
    const std::uint64_t cuts = sweepWith("cut", version);
    const std::uint64_t failures = sweepWith("fail", version);
    EXPECT_EQ(cuts, areas().size() * operationsOfAnArea);
    EXPECT_EQ(failures, areas().size() * operationsOfAnArea);
    if (!HasFailure())
        report("cut sweep: " + std::string(component().function) + ": " + std::to_string(cuts) + " cuts, " +
               std::to_string(failures) + " failures");
}

const Subject uboot{
    &ubootComponent,
    {host::ubootPrimaryArea},
    &bootVersion,
    [](std::size_t, std::uint32_t, std::uint32_t) { return factoryVersion; }, // started from the backup area
    [](std::size_t) { return 1; },
    1, // forced, and not older
};

const Subject bmu{
    &bmuComponent,
    {host::fpgaArea(DDAL_FPGA_BMU, DDAL_FPGA_SLOT_PRIMARY)},
    [] { return versionOf(DDAL_FPGA_BMU); },
    [](std::size_t, std::uint32_t, std::uint32_t) { return std::uint32_t{0}; }, // it has no second area
    [](std::size_t) { return 1; },
    0,
};

const Subject fpga{
    &fpgaComponent,
    {host::fpgaArea(fpgaId, DDAL_FPGA_SLOT_PRIMARY), host::fpgaArea(fpgaId, DDAL_FPGA_SLOT_SECONDARY)},
    [] { return versionOf(fpgaId); },
    [](std::size_t written, std::uint32_t before, std::uint32_t after) { return written == 0 ? before : after; },
    [](std::size_t written) { return written == 0 ? 1 : 0; },
    0,
};

INSTANTIATE_TEST_SUITE_P(Of, UpdateSweep, ::testing::Values(uboot, bmu, fpga));

const testkit::BoardOf s_board("Of/UpdateSweep", sweepBoard());

} // namespace
} // namespace mox::sweep
