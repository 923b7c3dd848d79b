#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

using mox::testing::create;
using mox::testing::Message;

namespace {

constexpr std::uint32_t someone = 0x10110600;
constexpr std::uint32_t other = 0x10210700;

std::vector<std::uint8_t> bytesOf(const Message& message) {
    const auto* begin = static_cast<const std::uint8_t*>(AaSysComMsgGetPayload(message.get()));
    return begin == nullptr ? std::vector<std::uint8_t>{} : std::vector<std::uint8_t>(begin, begin + message.size());
}

void fill(const Message& message, std::uint8_t first) {
    auto* bytes = static_cast<std::uint8_t*>(AaSysComMsgGetPayload(message.get()));
    for (std::uint32_t i = 0; i < message.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(first + i);
}

SAaSysComMsgTrailer& trailerOf(const Message& message) {
    return *static_cast<SAaSysComMsgTrailer*>(AaSysComMsgGetTrailer(message.get()));
}

Message withTrailer(std::uint16_t id, std::uint32_t size) {
    Message message = create(id, size, someone);
    EXPECT_EQ(AaSysComMsgAddTrailer(message.variable()), EAaSysComRetVal_NoError);
    return message;
}

} // namespace

TEST(MessageJustCreated, HasTheGivenHeaderAndNoSender) {
    const Message sut = create(0x1234, 10, someone);
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut.id(), 0x1234);
    EXPECT_EQ(sut.receiver(), someone);
    EXPECT_EQ(sut.sender(), 0U);
    EXPECT_EQ(sut.size(), 10U);
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 0U);
    EXPECT_EQ(AaSysComMsgGetTrailer(sut.get()), nullptr);
}

TEST(MessageJustCreated, LiesInMemoryAsOnTheWire) {
    const Message sut = create(0x1234, 10, someone);
    SAaSysComMsgHeader header{};
    static_assert(sizeof(header) == 16, "the header is 16 bytes");
    std::memcpy(&header, sut.get(), sizeof(header));
    EXPECT_EQ(header.id, 0x1234);
    EXPECT_EQ(header.reserved, 0);
    EXPECT_EQ(header.receiver, someone);
    EXPECT_EQ(header.sender, 0U);
    EXPECT_EQ(header.flags & 3, 0);
    EXPECT_EQ(header.size, 10);
    EXPECT_EQ(AaSysComMsgGetPayload(sut.get()), static_cast<char*>(sut.get()) + sizeof(header));
}

class MessageOfSize : public testing::TestWithParam<std::uint32_t> {};

TEST_P(MessageOfSize, IsZeroedAlsoWhenItsMemoryWasUsedBefore) {
    for (int round = 0; round < 3; ++round) {
        const Message sut = create(1, GetParam());
        ASSERT_TRUE(sut);
        const auto bytes = bytesOf(sut);
        EXPECT_EQ(bytes.size(), GetParam());
        EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; }));
        std::memset(AaSysComMsgGetPayload(sut.get()), 0xA5, GetParam());
    }
}

TEST_P(MessageOfSize, HasAPayloadAlignedForAnyType) {
    const Message sut = create(1, GetParam());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(AaSysComMsgGetPayload(sut.get())) % alignof(std::max_align_t), 0U);
}

TEST_P(MessageOfSize, TakesATrailerBehindItsPayloadAtAMultipleOfFour) {
    Message sut = create(1, GetParam(), someone);
    fill(sut, 7);
    const auto before = bytesOf(sut);
    ASSERT_EQ(AaSysComMsgAddTrailer(sut.variable()), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 3U);
    EXPECT_EQ(sut.size(), GetParam());
    EXPECT_EQ(bytesOf(sut), before);
    const auto* begin = static_cast<const char*>(sut.get()) + sizeof(SAaSysComMsgHeader);
    EXPECT_EQ(static_cast<const char*>(AaSysComMsgGetTrailer(sut.get())) - begin, (GetParam() + 3) / 4 * 4);
    EXPECT_EQ(trailerOf(sut).spare, 0U);
    EXPECT_EQ(trailerOf(sut).flags, 0);
    EXPECT_EQ(trailerOf(sut).crc, 0);
}

