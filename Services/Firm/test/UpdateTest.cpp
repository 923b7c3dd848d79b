// Updates by message, down to the bytes in the flash memory.
#include "Fixture.hpp"

#include <pal/AaSysCom.h>
#include <testkit/Board.hpp>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>

using namespace mox::firm;
using namespace mox::testkit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

namespace {

// An image of one block takes three operations of the flash memory: erase, program, note that it is whole.
constexpr const char* flashPlan = "MOX_FLASH_PLAN";
constexpr const char* firstOperationFails = "fail:1";
constexpr const char* fourthOperationFails = "fail:4";
constexpr const char* powerGoesAtTheFifth = "cut:5";

class AnUpdate : public FirmTest {
protected:
    ChildService firm{"Firm", stateParameter};
    const std::map<std::string, std::string> before = areas();
};
const BoardOf s_pair("AnUpdate", Board::named("firm-pair"));

class AnUpdateOfTheOtherBoard : public AnUpdate {};
const BoardOf s_other("AnUpdateOfTheOtherBoard", Board::named("firm-pair").at(0x1021));

class AnUpdateOfABoardStartedFromRam : public AnUpdate {};
const BoardOf s_ram("AnUpdateOfABoardStartedFromRam", Board::text(R"({"name": "ram", "nodes": [{"id": "0x1011",
    "unit": {"id": "KORA", "hwSwId": "0x00500000"},
    "devices": {"boot": {"location": "ram", "version": "9"},
                "flash": [{"id": 53, "path": "/ffs/fs1", "mode": "rw"}]}}]})"));

class AnUpdateOnBrokenFlash : public FirmTest {
protected:
    static ChildService firmWith(const char* plan) {
        return ChildService(ChildRequest{"Firm", stateParameter, {}, 0, limitMs, {{flashPlan, plan}}});
    }
};
const BoardOf s_broken("AnUpdateOnBrokenFlash", Board::named("firm-pair"));

} // namespace

TEST_F(AnUpdate, WritesBothSlotsOfTheFpgaAndTellsEachStep) {
    const std::string path = put(image(), "KOR-TIRVO2-QE-11.bin");
    const UpdateRun run = update(Component::fpga);
    EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::flashing, Step::done));
    EXPECT_THAT(run.answer, answers(State::updated, 0, path));
    EXPECT_THAT(area("fpga-10001-1"), Optional(std::string(flashed)));
    EXPECT_THAT(area("fpga-10001-2"), Optional(std::string(flashed)));
}

TEST_F(AnUpdate, LeavesNoTemporaryFile) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    update(Component::fpga);
    EXPECT_FALSE(std::filesystem::exists("/tmp/fpgafile"));
}

TEST_F(AnUpdate, LogsWhatItDoes) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    update(Component::fpga);
    for (const char* text :
         {"fpga update 3237998081 of 0x", ": asked", ": checking", "is_fpga_update_needed(): yes", ": flashing",
          "update_fpga(): tirvo2 primary slot update is ok", "update_fpga(): tirvo2 secondary slot update is ok",
          ": done", ": updated, result 0, file '/ffs/run/boot/KOR-TIRVO2-QE-11.bin'"}) {
        EXPECT_TRUE(firm.awaitOutput(HasSubstr(text), limitMs));
    }
}

TEST_F(AnUpdate, WritesLargeImages) {
    const std::string large(3'000'001, 'x');
    put(image().payload(large), "KOR-TIRVO2-QE-11.bin");
    EXPECT_EQ(update(Component::fpga).answer.state, State::updated);
    EXPECT_TRUE(area("fpga-10001-1") == large);
    EXPECT_TRUE(area("fpga-10001-2") == large);
}

TEST_F(AnUpdate, WritesTheOneSlotOfTheBmu) {
    const std::string path = put(image(), "KOR-BMU-11.bin");
    EXPECT_THAT(update(Component::bmu).answer, answers(State::updated, 0, path));
    auto expected = before;
    expected["fpga-1-1"] = flashed;
    EXPECT_EQ(areas(), expected);
}

