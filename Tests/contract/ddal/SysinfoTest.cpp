#include "UnitFixture.hpp"

#include <ddal/ddal_sysinfo.h>

#include <gmock/gmock.h>

#include <cstring>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t isti = DDAL_SYSINFO_KEY_ISTI;
constexpr std::uint32_t card = DDAL_SYSINFO_KEY_RADIO_CARD;
constexpr std::uint32_t slots = DDAL_SYSINFO_INDEX_RADIO_CARD_SLOT;
constexpr std::uint32_t own = 9; ///< a category of this board
constexpr std::uint32_t text = 1;
constexpr std::uint32_t bytes = 2;
constexpr std::uint32_t zero = 0;

class SystemInformation : public OnUnit {
protected:
    static std::uint64_t istiValue() {
        std::uint64_t value = 0;
        EXPECT_EQ(ddal_sysinfo_get_uint(0, isti, 0, nullptr, &value), DDAL_OK);
        return value;
    }
};
const testkit::BoardOf s_board("SystemInformation", testkit::Board::text(unitBoard));

TEST_F(SystemInformation, GivesNumbersAsDescribed) {
    std::uint64_t value = 0;
    EXPECT_EQ(ddal_sysinfo_get_uint(0, DDAL_SYSINFO_KEY_RESET_COUNTER, 0, nullptr, &value), DDAL_OK);
    EXPECT_EQ(value, 3u);
    const std::uint32_t slot = 2;
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, slots, &slot, &value), DDAL_OK);
    EXPECT_EQ(value, 6u);
}

TEST_F(SystemInformation, DoesNotKnowOtherCategoriesKeysAndIndices) {
    std::uint64_t value = 17;
    const std::uint32_t slot = 1;
    EXPECT_EQ(ddal_sysinfo_get_uint(1, isti, 0, nullptr, &value), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, 99, 0, nullptr, &value), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, slots, &slot, &value), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, slots + 1, &zero, &value), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_sysinfo_set_uint(0, 99, 0, nullptr, 1), DDAL_NOT_FOUND);
    EXPECT_EQ(value, 17u);
}

TEST_F(SystemInformation, WantsAnIndexExactlyWhereTheKeyHasOne) {
    std::uint64_t value = 17;
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, 0, nullptr, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, slots, nullptr, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, 0, &zero, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, isti, slots, &zero, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, isti, 0, &zero, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(value, 17u);
}

TEST_F(SystemInformation, KeepsANumberForEveryProcess) {
    EXPECT_EQ(ddal_sysinfo_set_uint(0, isti, 0, nullptr, 0x123456789), DDAL_OK);
    EXPECT_EQ(istiValue(), 0x123456789u);
    EXPECT_EQ(runPeer({"isti"}).out, "0 4886718345");
    EXPECT_EQ(runPeer({"isti", "42"}).out, "0 42");
    EXPECT_EQ(istiValue(), 42u);
}

TEST_F(SystemInformation, SaysWhenAValueCannotBeKept) {
    int result = DDAL_OK;
    {
        const FullDisk full;
        result = ddal_sysinfo_set_uint(0, isti, 0, nullptr, 8);
    }
    EXPECT_EQ(result, DDAL_IO_ERROR);
    EXPECT_TRUE(log.has(testkit::error(0, FullDisk::line)));
    EXPECT_EQ(istiValue(), 7u);
}

TEST_F(SystemInformation, LetsNobodySetWhatTheHardwareDecides) {
    EXPECT_EQ(ddal_sysinfo_set_uint(0, DDAL_SYSINFO_KEY_RESET_COUNTER, 0, nullptr, 1), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_set_uint(0, card, slots, &zero, 2), DDAL_INVALID_PARAMETER);
    std::uint64_t value = 0;
    EXPECT_EQ(ddal_sysinfo_get_uint(0, card, slots, &zero, &value), DDAL_OK);
    EXPECT_EQ(value, 1u);
}

TEST_F(SystemInformation, GivesATextOnlyWhereItFits) {
    char room[8] = "before";
    EXPECT_EQ(ddal_sysinfo_get_string(own, text, 0, nullptr, room, 6), DDAL_NO_SPACE);
    EXPECT_EQ(ddal_sysinfo_get_string(own, text, 0, nullptr, room, 0), DDAL_NO_SPACE);
    EXPECT_STREQ(room, "before");
    EXPECT_EQ(ddal_sysinfo_get_string(own, text, 0, nullptr, room, 7), DDAL_OK);
    EXPECT_STREQ(room, "a text");
}

TEST_F(SystemInformation, GivesBytesOrTheRoomThatTheyNeed) {
    std::vector<unsigned char> room(4, 0x55);
    std::size_t size = 2;
    EXPECT_EQ(ddal_sysinfo_get_data(own, bytes, 0, nullptr, room.data(), &size), DDAL_NO_SPACE);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(room[0], 0x55);
    size = 4;
    EXPECT_EQ(ddal_sysinfo_get_data(own, bytes, 0, nullptr, room.data(), &size), DDAL_OK);
    EXPECT_EQ(size, 3u);
    EXPECT_THAT(room, ElementsAre(0x00, 0xFF, 0x01, 0x55));
}

TEST_F(SystemInformation, KeepsBytesUpToALimit) {
    const std::string most(4096, 'x');
    EXPECT_EQ(ddal_sysinfo_set_data(own, bytes, 0, nullptr, most.data(), most.size()), DDAL_OK);
    std::string read(4096, ' ');
    std::size_t size = read.size();
    EXPECT_EQ(ddal_sysinfo_get_data(own, bytes, 0, nullptr, read.data(), &size), DDAL_OK);
    EXPECT_EQ(read, most);
    EXPECT_EQ(ddal_sysinfo_set_data(own, bytes, 0, nullptr, (most + "x").data(), 4097), DDAL_NO_SPACE);
    EXPECT_EQ(ddal_sysinfo_set_data(own, bytes, 0, nullptr, most.data(), 0), DDAL_INVALID_PARAMETER);
}

TEST_F(SystemInformation, RefusesTheWrongKindOfValue) {
    std::uint64_t value = 17;
    char room[8] = "before";
    std::size_t size = sizeof room;
    EXPECT_EQ(ddal_sysinfo_get_uint(own, text, 0, nullptr, &value), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_string(own, bytes, 0, nullptr, room, sizeof room), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_data(0, isti, 0, nullptr, room, &size), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_set_uint(own, text, 0, nullptr, 1), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_set_data(0, isti, 0, nullptr, room, 1), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(value, 17u);
    EXPECT_EQ(size, sizeof room);
}

TEST_F(SystemInformation, RefusesNullPointers) {
    char room[8];
    std::size_t size = sizeof room;
    EXPECT_EQ(ddal_sysinfo_get_uint(0, isti, 0, nullptr, nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_string(own, text, 0, nullptr, nullptr, 8), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_data(own, bytes, 0, nullptr, nullptr, &size), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_get_data(own, bytes, 0, nullptr, room, nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_sysinfo_set_data(own, bytes, 0, nullptr, nullptr, 1), DDAL_INVALID_PARAMETER);
}

} // namespace
} // namespace mox::testing