TEST_P(MessageOfSize, IsCopiedWithPayloadAndTrailer) {
    Message original = withTrailer(5, GetParam());
    fill(original, 3);
    trailerOf(original) = {0x01020304, 0x0506, 0x0708};
    AaSysComMsgSetSender(original.get(), other);
    const Message sut(AaSysComMsgCreateCopy(original.get()));
    ASSERT_TRUE(sut);
    EXPECT_NE(sut.get(), original.get());
    EXPECT_EQ(sut.id(), 5);
    EXPECT_EQ(sut.sender(), other);
    EXPECT_EQ(sut.receiver(), someone);
    EXPECT_EQ(bytesOf(sut), bytesOf(original));
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 3U);
    EXPECT_EQ(trailerOf(sut).spare, 0x01020304U);
    EXPECT_EQ(trailerOf(sut).flags, 0x0506);
    EXPECT_EQ(trailerOf(sut).crc, 0x0708);
}

INSTANTIATE_TEST_SUITE_P(Every, MessageOfSize,
                         testing::Values(1U, 2U, 3U, 4U, 5U, 64U, 1023U, 4096U, 32768U, 65533U, 65535U));

TEST(MessageWithoutPayload, HasNoPayloadPointer) {
    const Message sut = create(1, 0);
    ASSERT_TRUE(sut);
    EXPECT_EQ(AaSysComMsgGetPayload(sut.get()), nullptr);
    EXPECT_EQ(sut.size(), 0U);
}

TEST(MessageWithoutPayload, TakesATrailerAtOnce) {
    const Message sut = withTrailer(1, 0);
    EXPECT_EQ(AaSysComMsgGetTrailer(sut.get()), static_cast<char*>(sut.get()) + sizeof(SAaSysComMsgHeader));
    EXPECT_EQ(AaSysComMsgGetPayload(sut.get()), nullptr);
}

TEST(MessageCreate, RefusesPayloadsAboveTheLimit) {
    EXPECT_EQ(AaSysComMsgCreate(1, AASYSCOM_MAX_PAYLOAD + 1, someone), nullptr);
    EXPECT_EQ(AaSysComMsgCreate(1, UINT32_MAX, someone), nullptr);
    const Message request = create(1);
    EXPECT_EQ(AaSysComMsgCreateReply(request.get(), 2, AASYSCOM_MAX_PAYLOAD + 1), nullptr);
}

TEST(MessageDestroy, SetsTheHandleToNull) {
    void* sut = AaSysComMsgCreate(1, 8, someone);
    EXPECT_EQ(AaSysComMsgDestroy(&sut), EAaSysComRetVal_NoError);
    EXPECT_EQ(sut, nullptr);
}

TEST(MessageDestroy, RefusesNullAndWhatIsDestroyedAlready) {
    EXPECT_EQ(AaSysComMsgDestroy(nullptr), EAaSysComRetVal_InvalidValue);
    void* sut = nullptr;
    EXPECT_EQ(AaSysComMsgDestroy(&sut), EAaSysComRetVal_InvalidValue);
    for (const std::uint32_t size : {0U, 100U, 65535U}) {
        sut = AaSysComMsgCreate(1, size, someone);
        void* stale = sut;
        AaSysComMsgDestroy(&sut);
        EXPECT_EQ(AaSysComMsgDestroy(&stale), EAaSysComRetVal_InvalidValue) << size;
    }
}

TEST(MessageCopyTo, DiffersFromTheOriginalInItsReceiver) {
    Message original = create(5, 40, someone);
    AaSysComMsgSetSender(original.get(), 0x10110900);
    fill(original, 9);
    const Message sut(AaSysComMsgCreateCopyTo(original.get(), other));
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut.receiver(), other);
    EXPECT_EQ(sut.sender(), 0x10110900U);
    EXPECT_EQ(sut.id(), 5);
    EXPECT_EQ(bytesOf(sut), bytesOf(original));
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 0U);
    EXPECT_EQ(original.receiver(), someone);
}

