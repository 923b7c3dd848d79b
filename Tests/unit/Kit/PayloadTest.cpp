#include "mock/AaSysComMock.hpp"

#include <mox/kit/PayloadView.hpp>
#include <mox/kit/PayloadWriter.hpp>

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <limits>

namespace mox::kit {
namespace {

using testing::ElementsAre;
using testing::Return;

constexpr std::size_t farAway = std::numeric_limits<std::size_t>::max();

class PayloadViewOfNineBytes : public testing::Test {
protected:
    const std::array<unsigned char, 9> bytes{0x01, 0x82, 0x03, 0x84, 0x05, 0x86, 0x07, 0x88, 0x09};
    const PayloadView sut{bytes.data(), bytes.size()};
};

TEST_F(PayloadViewOfNineBytes, ReadsNumbersOfEitherByteOrderAtAnyOffset) {
    EXPECT_EQ(sut.size(), 9U);
    EXPECT_EQ(sut.read<std::uint8_t>(1), 0x82);
    EXPECT_EQ(sut.read<std::int8_t>(1), -126);
    EXPECT_EQ(sut.read<std::uint16_t>(1, ByteOrder::little), 0x0382);
    EXPECT_EQ(sut.read<std::uint16_t>(1, ByteOrder::big), 0x8203);
    EXPECT_EQ(sut.read<std::int16_t>(1, ByteOrder::big), -32253);
    EXPECT_EQ(sut.read<std::uint32_t>(3, ByteOrder::little), 0x07860584U);
    EXPECT_EQ(sut.read<std::uint32_t>(3, ByteOrder::big), 0x84058607U);
    EXPECT_EQ(sut.read<std::uint64_t>(1, ByteOrder::little), 0x0988078605840382U);
    EXPECT_EQ(sut.read<std::uint64_t>(1, ByteOrder::big), 0x8203840586078809U);
}

TEST_F(PayloadViewOfNineBytes, ReadsInTheHostsOrderUnlessToldOtherwise) {
    std::uint32_t expected = 0;
    std::memcpy(&expected, bytes.data() + 2, sizeof expected);
    EXPECT_EQ(sut.read<std::uint32_t>(2), expected);
    EXPECT_EQ(sut.read<std::uint32_t>(2, ByteOrder::host), expected);
}

TEST_F(PayloadViewOfNineBytes, ReadsInItsOwnOrderWhenItHasOne) {
    EXPECT_EQ(PayloadView(bytes.data(), bytes.size(), ByteOrder::big).read<std::uint16_t>(0), 0x0182);
    EXPECT_EQ(PayloadView(bytes.data(), bytes.size(), ByteOrder::little).read<std::uint16_t>(0), 0x8201);
    EXPECT_EQ(PayloadView(bytes.data(), bytes.size(), ByteOrder::big).tryRead<std::uint16_t>(0), 0x0182);
}

struct BoundRow {
    std::size_t offset;
    std::size_t length;
    bool fits;
};

void PrintTo(const BoundRow& row, std::ostream* out) {
    *out << row.length << " at " << row.offset;
}

const auto bounds =
    testing::Values(BoundRow{0, 9, true}, BoundRow{0, 10, false}, BoundRow{5, 4, true}, BoundRow{6, 4, false},
                    BoundRow{8, 1, true}, BoundRow{9, 0, true}, BoundRow{9, 1, false}, BoundRow{10, 0, false},
                    BoundRow{farAway, 4, false}, BoundRow{4, farAway, false}, BoundRow{farAway, farAway, false});

class PayloadViewBounds : public PayloadViewOfNineBytes, public testing::WithParamInterface<BoundRow> {
protected:
    /// @return whether the operation went well; otherwise what it said is checked
    template <typename Operation>
    bool succeeds(Operation operation) {
        const BoundRow& row = GetParam();
        try {
            operation();
            return true;
        } catch (const PayloadError& error) {
            EXPECT_EQ(std::string(error.what()), "field of " + std::to_string(row.length) + " bytes at offset " +
                                                     std::to_string(row.offset) +
                                                     " does not fit into a payload of 9 bytes");
            return false;
        }
    }
};

TEST_P(PayloadViewBounds, AreHeld) {
    const BoundRow& row = GetParam();
    EXPECT_EQ(sut.holds(row.offset, row.length), row.fits);
    EXPECT_EQ(succeeds([&] { sut.text(row.offset, row.length); }), row.fits);
    EXPECT_EQ(succeeds([&] { EXPECT_EQ(sut.part(row.offset, row.length).size(), row.length); }), row.fits);
    if (row.length == 4) {
        EXPECT_EQ(succeeds([&] { sut.read<std::uint32_t>(row.offset); }), row.fits);
        EXPECT_EQ(sut.tryRead<std::uint32_t>(row.offset).has_value(), row.fits);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, PayloadViewBounds, bounds);

TEST_F(PayloadViewOfNineBytes, TriesToReadWhatMayBeMissing) {
    EXPECT_EQ(sut.tryRead<std::uint16_t>(7, ByteOrder::big), 0x8809);
    EXPECT_EQ(sut.tryRead<std::uint16_t>(8), std::nullopt);
}

TEST_F(PayloadViewOfNineBytes, GivesPartsWithOffsetsAndBoundsOfTheirOwn) {
    const PayloadView part = PayloadView(bytes.data(), bytes.size(), ByteOrder::big).part(4, 3);
    EXPECT_EQ(part.read<std::uint16_t>(0), 0x0586);
    EXPECT_THROW(part.read<std::uint16_t>(2), PayloadError);
}

TEST(PayloadViewText, EndsAtTheFirstNullByteOrAtTheEndOfTheField) {
    const char bytes[] = {'a', 'b', '\0', 'c', 'd'};
    const PayloadView sut(bytes, sizeof bytes);
    EXPECT_EQ(sut.text(0, 5), "ab");
    EXPECT_EQ(sut.text(0, 2), "ab");
    EXPECT_EQ(sut.text(3, 2), "cd");
    EXPECT_EQ(sut.text(2, 3), "");
    EXPECT_EQ(sut.text(1, 0), "");
}

TEST(PayloadViewOfNothing, HoldsNoField) {
    const PayloadView sut(nullptr, 100);
    EXPECT_EQ(sut.size(), 0U);
    EXPECT_THROW(sut.read<std::uint8_t>(0), PayloadError);
    EXPECT_EQ(sut.tryRead<std::uint8_t>(0), std::nullopt);
    EXPECT_EQ(sut.text(0, 0), "");
    EXPECT_EQ(sut.part(0, 0).size(), 0U);
}

TEST(PayloadOfAMessage, IsWhatThePlatformAnswers) {
    mock::Use<mock::AaSysComMock> sysCom;
    std::array<unsigned char, 4> bytes{1, 2, 3, 4};
    int message = 0;
    EXPECT_CALL(sysCom, AaSysComMsgGetPayload(&message)).WillRepeatedly(Return(bytes.data()));
    EXPECT_CALL(sysCom, AaSysComMsgGetPayloadSize(&message)).WillRepeatedly(Return(4U));
    EXPECT_EQ(PayloadView::of(&message, ByteOrder::big).read<std::uint32_t>(0), 0x01020304U);
    PayloadWriter::of(&message, ByteOrder::big).write<std::uint16_t>(2, 0x0A0B);
    EXPECT_THAT(bytes, ElementsAre(1, 2, 0x0A, 0x0B));
}

TEST(PayloadOfAMessage, IsEmptyWhenThereIsNone) {
    mock::Use<mock::AaSysComMock> sysCom;
    EXPECT_CALL(sysCom, AaSysComMsgGetPayload(nullptr)).WillRepeatedly(Return(nullptr));
    EXPECT_CALL(sysCom, AaSysComMsgGetPayloadSize(nullptr)).WillRepeatedly(Return(0U));
    EXPECT_EQ(PayloadView::of(nullptr).size(), 0U);
    EXPECT_THROW(PayloadWriter::of(nullptr).write<std::uint8_t>(0, 1), PayloadError);
}

class PayloadWriterOfNineBytes : public testing::Test {
protected:
    std::array<unsigned char, 9> bytes{};
    PayloadWriter sut{bytes.data(), bytes.size()};
};

TEST_F(PayloadWriterOfNineBytes, WritesNumbersOfEitherByteOrderAtAnyOffset) {
    EXPECT_EQ(sut.size(), 9U);
    sut.write<std::uint32_t>(1, 0x01020304, ByteOrder::big).write<std::uint32_t>(5, 0x01020304, ByteOrder::little);
    EXPECT_THAT(bytes, ElementsAre(0, 1, 2, 3, 4, 4, 3, 2, 1));
}

TEST_F(PayloadWriterOfNineBytes, WritesInItsOwnOrderUnlessToldOtherwise) {
    PayloadWriter(bytes.data(), bytes.size(), ByteOrder::big).write<std::int16_t>(0, -2);
    PayloadWriter(bytes.data(), bytes.size(), ByteOrder::little).write<std::int16_t>(2, -2);
    EXPECT_THAT(bytes, ElementsAre(0xFF, 0xFE, 0xFE, 0xFF, 0, 0, 0, 0, 0));
}

TEST_F(PayloadWriterOfNineBytes, IsReadBack) {
    for (const ByteOrder order : {ByteOrder::little, ByteOrder::big, ByteOrder::host}) {
        sut.write<double>(1, -0.15625, order);
        EXPECT_EQ(PayloadView(bytes.data(), bytes.size()).read<double>(1, order), -0.15625);
    }
}

TEST_F(PayloadWriterOfNineBytes, FillsATextFieldUp) {
    bytes.fill(0xEE);
    sut.writeText(1, 4, "ab").writeText(5, 2, "cd").writeText(8, 0, "");
    EXPECT_THAT(bytes, ElementsAre(0xEE, 'a', 'b', 0, 0, 'c', 'd', 0xEE, 0xEE));
}

TEST_F(PayloadWriterOfNineBytes, LeavesThePayloadAloneWhenATextDoesNotFit) {
    EXPECT_THROW(sut.writeText(7, 2, "abc"), PayloadError);
    EXPECT_THROW(sut.writeText(8, 2, "a"), PayloadError);
    EXPECT_THAT(bytes, testing::Each(0));
}

class PayloadWriterBounds : public PayloadWriterOfNineBytes, public testing::WithParamInterface<BoundRow> {};

TEST_P(PayloadWriterBounds, AreHeld) {
    const BoundRow& row = GetParam();
    if (row.fits) {
        EXPECT_NO_THROW(sut.writeText(row.offset, row.length, ""));
        return;
    }
    EXPECT_THROW(sut.writeText(row.offset, row.length, ""), PayloadError);
    if (row.length == 4) {
        EXPECT_THROW(sut.write<std::uint32_t>(row.offset, 0xFFFFFFFF), PayloadError);
    }
    EXPECT_THAT(bytes, testing::Each(0));
}

INSTANTIATE_TEST_SUITE_P(Rows, PayloadWriterBounds, bounds);

TEST(PayloadWriterOfNothing, HoldsNoField) {
    PayloadWriter sut(nullptr, 100);
    EXPECT_EQ(sut.size(), 0U);
    EXPECT_THROW(sut.write<std::uint8_t>(0, 1), PayloadError);
    EXPECT_NO_THROW(sut.writeText(0, 0, ""));
}

} // namespace
} // namespace mox::kit
