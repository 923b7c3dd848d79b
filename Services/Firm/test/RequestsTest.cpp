// Requests that are wrong, and the service's command line.
#include "Fixture.hpp"

#include <pal/AaSysCom.h>
#include <testkit/Board.hpp>

#include <csignal>

using namespace mox::firm;
using namespace mox::testkit;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace {

class AFirmwareRequest : public FirmTest {
protected:
    /// What both kinds of request are answered.
    std::vector<Answer> answersTo(const Bytes& payload) {
        return {recordOf<Answer>(client.request(service(), checkRequest, payload, checkResponse, limitMs)),
                recordOf<Answer>(client.request(service(), updateRequest, payload, updateResponse, limitMs))};
    }
    void expectStillAnswering() {
        const Answer answer = check(Component::fpga);
        EXPECT_EQ(answer.state, State::checkFailed);
        EXPECT_EQ(answer.result, -7);
        EXPECT_TRUE(firm.isRunning());
    }

    ChildService firm{"Firm", stateParameter};
    Messages client;
};
const BoardOf s_pair("AFirmwareRequest", Board::named("firm-pair"));

class TheFirmwareService : public FirmTest {};
const BoardOf s_alone("TheFirmwareService", Board::named("firm-pair"));

} // namespace

TEST_F(AFirmwareRequest, IsAnsweredThoughItIsTooShort) {
    const Bytes whole = bytesOf(Request{7, Component::fpga, 0});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        for (const Answer& answer : answersTo({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)})) {
            EXPECT_THAT(answer, answers(State::malformed, 0)) << length << " bytes";
            EXPECT_EQ(answer.ticket, length < 4 ? 0U : 7U);
            EXPECT_EQ(answer.component, length < 8 ? Component{} : Component::fpga);
        }
    }
    client.expectNone(0);
    expectStillAnswering();
}

TEST_F(AFirmwareRequest, IsAnsweredThoughItIsTooLong) {
    for (const std::size_t length : {std::size_t{13}, std::size_t{4096}, std::size_t{AASYSCOM_MAX_PAYLOAD}}) {
        Bytes bytes = bytesOf(Request{7, Component::fpga, 0});
        bytes.resize(length, 0xFF);
        for (const Answer& answer : answersTo(bytes)) {
            EXPECT_THAT(answer, answers(State::malformed, 0)) << length << " bytes";
            EXPECT_EQ(answer.ticket, 7U);
        }
    }
    expectStillAnswering();
}

TEST_F(AFirmwareRequest, IsRefusedWithFlagsThatDoNotExist) {
    for (const Answer& answer : answersTo(bytesOf(Request{7, Component::fpga, 2}))) {
        EXPECT_THAT(answer, answers(State::malformed, 0));
    }
    expectStillAnswering();
}

TEST_F(AFirmwareRequest, IsRefusedForAComponentThatDoesNotExist) {
    for (const std::uint32_t component : {0U, 4U, 0xFFFFFFFFU}) {
        for (const Answer& answer : answersTo(bytesOf(Request{7, static_cast<Component>(component), 0}))) {
            EXPECT_THAT(answer, answers(State::unknownComponent, 0));
            EXPECT_EQ(answer.component, static_cast<Component>(component));
        }
    }
    EXPECT_TRUE(firm.awaitOutput(HasSubstr("for component 4294967295 refused: unknown component"), limitMs));
    client.expectNone(0);
    expectStillAnswering();
}

TEST_F(AFirmwareRequest, OfAnotherKindIsLeftUnanswered) {
    for (const std::uint16_t id : {checkResponse, updateResponse, progressIndication, std::uint16_t{0x9999}}) {
        client.send(service(), id, bytesOf(Request{7, Component::fpga, 0}));
    }
    EXPECT_TRUE(firm.awaitOutput(HasSubstr("Unknown message received: id=0x9999"), limitMs));
    expectStillAnswering();
    client.expectNone(0);
}

TEST_F(AFirmwareRequest, MayHoldAnythingWithoutHarm) {
    std::uint32_t state = 20160115; // any sequence will do, and always the same one
    const auto next = [&state] { return state = state * 1664525U + 1013904223U; };
    for (int i = 0; i < 200; ++i) {
        Bytes bytes(next() >> 27);
        for (auto& byte : bytes) {
            byte = static_cast<std::uint8_t>(next() >> 24);
        }
        const bool asks = (next() >> 31) != 0;
        const std::uint16_t id = asks ? checkRequest : updateRequest;
        EXPECT_TRUE(client.request(service(), id, bytes, asks ? checkResponse : updateResponse, limitMs));
    }
    expectStillAnswering();
}

TEST_F(TheFirmwareService, PrintsItsUsageWithoutStarting) {
    for (const char* option : {"-h", "--help"}) {
        ChildService firm(ChildRequest{"Firm", 0, {option}, 0});
        EXPECT_EQ(firm.awaitEnd(), 0);
        EXPECT_TRUE(firm.awaitOutput(HasSubstr("MOXFirmExe [options]"), limitMs));
        EXPECT_TRUE(firm.awaitOutput(HasSubstr("--directory=PATH"), limitMs));
        EXPECT_TRUE(firm.awaitOutput(HasSubstr("Where the image files lie (/ffs/run/boot)"), limitMs));
        EXPECT_THAT(firm.output(), Not(Contains(HasSubstr("EE Start"))));
    }
}

TEST_F(TheFirmwareService, RefusesADirectoryThatIsNoPath) {
    for (const char* option : {"--directory", "--directory=images"}) {
        ChildService firm(ChildRequest{"Firm", 0, {option}, 0});
        EXPECT_EQ(firm.awaitEnd(), 1);
        EXPECT_TRUE(firm.awaitOutput(HasSubstr("--directory: expected an absolute path"), limitMs));
    }
}

TEST_F(TheFirmwareService, RefusesOptionsThatItDoesNotKnow) {
    ChildService firm(ChildRequest{"Firm", 0, {"--images=/ram"}, 0});
    EXPECT_EQ(firm.awaitEnd(), 1);
    EXPECT_TRUE(firm.awaitOutput(HasSubstr("Invalid arguments:  --images"), limitMs));
}

TEST_F(TheFirmwareService, EndsByTheSignalAndStartsAgain) {
    ChildService first("Firm", stateParameter);
    EXPECT_EQ(first.stop(), 128 + SIGTERM);
    ChildService second("Firm", stateParameter);
    EXPECT_THAT(check(Component::fpga), answers(State::checkFailed, -7));
}

TEST_F(TheFirmwareService, HasAnAddressOfItsOwn) {
    ChildService first("Firm", stateParameter);
    ChildService second(ChildRequest{"Firm", 0, {}, 0});
    EXPECT_EQ(second.awaitEnd(), 1);
    EXPECT_TRUE(second.awaitOutput(HasSubstr("Failed to register static CPID"), limitMs));
}
