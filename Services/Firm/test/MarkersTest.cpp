// The files by which an operator switches updates off, or forces them.
#include "Fixture.hpp"

#include <testkit/Board.hpp>

#include <filesystem>

using namespace mox::firm;
using namespace mox::testkit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

namespace {

class AFirmwareMarker : public FirmTest {
protected:
    static std::string marker(const std::string& name) { return std::string(markerDirectory) + "/" + name; }

    ChildService firm{"Firm", stateParameter};
    const std::string forceFpga = marker("force-firmware-update-kor-fpga");
};
const BoardOf s_pair("AFirmwareMarker", Board::named("firm-pair"));

} // namespace

TEST_F(AFirmwareMarker, SwitchesUpdatesOffForEveryBoard) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    writeFile(marker("disable-firmware-update"), "");
    const auto before = areas();
    const UpdateRun run = update(Component::fpga);
    EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::done));
    EXPECT_THAT(run.answer, answers(State::disabled, 0));
    EXPECT_THAT(check(Component::fpga), answers(State::disabled, 0));
    EXPECT_EQ(areas(), before);
}

TEST_F(AFirmwareMarker, SwitchesUpdatesOffForItsTypeOfBoardOnly) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    writeFile(marker("disable-firmware-update-vel"), "");
    EXPECT_EQ(check(Component::fpga).state, State::needed);
    writeFile(marker("disable-firmware-update-kor"), "");
    EXPECT_EQ(check(Component::fpga).state, State::disabled);
}

TEST_F(AFirmwareMarker, LetsUpdatesHappenAgainWhenItIsGone) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    writeFile(marker("disable-firmware-update"), "");
    EXPECT_EQ(update(Component::fpga).answer.state, State::disabled);
    std::filesystem::remove(marker("disable-firmware-update"));
    EXPECT_EQ(update(Component::fpga).answer.state, State::updated);
}

TEST_F(AFirmwareMarker, ForcesAsManyUpdatesAsItSays) {
    const std::string path = put(image("10"), "KOR-TIRVO2-QE-10.bin");
    writeFile(forceFpga, "2");
    for (const char* left : {"1", "0"}) {
        const UpdateRun run = update(Component::fpga);
        EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::flashing, Step::done));
        EXPECT_THAT(run.answer, answers(State::updated, 0, path));
        EXPECT_EQ(run.answer.forced, 1U);
        EXPECT_THAT(contentOf(forceFpga), Optional(std::string(left)));
    }
    EXPECT_THAT(update(Component::fpga).answer, answers(State::notNeeded, 0, path));
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("0")));
    EXPECT_THAT(area("fpga-10001-2"), Optional(std::string(flashed)));
    EXPECT_TRUE(
        firm.awaitOutput(HasSubstr(": updated, result 0, forced, file '/ffs/run/boot/KOR-TIRVO2-QE-10.bin'"), limitMs));
}

TEST_F(AFirmwareMarker, ForcesAnOlderBmuImage) {
    put(image("6"), "KOR-BMU-6.bin");
    writeFile(marker("force-firmware-update-kor-bmu"), "1");
    EXPECT_EQ(update(Component::bmu).answer.state, State::updated);
    EXPECT_THAT(area("fpga-1-1"), Optional(std::string(flashed)));
}

TEST_F(AFirmwareMarker, ForcesABootLoaderThatWasNotStartedFromRam) {
    const std::string path = put(image("20160116"), "KOR-RN-QE.bin");
    writeFile(marker("force-firmware-update-kor-uboot"), "1");
    EXPECT_THAT(update(Component::uboot).answer, answers(State::updated, 0, path));
    EXPECT_THAT(area("uboot-primary"), Optional(std::string(flashed)));
}

TEST_F(AFirmwareMarker, ForcesNoOlderBootLoader) {
    put(image("20160114"), "KOR-RN-QE.bin");
    writeFile(marker("force-firmware-update-kor-uboot"), "1");
    const auto before = areas();
    EXPECT_EQ(update(Component::uboot).answer.state, State::notNeeded);
    EXPECT_EQ(areas(), before);
    EXPECT_THAT(contentOf(marker("force-firmware-update-kor-uboot")), Optional(std::string("0")));
}

TEST_F(AFirmwareMarker, IsUsedUpByABootLoaderWithoutImage) {
    writeFile(marker("force-firmware-update-kor-uboot"), "2");
    EXPECT_THAT(update(Component::uboot).answer, answers(State::checkFailed, -7));
    EXPECT_THAT(contentOf(marker("force-firmware-update-kor-uboot")), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, IsNotUsedUpByACheck) {
    put(image("10"), "KOR-TIRVO2-QE-10.bin");
    writeFile(forceFpga, "1");
    EXPECT_EQ(check(Component::fpga).state, State::notNeeded);
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, IsNotUsedUpByAnUpdateThatHappensAnyway) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    writeFile(forceFpga, "1");
    const Answer answer = update(Component::fpga).answer;
    EXPECT_EQ(answer.state, State::updated);
    EXPECT_EQ(answer.forced, 0U);
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, IsNotUsedUpWithoutAnImage) {
    writeFile(forceFpga, "1");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::checkFailed, -7));
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, IsNotUsedUpByARequestThatForces) {
    put(image("10"), "KOR-TIRVO2-QE-10.bin");
    writeFile(forceFpga, "1");
    EXPECT_EQ(update(Component::fpga, flag::force).answer.state, State::updated);
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, DoesNotForceWhatIsSwitchedOff) {
    put(image("10"), "KOR-TIRVO2-QE-10.bin");
    writeFile(forceFpga, "1");
    writeFile(marker("disable-firmware-update-kor"), "");
    EXPECT_EQ(update(Component::fpga, flag::force).answer.state, State::disabled);
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("1")));
}

TEST_F(AFirmwareMarker, ForcesNothingWithATextThatIsNoNumber) {
    put(image("10"), "KOR-TIRVO2-QE-10.bin");
    writeFile(forceFpga, "always");
    EXPECT_EQ(update(Component::fpga).answer.state, State::notNeeded);
    EXPECT_THAT(contentOf(forceFpga), Optional(std::string("always")));
}
