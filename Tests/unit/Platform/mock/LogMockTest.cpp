#include "mock/AaSemMock.hpp"
#include "mock/AaSysLogMock.hpp"
#include "mock/Faults.hpp"
#include "mock/FunctionTable.hpp"

namespace {

using namespace mox::mock;
using testing::_;
using testing::HasSubstr;
using testing::Return;

int printThroughList(const char* format, ...) __attribute__((format(printf, 1, 2)));
int printThroughList(const char* format, ...) {
    va_list values;
    va_start(values, format);
    const int result = AaSysLogVPrintE(EAaSysLogSeverityLevel_Warning, 0x20001, format, values);
    va_end(values);
    return result;
}

TEST(LogMock, IsOfferedTheFormattedText) {
    Use<AaSysLogMock> log;
    EXPECT_CALL(log, AaSysLogPrint(EAaSysLogSeverityLevel_Info, "a 1 b 0xff")).WillOnce(Return(0));
    EXPECT_EQ(AaSysLogPrint(EAaSysLogSeverityLevel_Info, "a %d %s 0x%x", 1, "b", 255U), 0);
}

TEST(LogMock, IsOfferedLevelFeatureAndText) {
    Use<AaSysLogMock> log;
    EXPECT_CALL(log, AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20003, HasSubstr("broken"))).WillOnce(Return(0));
    EXPECT_EQ(AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20003, "fan %u is broken", 2U), 0);
}

TEST(LogMock, IsOfferedTheTextOfAValueList) {
    Use<AaSysLogMock> log;
    EXPECT_CALL(log, AaSysLogVPrintE(EAaSysLogSeverityLevel_Warning, 0x20001, "12 is 12")).WillOnce(Return(2));
    EXPECT_EQ(printThroughList("%d is %s", 12, "12"), 2);
}

TEST(LogMock, GetsTextsBeyondTheLengthOfALine) {
    Use<AaSysLogMock> log;
    const std::string longText(5000, 'x');
    EXPECT_CALL(log, AaSysLogPrint(_, longText)).WillOnce(Return(0));
    EXPECT_EQ(AaSysLogPrint(EAaSysLogSeverityLevel_Info, "%s", longText.c_str()), 0);
}

TEST(LogCall, CanBeFaultedAndIsCounted) {
    const auto before = callCount("AaSysLogPrintE");
    fail("AaSysLogPrintE").with(EAaSysLogRetVal_OutOfResources);
    EXPECT_EQ(AaSysLogPrintE(EAaSysLogSeverityLevel_Info, 0, "lost"), EAaSysLogRetVal_OutOfResources);
    EXPECT_EQ(callCount("AaSysLogPrintE"), before + 1);
}

TEST(LogCall, ReachesThePlatformWithoutAMock) {
    EXPECT_EQ(AaSysLogPrint(EAaSysLogSeverityLevel_Info, "%d", 5), EAaSysLogRetVal_NoError);
}

} // namespace
