// What the service answers when it is asked whether an update is needed.
#include "Fixture.hpp"

#include <testkit/Board.hpp>

using namespace mox::firm;
using namespace mox::testkit;

namespace {

class AFirmwareCheck : public FirmTest {
protected:
    ChildService firm{"Firm", stateParameter};
};
const BoardOf s_pair("AFirmwareCheck", Board::named("firm-pair"));

std::string boardWith(const std::string& unitAndDevices) {
    return R"({"name": "one", "nodes": [{"id": "0x1011", )" + unitAndDevices + "}]}";
}

class AFirmwareCheckWithoutFpga : public AFirmwareCheck {};
const BoardOf s_zup("AFirmwareCheckWithoutFpga", Board::named("zupa"));

class AFirmwareCheckWithoutDevices : public AFirmwareCheck {};
const BoardOf s_bare("AFirmwareCheckWithoutDevices",
                     Board::text(boardWith(R"("unit": {"id": "KORA", "hwSwId": "0x00500000"},
                       "devices": {"flash": [{"id": 53, "path": "/ffs/fs1", "mode": "rw"}]})")));

class AFirmwareCheckOfABoardStartedFromRam : public AFirmwareCheck {};
const BoardOf s_ram("AFirmwareCheckOfABoardStartedFromRam",
                    Board::text(boardWith(R"("unit": {"id": "KORA", "hwSwId": "0x00500000"},
                      "devices": {"boot": {"location": "ram", "version": "20160115"},
                                  "flash": [{"id": 53, "path": "/ffs/fs1", "mode": "rw"}]})")));

class AFirmwareCheckElsewhere : public FirmTest {};
const BoardOf s_elsewhere("AFirmwareCheckElsewhere", Board::named("firm-pair"));

} // namespace

TEST_F(AFirmwareCheck, FindsNoImage) {
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
    EXPECT_THAT(check(Component::bmu), answers(State::checkFailed, -7));
}

TEST_F(AFirmwareCheck, NamesANewerImage) {
    const std::string path = put(image(), "KOR-TIRVO2-QE-11.bin");
    const Answer answer = check(Component::fpga);
    EXPECT_THAT(answer, answers(State::needed, 1, path));
    EXPECT_EQ(answer.forced, 0U);
}

TEST_F(AFirmwareCheck, ChangesNothing) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    const auto before = areas();
    check(Component::fpga);
    EXPECT_EQ(areas(), before);
    EXPECT_THAT(check(Component::fpga).state, State::needed);
}

TEST_F(AFirmwareCheck, NeedsNoFpgaImageOfTheActiveVersion) {
    const std::string path = put(image("10"), "KOR-TIRVO2-QE.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::notNeeded, 0, path));
}

TEST_F(AFirmwareCheck, FollowsAnOlderFpgaImage) {
    const std::string path = put(image("9"), "KOR-TIRVO2-QE.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::needed, 1, path));
}

TEST_F(AFirmwareCheck, TakesANewerBmuImageOnly) {
    for (const auto& [version, state] :
         {std::pair("6", State::notNeeded), {"7", State::notNeeded}, {"8", State::needed}}) {
        const std::string path = put(image(version), "KOR-BMU.bin");
        EXPECT_THAT(check(Component::bmu), answers(state, state == State::needed ? 1 : 0, path)) << version;
    }
}

TEST_F(AFirmwareCheck, LeavesABootLoaderThatWasNotStartedFromRam) {
    put(image(), "KOR-RN-QE.bin");
    EXPECT_THAT(check(Component::uboot), answers(State::notNeeded, 0));
}

TEST_F(AFirmwareCheck, SeesAForcedBootLoaderAsNeeded) {
    const std::string path = put(image("20160115"), "KOR-RN-QE.bin");
    const Answer answer = check(Component::uboot, flag::force);
    EXPECT_THAT(answer, answers(State::needed, 1, path));
    EXPECT_EQ(answer.forced, 1U);
}

TEST_F(AFirmwareCheck, DoesNotForceAnOlderBootLoader) {
    const std::string path = put(image("20160114"), "KOR-RN-QE.bin");
    const Answer answer = check(Component::uboot, flag::force);
    EXPECT_THAT(answer, answers(State::notNeeded, 0, path));
    EXPECT_EQ(answer.forced, 0U);
}

TEST_F(AFirmwareCheck, SeesAForcedFpgaAsNeededWithoutCallingForcedWhatIsNeededAnyway) {
    put(image("10"), "KOR-TIRVO2-QE.bin");
    EXPECT_EQ(check(Component::fpga, flag::force).forced, 1U);
    put(image("11"), "KOR-TIRVO2-QE.bin");
    EXPECT_EQ(check(Component::fpga, flag::force).forced, 0U);
}

TEST_F(AFirmwareCheck, PassesOverTheImageOfAnotherBoard) {
    put(image().listing({0x00B00000, 0x00600000}), "KOR-TIRVO2-QE-wrong.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
    const std::string path = put(image(), "KOR-TIRVO2-QE-right.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::needed, 1, path));
}

TEST_F(AFirmwareCheck, TakesAnIdentifierWithAMinorDifferenceForTheFpgaButNotForTheBmu) {
    const auto almost = image().listing({0x0050000F});
    const std::string path = put(almost, "KOR-TIRVO2-QE.bin");
    put(almost, "KOR-BMU.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::needed, 1, path));
    EXPECT_THAT(check(Component::bmu), answers(State::checkFailed, -7));
}

TEST_F(AFirmwareCheck, DoesNotChooseBetweenTwoImages) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    put(image(), "KOR-TIRVO2-QE-12.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -8));
}

TEST_F(AFirmwareCheck, LooksIntoNoneOfElevenImages) {
    for (int i = 0; i < 11; ++i) {
        put(image(), "KOR-TIRVO2-QE-" + std::to_string(i) + ".bin");
    }
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -5));
}

TEST_F(AFirmwareCheck, TakesAnImageWithoutBoardTypeWhereThereIsNoOther) {
    const std::string path = put(image(), "TIRVO2-QE.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::needed, 1, path));
}

TEST_F(AFirmwareCheck, SurvivesImagesThatAreNone) {
    writeFile(std::string(imageDirectory) + "/KOR-TIRVO2-QE.bin", "");
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
    writeFile(std::string(imageDirectory) + "/KOR-TIRVO2-QE.bin", std::string(4096, '<'));
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
    EXPECT_TRUE(firm.isRunning());
}

TEST_F(AFirmwareCheckWithoutFpga, HasNothingToUpdate) {
    put(image(), "ZUP-TIRVO2-QE.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -10));
}

TEST_F(AFirmwareCheckWithoutDevices, CannotReadTheActiveVersions) {
    put(image(), "KOR-TIRVO2-QE.bin");
    put(image(), "KOR-BMU.bin");
    EXPECT_EQ(check(Component::fpga).result, -9);
    EXPECT_EQ(check(Component::bmu).result, -9);
    EXPECT_THAT(check(Component::uboot), answers(State::checkFailed, -10));
}

TEST_F(AFirmwareCheckOfABoardStartedFromRam, NeedsABootLoaderThatIsNotOlder) {
    for (const auto& [version, state] :
         {std::pair("20160114", State::notNeeded), {"20160115", State::needed}, {"20160116", State::needed}}) {
        const std::string path = put(image(version), "KOR-RN-QE.bin");
        EXPECT_THAT(check(Component::uboot), answers(state, state == State::needed ? 1 : 0, path)) << version;
    }
}

TEST_F(AFirmwareCheckElsewhere, LooksIntoTheDirectoryOfTheOption) {
    ChildService firm("Firm", stateParameter, {"--directory=/ram"});
    put(image(), "KOR-TIRVO2-QE-here-it-is-not.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
    image().writeTo("/ram/KOR-TIRVO2-QE.bin");
    EXPECT_THAT(check(Component::fpga), answers(State::needed, 1, "/ram/KOR-TIRVO2-QE.bin"));
}

TEST_F(AFirmwareCheckElsewhere, CannotReadADirectoryThatIsNotThere) {
    ChildService firm("Firm", stateParameter, {"--directory=/ffs/run/nowhere"});
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -4));
}
