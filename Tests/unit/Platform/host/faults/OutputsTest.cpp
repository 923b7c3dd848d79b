#include <gmock/gmock.h>
#include <host/faults/Outputs.hpp>

#include <algorithm>
#include <array>
#include <cstring>

namespace mox::host::faults {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Record {
    int a = 0;
    int b = 0;
};

TEST(Argument, IsAnOutputByItsType) {
    int number = 0;
    Record record;
    bool flag = false;
    char text[4] = "";
    int* pointer = nullptr;
    EXPECT_EQ(describe(&number).kind, OutputKind::plain);
    EXPECT_EQ(describe(&record).kind, OutputKind::plain);
    EXPECT_EQ(describe(&flag).kind, OutputKind::boolean);
    EXPECT_EQ(describe(static_cast<char*>(text)).kind, OutputKind::text);
    EXPECT_EQ(describe(&pointer).kind, OutputKind::handedOut);
    EXPECT_EQ(describe(static_cast<const int*>(&number)).kind, OutputKind::none);
    EXPECT_EQ(describe(static_cast<void*>(&number)).kind, OutputKind::none);
    EXPECT_EQ(describe(std::uint32_t{5}).kind, OutputKind::none);
}

TEST(OutputsOfACall, LeaveOutWhatTheCallerDidNotAskFor) {
    EXPECT_THAT(outputsOf("ddal_rio_get_own_id", {describe(static_cast<std::uint16_t*>(nullptr))}), IsEmpty());
}

TEST(RoomOfAText, IsTheNumberBehindItOrUnknown) {
    char text[8] = "abc";
    const auto known = outputsOf("f", {describe(static_cast<char*>(text)), describe(std::size_t{8})});
    ASSERT_EQ(known.size(), 1U);
    EXPECT_EQ(known[0].bytes, 8U);
    const auto unknown = outputsOf("f", {describe(7U), describe(static_cast<char*>(text))});
    ASSERT_EQ(unknown.size(), 1U);
    EXPECT_EQ(unknown[0].bytes, unknownRoom);
}

TEST(RoomOfABlock, ComesFromTheParametersThatTellIt) {
    char bytes[64];
    void* const buffer = bytes;
    std::size_t size = 10;
    const Argument file = describe(static_cast<const void*>(nullptr));
    const Argument none = describe(std::uint32_t{0});
    const auto room = [](std::string_view name, const std::vector<Argument>& all) {
        return outputsOf(name, all)[0].bytes;
    };
    EXPECT_EQ(room("AaFileRead", {describe(buffer), describe(std::size_t{4}), describe(std::size_t{3}), file}), 12U);
    EXPECT_EQ(room("ddal_sysinfo_get_data", {none, none, none, file, describe(buffer), describe(&size)}), 10U);
    EXPECT_EQ(room("AaFileRead", {describe(buffer), describe(SIZE_MAX), describe(std::size_t{3}), file}), 0U);
    std::uint16_t ids[5];
    std::uint32_t count = 0;
    EXPECT_EQ(room("ddal_rio_get_node_ids",
                   {describe(static_cast<std::uint16_t*>(ids)), describe(std::uint32_t{5}), describe(&count)}),
              sizeof ids);
}

TEST(RepeatedOutputs, AreWhatWasWritten) {
    Record record{3, 4};
    char text[8] = "abc";
    const std::vector<Argument> arguments{describe(&record), describe(static_cast<char*>(text))};
    const Written written = readOutputs(outputsOf("f", arguments));
    record = {7, 8};
    std::strcpy(text, "longer");
    writeOutputs(outputsOf("f", arguments), written);
    EXPECT_EQ(record.a, 3);
    EXPECT_EQ(record.b, 4);
    EXPECT_STREQ(text, "abc");
}

TEST(RepeatedText, IsCutToTheRoom) {
    char text[8] = "abcdef";
    char small[4] = "xyz";
    const Written written = readOutputs(outputsOf("f", {describe(static_cast<char*>(text)), describe(std::size_t{8})}));
    writeOutputs(outputsOf("f", {describe(static_cast<char*>(small)), describe(std::size_t{3})}), written);
    EXPECT_STREQ(small, "ab");
    writeOutputs(outputsOf("f", {describe(static_cast<char*>(small)), describe(std::size_t{0})}), written);
    EXPECT_STREQ(small, "ab");
}

TEST(GarbledText, StaysTerminated) {
    char bounded[16] = "abc";
    garble(outputsOf("f", {describe(static_cast<char*>(bounded)), describe(std::size_t{10})}), 1);
    EXPECT_EQ(std::strlen(bounded), 9U);
    char unbounded[16] = "abc";
    garble(outputsOf("f", {describe(static_cast<char*>(unbounded))}), 1);
    EXPECT_EQ(std::strlen(unbounded), 3U);
    EXPECT_STRNE(unbounded, "abc");
}

TEST(GarbledNumbers, AreTheSameForTheSameSeed) {
    std::array<std::uint64_t, 3> results{};
    const std::uint64_t seeds[] = {5, 5, 6};
    for (std::size_t i = 0; i < results.size(); ++i)
        garble(outputsOf("f", {describe(&results[i])}), seeds[i]);
    EXPECT_EQ(results[0], results[1]);
    EXPECT_NE(results[0], results[2]);
    EXPECT_NE(results[0], 0U);
}

TEST(GarbledBool, IsABool) {
    bool flags[2] = {};
    for (std::uint64_t seed = 0; seed < 64; ++seed) {
        unsigned char flag = 2;
        garble({Output{OutputKind::boolean, &flag, 1}}, seed);
        ASSERT_LT(flag, 2);
        flags[flag] = true;
    }
    EXPECT_TRUE(flags[0] && flags[1]);
}

TEST(LengthOfABlock, IsNotGarbled) {
    std::uint16_t ids[2] = {1, 2};
    std::uint32_t count = 2;
    garble(outputsOf("ddal_rio_get_node_ids",
                     {describe(static_cast<std::uint16_t*>(ids)), describe(std::uint32_t{2}), describe(&count)}),
           3);
    EXPECT_EQ(count, 2U);
    EXPECT_FALSE(ids[0] == 1 && ids[1] == 2);
}

} // namespace
} // namespace mox::host::faults
