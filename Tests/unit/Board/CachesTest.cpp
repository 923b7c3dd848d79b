#include "Board/src/Caches.hpp"

#include "unit/Board/IdentityPlatform.hpp"

#include <mox/Board.h>

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace mox::testing {
namespace {

using ps::hwapi::board::TextCache;
using ps::hwapi::board::WordCache;

TEST(WordCache, KeepsASuccessWhenAnotherThreadFailsMeanwhile) {
    WordCache<std::uint32_t, 64> sut;
    const auto failSlowly = [&sut] {
        EXPECT_EQ(sut.get([] { return 7U; }), 7U); // what the other thread does meanwhile
        return 64U;
    };
    EXPECT_EQ(sut.get(failSlowly), 64U);
    EXPECT_EQ(sut.get([] { return 8U; }), 7U);
}

TEST(TextCache, LetsOthersInWhileItAsks) {
    TextCache<7> sut;
    char text[8] = {};
    const auto fill = [](const char* with) {
        return [with](char* room) { return std::strcpy(room, with) != nullptr; };
    };
    const auto askSlowly = [&](char* room) {
        EXPECT_EQ(sut.copyTo(text, 8, fill("ABC")), 1U);
        return fill("ABC")(room);
    };
    EXPECT_EQ(sut.copyTo(text, 8, askSlowly), 1U);
    EXPECT_STREQ(text, "ABC");
}

TEST(TextCache, KeepsNothingOfAFailure) {
    TextCache<7> sut;
    char text[8] = "-------";
    const auto failHalfway = [](char* room) { return std::strcpy(room, "AB") == nullptr; };
    EXPECT_EQ(sut.copyTo(text, 8, failHalfway), 0U);
    EXPECT_STREQ(text, "-------");
    const auto succeed = [](char* room) { return std::strcpy(room, "CD") != nullptr; };
    EXPECT_EQ(sut.copyTo(text, 8, succeed), 1U);
    EXPECT_STREQ(text, "CD");
}

TEST(TextCache, EndsATextThatFillsItsRoom) {
    struct {
        TextCache<8> sut;
        char behind[8] = "-------";
    } memory;
    char text[32] = {};
    const auto fill = [](char* room) { return std::memset(room, 'X', 8) != nullptr; };
    EXPECT_EQ(memory.sut.copyTo(text, 32, fill), 1U);
    EXPECT_STREQ(text, "XXXXXXXX");
}

/// All that is remembered, as a caller gets it.
std::vector<std::string> everything() {
    using Read = std::uint32_t (*)(char*, std::uint32_t);
    const Read texts[] = {&ApiGetLocalUnitId, &ApiGetLocalUnitProductionCode, &ApiGetLocalUnitSerialNumber,
                          &ApiGetModuleId,    &ApiGetModuleProductionCode,    &ApiGetModuleSerialNumber};
    std::vector<std::string> values;
    for (const Read read : texts) {
        char text[32] = {};
        EXPECT_EQ(read(text, 32), 1U);
        values.emplace_back(text);
    }
    for (const std::uint32_t number :
         {ApiGetLocalUnitHwSwId(), ApiGetLocalUnitHwId(), static_cast<std::uint32_t>(ApiGetLocalUnitType()),
          static_cast<std::uint32_t>(ApiGetLocalUnitVersion()), ApiGetLocalWimRatType(), ApiGetModuleVersion(),
          std::uint32_t{ApiGetCurrentBoard()}, std::uint32_t{ApiGetCurrentCpu()}}) {
        values.push_back(hexText(number));
    }
    return values;
}

class RememberedIdentification : public Identification {};

TEST_F(RememberedIdentification, KeepsEachValueApart) {
    platform.hwSwId = 0x00A03000;
    platform.board = 0x12;
    platform.cpu = 5;
    platform.answerText("ddal_devicetree_get_unit_id", "WIMA");
    platform.answerText("ddal_devicetree_get_production_code", "474001A.101");
    platform.answerText("ddal_devicetree_get_serial_number", "W1160100001");
    platform.answerText("ddal_devicetree_get_module_unit_id", "MDAK");
    platform.answerText("ddal_devicetree_get_module_production_code", "511001A.101");
    platform.answerText("ddal_devicetree_get_module_serial_number", "M1160100001");
    const std::vector<std::string> expected{"WIMA",        "474001A.101", "W1160100001", "MDAK", "511001A.101",
                                            "M1160100001", "0xa03000",    "0xa03",       "0x13", "0x33",
                                            "0x0",         "0xf",         "0x12",        "0x5"};
    EXPECT_EQ(everything(), expected);
    platform.takeCalls();
    EXPECT_EQ(everything(), expected);
    EXPECT_THAT(platform.takeCalls(), ::testing::IsEmpty());
    platform.takeLog();
}

class IdentificationFromManyThreads : public Identification {
protected:
    /// Runs something on eight threads that begin at once.
    static void together(const std::function<void()>& run) {
        std::atomic<int> waiting{8};
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                --waiting;
                while (waiting != 0) {
                    std::this_thread::yield();
                }
                run();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
};

TEST_F(IdentificationFromManyThreads, NeverSeesATextInPart) {
    platform.answerText("ddal_devicetree_get_serial_number", "0123456789ABCDEF");
    for (int round = 0; round < 20; ++round) {
        ps::hwapi::board::caches.forget();
        together([] {
            char text[17] = {};
            EXPECT_EQ(ApiGetLocalUnitSerialNumber(text, 17), 1U);
            EXPECT_STREQ(text, "0123456789ABCDEF");
        });
    }
}

TEST_F(IdentificationFromManyThreads, GivesAllTheSame) {
    platform.hwSwId = 0x00A00000;
    platform.ownNid = 0x1234;
    platform.board = 0x12;
    platform.answerText("ddal_devicetree_get_module_unit_id", "MDAK");
    for (int round = 0; round < 20; ++round) {
        ps::hwapi::board::caches.forget();
        together([] {
            EXPECT_EQ(ApiGetCurrentBoard(), 0x12);
            EXPECT_EQ(ApiGetLocalUnitVersion(), EUnitVersion_Wim);
            EXPECT_EQ(ApiGetModuleVersion(), 15U);
            EXPECT_EQ(ApiGetLocalWimRatType(), 0U);
        });
    }
    platform.takeLog();
}

} // namespace
} // namespace mox::testing