TEST(MessageReply, GoesBackToTheSender) {
    Message request = create(5, 40, someone);
    AaSysComMsgSetSender(request.get(), other);
    fill(request, 1);
    const Message sut(AaSysComMsgCreateReply(request.get(), 6, 3));
    ASSERT_TRUE(sut);
    EXPECT_EQ(sut.id(), 6);
    EXPECT_EQ(sut.receiver(), other);
    EXPECT_EQ(sut.sender(), someone);
    EXPECT_THAT(bytesOf(sut), testing::ElementsAre(0, 0, 0));
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 0U);
}

TEST(MessageReply, HasNoTrailerOfTheRequest) {
    const Message request = withTrailer(5, 8);
    const Message sut(AaSysComMsgCreateReply(request.get(), 6, 8));
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 0U);
    EXPECT_EQ(AaSysComMsgGetTrailer(sut.get()), nullptr);
}

TEST(MessageTake, LeavesNullBehind) {
    Message received = create(1, 4);
    void* const handle = received.get();
    const Message sut(AaSysComMsgTake(received.variable()));
    EXPECT_EQ(sut.get(), handle);
    EXPECT_EQ(received.get(), nullptr);
}

TEST(MessageSetters, ChangeSenderAndReceiver) {
    const Message sut = create(1, 4, someone);
    EXPECT_EQ(AaSysComMsgSetSender(sut.get(), other), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComMsgSetReceiver(sut.get(), 0x11111111), EAaSysComRetVal_NoError);
    EXPECT_EQ(sut.sender(), other);
    EXPECT_EQ(sut.receiver(), 0x11111111U);
}

TEST(MessageNullHandle, IsRefusedByEveryOperation) {
    EXPECT_EQ(AaSysComMsgCreateCopy(nullptr), nullptr);
    EXPECT_EQ(AaSysComMsgCreateCopyTo(nullptr, someone), nullptr);
    EXPECT_EQ(AaSysComMsgCreateReply(nullptr, 1, 0), nullptr);
    EXPECT_EQ(AaSysComMsgTake(nullptr), nullptr);
    void* none = nullptr;
    EXPECT_EQ(AaSysComMsgTake(&none), nullptr);
    EXPECT_EQ(AaSysComMsgSend(nullptr), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgSendS(nullptr, someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgForward(nullptr, someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgRelay(nullptr, someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgSetSender(nullptr, 1), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgSetReceiver(nullptr, 1), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgAddTrailer(nullptr), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgAddTrailer(&none), EAaSysComRetVal_InvalidValue);
}

TEST(MessageNullHandle, ReadsAsNothing) {
    EXPECT_EQ(AaSysComMsgGetId(nullptr), 0);
    EXPECT_EQ(AaSysComMsgGetSender(nullptr), 0U);
    EXPECT_EQ(AaSysComMsgGetReceiver(nullptr), 0U);
    EXPECT_EQ(AaSysComMsgGetPayload(nullptr), nullptr);
    EXPECT_EQ(AaSysComMsgGetPayloadSize(nullptr), 0U);
    EXPECT_EQ(AaSysComMsgGetMef(nullptr), 0U);
    EXPECT_EQ(AaSysComMsgGetTrailer(nullptr), nullptr);
}

TEST(MessageDestroyedHandle, IsRefusedByEverySend) {
    const auto stale = [] {
        void* message = AaSysComMsgCreate(1, 4, someone);
        void* copy = message;
        AaSysComMsgDestroy(&message);
        return copy;
    };
    EXPECT_EQ(AaSysComMsgSend(stale()), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgSendS(stale(), someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgForward(stale(), someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgRelay(stale(), someone), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgCreateCopy(stale()), nullptr);
}

TEST(MessageTrailer, IsAddedOnce) {
    Message sut = withTrailer(1, 6);
    trailerOf(sut).spare = 77;
    EXPECT_EQ(AaSysComMsgAddTrailer(sut.variable()), EAaSysComRetVal_InvalidValue);
    EXPECT_EQ(AaSysComMsgGetMef(sut.get()), 3U);
    EXPECT_EQ(sut.size(), 6U);
    EXPECT_EQ(trailerOf(sut).spare, 77U);
}
