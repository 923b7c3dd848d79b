#pragma once
/// System log: lines of four severities, log domains with buffers of their own, and ring buffers of single features.
///
/// A line carries a severity, a feature id and a text. Feature ids are R&D parameter ids (AaConfigRadGetValue): lines
/// of severity debug reach the log only while the parameter of their feature is non-zero; all others always do. A
/// feature with a ring buffer keeps its lines, debug ones included, in that buffer too.
///
/// Unless a function says otherwise it may be called from any thread, also before start-up and after shut-down of the
/// execution environment, and does not block beyond the write of one line.
#include <stdarg.h>
#include <stdint.h>

#ifdef __GNUC__
/// Has the compiler check the format argument; `firstValue` is the index of the first value, 0 for a va_list.
#define AASYSLOG_FORMAT(formatText, firstValue) __attribute__((__format__(__printf__, formatText, firstValue)))
#else
#define AASYSLOG_FORMAT(formatText, firstValue)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// How grave a line is. The numbers are part of stored logs and never change.
typedef enum EAaSysLogSeverityLevel {
    EAaSysLogSeverityLevel_Debug = 1,
    EAaSysLogSeverityLevel_Info = 2,
    EAaSysLogSeverityLevel_Warning = 3,
    EAaSysLogSeverityLevel_Error = 4
} EAaSysLogSeverityLevel;

/// Results of this family; its functions return them as int.
typedef enum EAaSysLogRetVal {
    EAaSysLogRetVal_NoError = 0,
    EAaSysLogRetVal_AlreadyRegistered = 1, ///< the domain or ring buffer exists, and stays as it was
    EAaSysLogRetVal_InvalidValue = 2,      ///< a null text, a size of 0, a severity out of range
    EAaSysLogRetVal_NotFound = 3,          ///< no such domain or ring buffer
    EAaSysLogRetVal_OutOfResources = 4,    ///< no memory for the buffer
    EAaSysLogRetVal_FileError = 5          ///< the file could not be written
} EAaSysLogRetVal;

/// Logs a line of the process's log domain without a feature.
/// @param level   severity
/// @param format  printf format; the text is cut at 1023 bytes; a line feed at its end is dropped
/// @return EAaSysLogRetVal_NoError (written or filtered out), EAaSysLogRetVal_InvalidValue (null format, level unknown)
int AaSysLogPrint(EAaSysLogSeverityLevel level, const char* format, ...) AASYSLOG_FORMAT(2, 3);

/// Logs a line of a feature; otherwise as AaSysLogPrint.
/// @param featureId  R&D parameter id of the feature, which decides on debug lines; 0: none
int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...) AASYSLOG_FORMAT(3, 4);

/// As AaSysLogPrint.
/// @param args  values of the format; indeterminate afterwards, the caller ends it with va_end
int AaSysLogVPrint(EAaSysLogSeverityLevel level, const char* format, va_list args) AASYSLOG_FORMAT(2, 0);

/// As AaSysLogPrintE.
/// @param args  values of the format; indeterminate afterwards, the caller ends it with va_end
int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args)
    AASYSLOG_FORMAT(3, 0);

/// Creates the two buffers of a log domain: one keeps the first lines after start-up, the other the newest lines since.
/// @param domainId      1 to 255
/// @param name          shown with every line of the domain, at most 15 characters, copied
/// @param startupBytes  size of the start-up buffer in bytes, 1 or more
/// @param runtimeBytes  size of the run-time buffer in bytes, 1 or more
/// @return EAaSysLogRetVal_NoError, EAaSysLogRetVal_AlreadyRegistered (the domain can be used),
///         EAaSysLogRetVal_InvalidValue, EAaSysLogRetVal_OutOfResources
int AaSysLogRegisterDomainBuffer(unsigned int domainId, const char* name, unsigned int startupBytes,
                                 unsigned int runtimeBytes);

/// Makes a domain the one that all lines of this process belong to from now on.
/// @param domainId  a registered domain
/// @return EAaSysLogRetVal_NoError, EAaSysLogRetVal_NotFound (the process keeps its domain)
int AaSysLogSetLogDomain(unsigned int domainId);

/// Gives a feature a ring buffer that keeps the newest lines of this process with that feature id.
/// @param featureId     the feature
/// @param bufferBytes   size of the buffer in bytes, 1 or more
/// @param lineBytes     longest line kept in bytes, longer ones are cut; 0: 1023
/// @param lowestLevel   lowest severity kept, 1 to 4; 0: all
/// @return EAaSysLogRetVal_NoError, EAaSysLogRetVal_AlreadyRegistered, EAaSysLogRetVal_InvalidValue,
///         EAaSysLogRetVal_OutOfResources
/// The buffer lives as long as the process.
int AaSysLogRegisterRingBuffer(unsigned int featureId, unsigned int bufferBytes, unsigned int lineBytes,
                               unsigned int lowestLevel);

/// Writes the ring buffer of a feature to a file, oldest line first, one line a line. The buffer keeps its content.
/// @param featureId  a feature with a ring buffer
/// @param fileName   path, created or truncated
/// @param maxBytes   largest size of the file in bytes, the oldest lines are left out; 0: no limit
/// @return EAaSysLogRetVal_NoError, EAaSysLogRetVal_InvalidValue (null name), EAaSysLogRetVal_NotFound (no file made),
///         EAaSysLogRetVal_FileError (a part may have been written)
/// Blocks for the time that writing the file takes; other threads go on logging meanwhile.
int AaSysLogDumpRingBufferToFile(unsigned int featureId, const char* fileName, unsigned int maxBytes);

#ifdef __cplusplus
}
#endif