TEST_F(AnUpdate, FlashesNothingThatIsNotNeeded) {
    const std::string path = put(image("10"), "KOR-TIRVO2-QE-10.bin");
    const UpdateRun run = update(Component::fpga);
    EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::done));
    EXPECT_THAT(run.answer, answers(State::notNeeded, 0, path));
    EXPECT_EQ(areas(), before);
}

TEST_F(AnUpdate, FollowsAnOlderFpgaImageButNoOlderBmuImage) {
    put(image("6"), "KOR-TIRVO2-QE-6.bin");
    put(image("6"), "KOR-BMU-6.bin");
    EXPECT_EQ(update(Component::fpga).answer.state, State::updated);
    EXPECT_EQ(update(Component::bmu).answer.state, State::notNeeded);
    EXPECT_THAT(area("fpga-10001-1"), Optional(std::string(flashed)));
    EXPECT_EQ(area("fpga-1-1"), before.at("fpga-1-1"));
}

TEST_F(AnUpdate, FlashesNoDamagedImage) {
    const std::string path = put(image().crc(1), "KOR-TIRVO2-QE-11.bin");
    const UpdateRun run = update(Component::fpga);
    EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::flashing, Step::done));
    EXPECT_THAT(run.answer, answers(State::updateFailed, -1, path));
    EXPECT_EQ(areas(), before);
    EXPECT_TRUE(firm.awaitOutput(HasSubstr("update_fpga(): binary_crc() failed 70413"), limitMs));
}

TEST_F(AnUpdate, FlashesNoImageOfAnotherBoard) {
    put(image().listing({0x00B00000}), "KOR-TIRVO2-QE-11.bin");
    const UpdateRun run = update(Component::fpga);
    EXPECT_THAT(run.steps, ElementsAre(Step::asked, Step::checking, Step::done));
    EXPECT_THAT(run.answer, answers(State::checkFailed, -7));
    EXPECT_EQ(areas(), before);
}

TEST_F(AnUpdate, FlashesNeitherOfTwoImages) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    put(image(), "KOR-TIRVO2-QE-12.bin");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::checkFailed, -8));
    EXPECT_EQ(areas(), before);
}

TEST_F(AnUpdate, CannotCopyThePayloadWhereALinkTakesItsPlace) {
    const std::string path = put(image(), "KOR-TIRVO2-QE-11.bin");
    std::filesystem::create_symlink("/ffs/run/logs/elsewhere", "/tmp/fpgafile");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::updateFailed, -2, path));
    EXPECT_FALSE(std::filesystem::exists("/ffs/run/logs/elsewhere"));
}

TEST_F(AnUpdate, IsServedAfterThoseThatCameBefore) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    put(image(), "KOR-BMU-11.bin");
    Messages client;
    client.send(service(), updateRequest, bytesOf(Request{1, Component::fpga, 0}));
    client.send(service(), updateRequest, bytesOf(Request{2, Component::bmu, 0}));
    for (const std::uint32_t expected : {1U, 2U}) {
        for (const Step step : {Step::asked, Step::checking, Step::flashing, Step::done}) {
            const auto progress = recordOf<Progress>(client.await(progressIndication, limitMs));
            EXPECT_EQ(progress.ticket, expected);
            EXPECT_EQ(progress.step, step);
        }
        EXPECT_EQ(recordOf<Answer>(client.await(updateResponse, limitMs)).ticket, expected);
    }
}

TEST_F(AnUpdate, IsFinishedThoughItsRequesterHasGone) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    const Messages starter;
    const std::uint32_t nobody = AaSysComSicadGet(0x0777, node());
    void* const msg = AaSysComMsgCreate(updateRequest, Request::size, service());
    mox::kit::PayloadWriter payload = mox::kit::PayloadWriter::of(msg, mox::kit::ByteOrder::little);
    Request{1, Component::fpga, 0}.write(payload);
    ASSERT_EQ(AaSysComMsgSendS(msg, nobody), EAaSysComRetVal_NoError);
    EXPECT_TRUE(firm.awaitOutput(HasSubstr("message 0x0624 does not reach 0x10110777"), limitMs));
    EXPECT_THAT(area("fpga-10001-2"), Optional(std::string(flashed)));
    EXPECT_TRUE(firm.isRunning());
}

