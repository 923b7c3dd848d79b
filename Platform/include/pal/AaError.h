#pragma once
/// Failed assertions, and the record that the platform publishes when a process dies and dumps its core.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Published through mailboxes (AaSysMbSubscribe) with a SAaErrorCoreDumpMsg as payload.
enum {
    AAERROR_CORE_DUMP_STARTED_IND_MSG = 0x1197,  ///< a process begins to write its core
    AAERROR_CORE_DUMP_COMPLETED_IND_MSG = 0x1198 ///< the core is written
};

/// A process that dumps its core. Texts are terminated unless they fill their field.
typedef struct SAaErrorCoreDumpMsg {
    uint32_t nodeId;          ///< node of the process
    char processName[256];    ///< name of its executable
    uint32_t pId;             ///< its process id on that node
    int32_t signalNumber;     ///< signal that ended it
    char coreFilePath[260];   ///< file that the core goes to, on that node
    uint32_t coreDumpEnabled; ///< non-zero: a core is really written
} SAaErrorCoreDumpMsg;

#ifdef __cplusplus
static_assert(sizeof(SAaErrorCoreDumpMsg) == 532, "the record is exchanged between nodes");
#else
_Static_assert(sizeof(SAaErrorCoreDumpMsg) == 532, "the record is exchanged between nodes");
#endif

/// Reports an assertion that failed: logs a line of severity error with the three values and ends the process with
/// SIGABRT. It is called only when the condition is false.
/// @param condition  the condition's text
/// @param file       source file
/// @param line       line in it
/// Any thread. Not declared as never returning, so that a double may stand in for it: do not rely on either.
void AaErrorAssertion(const char* condition, const char* file, unsigned int line);

#ifdef __cplusplus
}
#endif
