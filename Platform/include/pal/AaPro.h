#pragma once
/// Execution units (EU: a platform thread with an id, a name and, once registered, a message queue), the scheduling
/// policy of the execution environment, and running commands.
///
/// An EU may be cancelled (pthread_cancel): it ends as one that returns, and loses its registrations.
/// AaSysComMsgReceive, AaSysComMsgReceiveSelective and AaSysTimeSleep may be cancellation points, when they wait; no
/// other call of the platform is one, and none leaves a lock held. An EU that is asleep when it is cancelled may sleep
/// on until its wait is over.
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Result of every operation on execution units and commands. Callers print these numbers.
typedef enum EAaProEuRetVal {
    EAaProEuRetVal_NoError = 0,
    EAaProEuRetVal_Error = 1,            ///< the operating system refused; logged
    EAaProEuRetVal_InvalidValue = 2,     ///< null or out-of-range argument
    EAaProEuRetVal_OutOfResources = 3,   ///< no more threads or memory
    EAaProEuRetVal_PermissionDenied = 4, ///< the user may not do that
    EAaProEuRetVal_ChildKilled = 5,      ///< a command ended by a signal
    EAaProEuRetVal_ChildCrashed = 6,     ///< a command dumped core
    EAaProEuRetVal_NotSupported = 7,     ///< not available on this platform
    EAaProEuRetVal_NonRootUser = 8,      ///< needs root
    EAaProEuRetVal_NumOfRetVals = 9
} EAaProEuRetVal;

typedef enum EAaProEuSchedulingPolicy {
    EAaProEuSchedulingPolicy_Default = 0,    ///< what AaProEeGetDefaultSchedulingPolicy answers
    EAaProEuSchedulingPolicy_RoundRobin = 1, ///< real time, time slices among equals
    EAaProEuSchedulingPolicy_Fifo = 2,       ///< real time, no time slices
    EAaProEuSchedulingPolicy_Other = 3       ///< time sharing; the priority is not used
} EAaProEuSchedulingPolicy;

/// Whether the platform watches an EU and restarts the process when it ends unexpectedly.
typedef enum EAaProSupervisionFlag {
    EAaProSupervisionFlag_Off = 0,
    EAaProSupervisionFlag_On = 1
} EAaProSupervisionFlag;

/// Body of an EU. `argument` points to the EU's own copy of the creator's argument block, valid until it returns.
typedef void* (*TAaProEuEntry)(void* argument);

/// Creates and starts an EU without message queue that others can join through its own means.
/// @param[out] euId      the new EU's id, stored before the EU runs; unchanged unless the result is 0. May be null.
/// @param name           1 to 63 characters; the operating system shows the first 15
/// @param stackSize      bytes; raised to what the platform needs
/// @param priority       1 (lowest) to 99; 0 counts as 1
/// @param argument       block of `argumentSize` bytes (0 to 4096) that is copied for the EU; null only with size 0
/// @param wait           1: return only after the EU's function has returned; 0: return at once
/// @return EAaProEuRetVal 0, 1, 2, 3
EAaProEuRetVal AaProEuCreateAndStartJoinable(uint32_t* euId, const char* name, TAaProEuEntry entry, uint32_t stackSize,
                                             uint32_t priority, const void* argument, uint32_t argumentSize,
                                             uint32_t wait);

/// The id of the calling EU; a thread that the platform did not create gets an id on its first call. Never 0 and
/// never 0xFFFFFFFF. Does not block.
uint32_t AaProEuCurrent(void);

/// The policy that EUs get when their creator has no wish, from the configuration tag
/// "pal.service.aapro.defaultpolicy" (1, 2 or 3; 3 when it is not set).
/// @param[out] policy  unchanged unless the result is 0
/// @return EAaProEuRetVal 0, 2. Does not block.
EAaProEuRetVal AaProEeGetDefaultSchedulingPolicy(EAaProEuSchedulingPolicy* policy);

/// Runs a command with the shell and waits for its end; what it prints goes to the log, a line each, at severity 2.
/// @param command         the command line
/// @param[out] exitStatus the command's exit status, or 128 + signal; unchanged on other results than 0, 5, 6. May be
/// null.
/// @return EAaProEuRetVal 0 (it ran to its end, whatever its status), 1, 2, 5, 6. Blocks until the command has ended.
EAaProEuRetVal AaProCmdExec(const char* command, int32_t* exitStatus);

/// Runs a program without a shell and waits for its end; what it prints is collected.
/// @param arguments       null-terminated vector; arguments[0] is looked up in PATH
/// @param[out] output     standard output, zero-terminated, cut to `outputSize` - 1 bytes. May be null with size 0.
/// @param[out] exitStatus as above
/// @return EAaProEuRetVal 0, 1, 2, 5, 6. Blocks until the program has ended.
EAaProEuRetVal AaProCmdExecRaw(const char* const* arguments, char* output, size_t outputSize, int32_t* exitStatus);

#ifdef __cplusplus
}
#endif