TEST_F(AnUpdateOfTheOtherBoard, WritesItsOwnFpga) {
    put(image(), "VEL-YM4-QE-not-for-this-one.bin");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::checkFailed, -7));
    const std::string path = put(image().listing({0x00B00000}), "VEL-YM4-QE-11.bin");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::updated, 0, path));
    EXPECT_THAT(area("fpga-70001-1"), Optional(std::string(flashed)));
    EXPECT_THAT(area("fpga-70001-2"), Optional(std::string(flashed)));
}

TEST_F(AnUpdateOfABoardStartedFromRam, WritesTheBootLoader) {
    const std::string path = put(image(), "KOR-RN-QE-11.bin");
    EXPECT_THAT(update(Component::uboot).answer, answers(State::updated, 0, path));
    EXPECT_THAT(area("uboot-primary"), Optional(std::string(flashed)));
    EXPECT_FALSE(std::filesystem::exists("/tmp/u-boot.uim"));
}

TEST_F(AnUpdateOnBrokenFlash, LeavesTheSecondarySlotWhenThePrimaryOneFails) {
    const auto firm = firmWith(firstOperationFails);
    const std::string path = put(image(), "KOR-TIRVO2-QE-11.bin");
    const auto secondary = area("fpga-10001-2");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::updateFailed, -3, path));
    EXPECT_EQ(area("fpga-10001-2"), secondary);
    EXPECT_FALSE(std::filesystem::exists("/tmp/fpgafile"));
}

TEST_F(AnUpdateOnBrokenFlash, SaysThatThePrimarySlotIsNewWhenTheSecondaryOneFails) {
    auto firm = firmWith(fourthOperationFails);
    const std::string path = put(image(), "KOR-TIRVO2-QE-11.bin");
    EXPECT_THAT(update(Component::fpga).answer, answers(State::partlyUpdated, -4, path));
    EXPECT_THAT(area("fpga-10001-1"), Optional(std::string(flashed)));
    EXPECT_NE(area("fpga-10001-2"), flashed);
    EXPECT_TRUE(firm.awaitOutput(HasSubstr(": partly updated, result -4"), limitMs));
}

TEST_F(AnUpdateOnBrokenFlash, SucceedsWhenItIsAskedAgain) {
    const auto firm = firmWith(fourthOperationFails);
    put(image(), "KOR-TIRVO2-QE-11.bin");
    update(Component::fpga);
    EXPECT_EQ(update(Component::fpga).answer.state, State::updated);
    EXPECT_THAT(area("fpga-10001-2"), Optional(std::string(flashed)));
}

TEST_F(AnUpdateOnBrokenFlash, SucceedsAfterThePowerWasLostInTheMiddle) {
    put(image(), "KOR-TIRVO2-QE-11.bin");
    {
        auto firm = firmWith(powerGoesAtTheFifth);
        Messages client;
        client.send(service(), updateRequest, bytesOf(Request{1, Component::fpga, 0}));
        for (const Step step : {Step::asked, Step::checking, Step::flashing}) {
            EXPECT_EQ(recordOf<Progress>(client.await(progressIndication, limitMs)).step, step);
        }
        EXPECT_EQ(firm.awaitEnd(), 128 + SIGKILL);
    }
    ChildService firm("Firm", stateParameter);
    EXPECT_EQ(update(Component::fpga).answer.state, State::updated);
    EXPECT_THAT(area("fpga-10001-1"), Optional(std::string(flashed)));
    EXPECT_THAT(area("fpga-10001-2"), Optional(std::string(flashed)));
}
