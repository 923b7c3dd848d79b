#include "support/LogLines.hpp"
#include "support/PlatformRecorder.hpp"
#include "unit/Common/palUtilsFromC.h"

#include <mox/pal/PalUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>
#include <string>

namespace ps::hwapi::common::pal::utils {
namespace {

using mox::testing::LogLine;
using mox::testing::LogLines;
using mox::testing::PlatformRecorder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr unsigned int featureId = 0x20007;

/// A header as it lies in memory: id 0x12DC, receiver 0x0F010123, sender 0x1A2B3C4D, flags 0x8003, size 532.
const std::array<std::uint8_t, 16> header{0xDC, 0x12, 0xEE, 0xEE, 0x23, 0x01, 0x01, 0x0F,
                                          0x4D, 0x3C, 0x2B, 0x1A, 0x03, 0x80, 0x14, 0x02};
/// A trailer as it lies in memory: spare 0x00C0FFEE, flags 0x0A0B, CRC 0x00CD.
const std::array<std::uint8_t, 8> trailer{0xEE, 0xFF, 0xC0, 0x00, 0x0B, 0x0A, 0xCD, 0x00};

using Print = void (*)(EAaSysLogSeverityLevel, unsigned int, const char*, const void*);

struct Entry {
    const char* name;
    Print print;
};

void PrintTo(const Entry& entry, std::ostream* out) {
    *out << entry.name;
}

class SicMessageHeaderPrint : public ::testing::TestWithParam<Entry> {
protected:
    void print(EAaSysLogSeverityLevel level, const void* msg) { GetParam().print(level, featureId, "ReqHandler", msg); }

    PlatformRecorder platform;
    LogLines lines;
};

TEST_P(SicMessageHeaderPrint, OfNothingLogsNothingAndAsksNothing) {
    print(EAaSysLogSeverityLevel_Error, nullptr);
    EXPECT_THAT(lines.taken(), IsEmpty());
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_P(SicMessageHeaderPrint, WithoutTrailerLogsTheHeaderAtTheGivenLevel) {
    for (const std::uint32_t format : {0U, 1U, 2U, 4U}) {
        platform.answer("AaSysComMsgGetMef", format);
        print(EAaSysLogSeverityLevel_Debug, header.data());
    }
    const LogLine expected{1, featureId,
                           "ReqHandler Msg header: id 0x12dc, snd 0x1a2b3c4d, rcv 0x0f010123, size 532, flags 0x8003"};
    EXPECT_THAT(lines.taken(), ElementsAre(expected, expected, expected, expected));
}

TEST_P(SicMessageHeaderPrint, WithTrailerLogsBothInOneLine) {
    platform.answer("AaSysComMsgGetMef", std::uint32_t{3});
    platform.answer("AaSysComMsgGetTrailer", static_cast<const void*>(trailer.data()));
    print(EAaSysLogSeverityLevel_Info, header.data());
    EXPECT_THAT(lines.taken(),
                ElementsAre(LogLine{2, featureId,
                                    "ReqHandler Msg header: id 0x12dc, snd 0x1a2b3c4d, rcv 0x0f010123, size 532, "
                                    "flags 0x8003, Trailer: spare 0x00c0ffee, crc 0x00cd, flags 0x0a0b"}));
}

TEST_P(SicMessageHeaderPrint, WithAMissingTrailerWarnsInstead) {
    platform.answer("AaSysComMsgGetMef", std::uint32_t{3});
    platform.answer("AaSysComMsgGetTrailer", static_cast<const void*>(nullptr));
    print(EAaSysLogSeverityLevel_Error, header.data());
    EXPECT_THAT(lines.taken(), ElementsAre(LogLine{3, featureId, "printSicMessageHeader: trailer is NULL"}));
}

TEST_P(SicMessageHeaderPrint, AsksThePlatformAboutThisMessage) {
    platform.answer("AaSysComMsgGetMef", std::uint32_t{3});
    platform.answer("AaSysComMsgGetTrailer", static_cast<const void*>(trailer.data()));
    print(EAaSysLogSeverityLevel_Info, header.data());
    const std::uint64_t message = mox::testing::bitsOf(header.data());
    EXPECT_THAT(platform.calls(), ElementsAre(mox::testing::PlatformCall{"AaSysComMsgGetMef", {message}},
                                              mox::testing::PlatformCall{"AaSysComMsgGetTrailer", {message}}));
}

TEST_P(SicMessageHeaderPrint, ShowsTheLargestSizeAsAPositiveNumber) {
    std::array<std::uint8_t, 16> largest = header;
    largest[14] = 0xFF;
    largest[15] = 0xFF;
    print(EAaSysLogSeverityLevel_Info, largest.data());
    EXPECT_THAT(lines.texts(), ElementsAre(::testing::HasSubstr("size 65535, flags 0x8003")));
}

TEST_P(SicMessageHeaderPrint, PadsSmallNumbersWithZeros) {
    const std::array<std::uint8_t, 16> empty{};
    print(EAaSysLogSeverityLevel_Info, empty.data());
    EXPECT_THAT(lines.texts(), ElementsAre("ReqHandler Msg header: id 0x0000, snd 0x00000000, rcv 0x00000000, size 0, "
                                           "flags 0x0000"));
}

TEST_P(SicMessageHeaderPrint, ReadsAMessageAtAnyAddress) {
    std::array<std::uint8_t, 17> shifted{};
    std::copy(header.begin(), header.end(), shifted.begin() + 1);
    print(EAaSysLogSeverityLevel_Info, shifted.data() + 1);
    EXPECT_THAT(lines.texts(), ElementsAre(::testing::HasSubstr("id 0x12dc, snd 0x1a2b3c4d")));
}

INSTANTIATE_TEST_SUITE_P(EachEntry, SicMessageHeaderPrint,
                         ::testing::Values(Entry{"Cpp", &printSicMessageHeader},
                                           Entry{"C", &palUtilsPrintSicMessageHeader},
                                           Entry{"CalledFromC", &palUtilsFromC}),
                         [](const auto& entry) { return std::string(entry.param.name); });

} // namespace
} // namespace ps::hwapi::common::pal::utils
