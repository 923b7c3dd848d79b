#include "FirmMessages.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace mox::firm;
using mox::kit::ByteOrder;
using mox::kit::PayloadView;
using mox::kit::PayloadWriter;
using testing::ElementsAreArray;

namespace {

using Bytes = std::vector<std::uint8_t>;

template <typename Record>
Bytes bytesOf(const Record& record) {
    Bytes bytes(Record::size, 0xEE); // nothing may be left unwritten
    PayloadWriter writer(bytes.data(), bytes.size(), ByteOrder::little);
    record.write(writer);
    return bytes;
}

PayloadView viewOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size(), ByteOrder::little};
}

// As in docs/formats/firm-messages.md.
const Bytes exampleRequest = {0x07, 0, 0, 0, 0x03, 0, 0, 0, 0x01, 0, 0, 0};
const Bytes exampleProgress = {0x07, 0, 0, 0, 0x03, 0, 0, 0, 0x03, 0, 0, 0};

Bytes exampleAnswer() {
    Bytes bytes = {0x07, 0, 0, 0, 0x03, 0, 0, 0, 0x03, 0, 0, 0, 0xFC, 0xFF, 0xFF, 0xFF, 0x01, 0, 0, 0};
    const std::string path = "/ffs/run/boot/KOR-TIRVO2-QE-11.bin";
    bytes.insert(bytes.end(), path.begin(), path.end());
    bytes.resize(Answer::size);
    return bytes;
}

} // namespace

TEST(ARequest, LiesInItsPayloadAsDescribed) {
    EXPECT_THAT(bytesOf(Request{7, Component::fpga, flag::force}), ElementsAreArray(exampleRequest));
    const auto sut = Request::read(viewOf(exampleRequest));
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut->ticket, 7U);
    EXPECT_EQ(sut->component, Component::fpga);
    EXPECT_TRUE(sut->isForced());
}

TEST(ARequest, IsNotForcedWithoutItsFlag) {
    EXPECT_FALSE(Request::read(viewOf(bytesOf(Request{7, Component::fpga, 0})))->isForced());
}

TEST(ARequest, MayNameAComponentThatDoesNotExist) {
    const auto sut = Request::read(viewOf(bytesOf(Request{7, static_cast<Component>(0xFFFFFFFF), 0})));
    ASSERT_TRUE(sut);
    EXPECT_EQ(static_cast<std::uint32_t>(sut->component), 0xFFFFFFFFU);
}

TEST(ARequest, IsNoneWithAnotherLength) {
    for (std::size_t length = 0; length < 3 * Request::size; ++length) {
        Bytes bytes = exampleRequest;
        bytes.resize(length);
        EXPECT_EQ(Request::read(viewOf(bytes)).has_value(), length == Request::size) << length << " bytes";
    }
}

TEST(ARequest, IsNoneWithFlagsThatDoNotExist) {
    for (unsigned bit = 1; bit < 32; ++bit) {
        EXPECT_FALSE(Request::read(viewOf(bytesOf(Request{7, Component::fpga, 1U << bit})))) << "bit " << bit;
    }
}

TEST(ARequest, TellsLenientlyWhatIsThere) {
    const Bytes ticketOnly = {0x07, 0, 0, 0, 0x03, 0, 0};
    EXPECT_EQ(Request::readLeniently(viewOf(ticketOnly)).ticket, 7U);
    EXPECT_EQ(Request::readLeniently(viewOf(ticketOnly)).component, Component{});
    EXPECT_EQ(Request::readLeniently(viewOf({})).ticket, 0U);
}

TEST(AProgress, LiesInItsPayloadAsDescribed) {
    EXPECT_THAT(bytesOf(Progress{7, Component::fpga, Step::flashing}), ElementsAreArray(exampleProgress));
    const auto sut = Progress::read(viewOf(exampleProgress));
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut->ticket, 7U);
    EXPECT_EQ(sut->component, Component::fpga);
    EXPECT_EQ(sut->step, Step::flashing);
}

TEST(AProgress, IsNoneWhenItIsTooShort) {
    EXPECT_FALSE(Progress::read(viewOf(Bytes(Progress::size - 1))));
}

TEST(AnAnswer, LiesInItsPayloadAsDescribed) {
    const Answer answer{7, Component::fpga, State::partlyUpdated, -4, 1, "/ffs/run/boot/KOR-TIRVO2-QE-11.bin"};
    EXPECT_THAT(bytesOf(answer), ElementsAreArray(exampleAnswer()));
    const auto sut = Answer::read(viewOf(exampleAnswer()));
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut->ticket, 7U);
    EXPECT_EQ(sut->component, Component::fpga);
    EXPECT_EQ(sut->state, State::partlyUpdated);
    EXPECT_EQ(sut->result, -4);
    EXPECT_EQ(sut->forced, 1U);
    EXPECT_EQ(sut->path, "/ffs/run/boot/KOR-TIRVO2-QE-11.bin");
}

TEST(AnAnswer, HasRoomForTheLongestPath) {
    Answer answer;
    answer.path = std::string(Answer::pathSize - 1, 'x');
    EXPECT_EQ(Answer::read(viewOf(bytesOf(answer)))->path, answer.path);
}

TEST(AnAnswer, IsNoneWhenItIsTooShort) {
    EXPECT_FALSE(Answer::read(viewOf(Bytes(Answer::size - 1))));
}
