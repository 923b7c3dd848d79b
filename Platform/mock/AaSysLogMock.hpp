#pragma once
/// The double of the functions in pal/AaSysLog.h: class AaSysLogMock. How it is used: Use.hpp. Print functions are
/// matched by the text that they make:
///
///     EXPECT_CALL(log, AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20003, HasSubstr("not DDAL_OK")));
#include "mock/AaSysLogText.hpp"

#define MOX_FAMILY <families/AaSysLog.def>
#define MOX_FAMILY_NAME AaSysLog
#define MOX_FAMILY_TEXT_CALLS MOX_AASYSLOG_TEXT_CALLS
#define MOX_FAMILY_TEXT_MOCKS MOX_AASYSLOG_TEXT_MOCKS
#define MOX_FAMILY_TEXT_DEFAULTS MOX_AASYSLOG_TEXT_DEFAULTS
#include "mock/declareMock.hpp"
