#include "mock/DdalStrerrorMock.hpp"
#include "mock/FunctionTable.hpp"
#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>

#include <atomic>
#include <thread>
#include <vector>

namespace mox::firmwaretest {
namespace {

using mock::callCount;
using ::testing::_;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UnitTexts : public UpdateFixture {
protected:
    static std::uint64_t reads() { return callCount("ddal_devicetree_get_unit_id"); }
};

TEST_F(UnitTexts, AreTheUnitIdAndItsFirstThreeCharacters) {
    setUnit("ZUPAB");
    EXPECT_EQ(unit_init(), 0);
    EXPECT_STREQ(unit_version(), "ZUPAB");
    EXPECT_STREQ(unit_type(), "ZUP");
    EXPECT_THAT(takeLines("unit_init"), IsEmpty());
}

TEST_F(UnitTexts, KeepTheCaseOfTheDeviceTree) {
    setUnit("kOra");
    EXPECT_STREQ(unit_version(), "kOra");
    EXPECT_STREQ(unit_type(), "kOr");
}

TEST_F(UnitTexts, AreReadOnceByWhoeverAsksFirst) {
    EXPECT_STREQ(unit_version(), "KORA");
    EXPECT_EQ(reads(), 1U);
    EXPECT_STREQ(unit_type(), "KOR");
    EXPECT_STREQ(unit_version(), "KORA");
    EXPECT_EQ(reads(), 1U);
}

TEST_F(UnitTexts, AreReadByTheTypeToo) {
    EXPECT_STREQ(unit_type(), "KOR");
    EXPECT_STREQ(unit_version(), "KORA");
    EXPECT_EQ(reads(), 1U);
}

TEST_F(UnitTexts, AskForTheLocalUnitWithRoomFor31Characters) {
    EXPECT_CALL(devicetree(), ddal_devicetree_get_unit_id(0, 31, _))
        .WillOnce([](uint32_t, uint32_t length, char* text) {
            std::fill(text, text + length, 'U');
            return DDAL_OK;
        });
    EXPECT_EQ(unit_init(), 0);
    EXPECT_EQ(unit_version(), std::string(31, 'U'));
    EXPECT_STREQ(unit_type(), "UUU");
}

TEST_F(UnitTexts, MayBeShorterThanAType) {
    setUnit("K");
    EXPECT_STREQ(unit_version(), "K");
    EXPECT_STREQ(unit_type(), "K");
}

TEST_F(UnitTexts, AreEmptyAndLoggedWhenTheyCannotBeRead) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(unit_init(), -1);
    char text[63] = "";
    ddal_strerror(DDAL_IO_ERROR, text, sizeof text);
    EXPECT_THAT(takeLines("unit_init"),
                ElementsAre("info ddal_devicetree_get_unit_id() failed with error -5 '" + std::string(text) + "'"));
    EXPECT_STREQ(unit_version(), "");
    EXPECT_STREQ(unit_type(), "");
    EXPECT_EQ(reads(), 3U); // each has tried again
}

TEST_F(UnitTexts, AreReadByTheNextCallAfterAFailure) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_STREQ(unit_type(), "");
    failUnit(DDAL_OK);
    EXPECT_STREQ(unit_type(), "KOR");
    EXPECT_THAT(takeLines("unit_init"), testing::SizeIs(1));
}

TEST_F(UnitTexts, AreClearedByAReadingThatFails) {
    EXPECT_EQ(unit_init(), 0);
    const char* const version = unit_version();
    const char* const type = unit_type();
    failUnit(DDAL_NOT_FOUND);
    EXPECT_EQ(unit_init(), -1);
    EXPECT_STREQ(version, "");
    EXPECT_STREQ(type, "");
}

TEST_F(UnitTexts, AreReplacedByALaterReading) {
    EXPECT_EQ(unit_init(), 0);
    const char* const version = unit_version();
    setUnit("VEL");
    EXPECT_EQ(unit_init(), 0);
    EXPECT_STREQ(version, "VEL");
    EXPECT_EQ(unit_version(), version);
    EXPECT_STREQ(unit_type(), "VEL");
}

TEST_F(UnitTexts, HaveTheErrorTextInABufferOf63Bytes) {
    mock::Use<mock::DdalStrerrorMock> texts;
    EXPECT_CALL(texts, ddal_strerror(DDAL_TIMEOUT, _, 63)).WillOnce([](int, char* text, size_t size) {
        std::fill(text, text + size - 1, 'e');
        text[size - 1] = '\0';
        return text;
    });
    failUnit(DDAL_TIMEOUT);
    EXPECT_EQ(unit_init(), -1);
    EXPECT_THAT(takeLines("unit_init"), ElementsAre("info ddal_devicetree_get_unit_id() failed with error -110 '" +
                                                    std::string(62, 'e') + "'"));
}

// Two first calls at once: the one that cannot read the unit leaves the other one its text.
TEST_F(UnitTexts, StayWithWhomAnotherFirstCallThatFailsMeets) {
    const char* other = nullptr;
    EXPECT_CALL(devicetree(), ddal_devicetree_get_unit_id)
        .WillOnce([&other](uint32_t, uint32_t, char*) {
            other = unit_version(); // reads the unit itself
            return DDAL_IO_ERROR;
        })
        .WillOnce(::testing::DoDefault());
    EXPECT_STREQ(unit_version(), "KORA");
    EXPECT_STREQ(other, "KORA");
    EXPECT_STREQ(unit_type(), "KOR");
}

TEST_F(UnitTexts, AreFilledByFirstCallsOfManyThreads) {
    std::atomic<bool> go{false};
    std::atomic<int> wrong{0};
    const auto read = [&] {
        while (!go)
            std::this_thread::yield();
        if (unit_type() != std::string("KOR") || unit_version() != std::string("KORA"))
            ++wrong;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(read);
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(UnitTexts, ThatWereEmptyAreFilledByTheNextReading) {
    failUnit(DDAL_IO_ERROR);
    const char* const version = unit_version();
    EXPECT_STREQ(version, "");
    failUnit(DDAL_OK);
    EXPECT_STREQ(unit_type(), "KOR");
    EXPECT_STREQ(version, "KORA");
    takeLines("unit_init");
}

TEST_F(UnitTexts, AreNeverTornBetweenThreads) {
    std::atomic<bool> go{false};
    std::atomic<int> torn{0};
    const auto read = [&] {
        while (!go)
            std::this_thread::yield();
        for (int i = 0; i < 200; ++i)
            if (unit_init() != 0 || unit_version() != std::string("KORA") || unit_type() != std::string("KOR"))
                ++torn;
    };
    std::thread one(read);
    std::thread other(read);
    go = true;
    one.join();
    other.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
} // namespace mox::firmwaretest
