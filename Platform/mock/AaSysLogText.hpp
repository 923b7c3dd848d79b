#pragma once
/// The four print functions of the log, as a double is offered them: with the text that format and values make, before
/// the platform cuts it to length or filters it.
#include <pal/AaSysLog.h>

#include <string>

// One row a print function: name and parameters in front of the format.
#define MOX_AASYSLOG_TEXT_CALLS                                                                                        \
    virtual int AaSysLogPrint(EAaSysLogSeverityLevel level, const std::string& text) = 0;                              \
    virtual int AaSysLogVPrint(EAaSysLogSeverityLevel level, const std::string& text) = 0;                             \
    virtual int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text) = 0;     \
    virtual int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text) = 0;

#define MOX_AASYSLOG_TEXT_MOCKS                                                                                        \
    MOCK_METHOD(int, AaSysLogPrint, (EAaSysLogSeverityLevel level, const std::string& text), (override));              \
    MOCK_METHOD(int, AaSysLogVPrint, (EAaSysLogSeverityLevel level, const std::string& text), (override));             \
    MOCK_METHOD(int, AaSysLogPrintE, (EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text),  \
                (override));                                                                                           \
    MOCK_METHOD(int, AaSysLogVPrintE, (EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text), \
                (override));

#define MOX_AASYSLOG_TEXT_DEFAULTS                                                                                     \
    ON_CALL(*this, AaSysLogPrint).WillByDefault(&real::AaSysLogPrint);                                                 \
    ON_CALL(*this, AaSysLogVPrint).WillByDefault(&real::AaSysLogVPrint);                                               \
    ON_CALL(*this, AaSysLogPrintE).WillByDefault(&real::AaSysLogPrintE);                                               \
    ON_CALL(*this, AaSysLogVPrintE).WillByDefault(&real::AaSysLogVPrintE);

namespace mox::mock::real {

/// Carry a call out with the given text instead of format and values.
/// @{
int AaSysLogPrint(EAaSysLogSeverityLevel level, const std::string& text);
int AaSysLogVPrint(EAaSysLogSeverityLevel level, const std::string& text);
int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text);
int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const std::string& text);
/// @}

} // namespace mox::mock::real
