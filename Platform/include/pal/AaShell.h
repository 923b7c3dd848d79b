#pragma once
/// Commands that a process offers to operators and tools by name, while it runs.
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaShellRetVal {
    EAaShellRetVal_NoError = 0,
    EAaShellRetVal_AlreadyExists = 1,  ///< the process has a command of that name
    EAaShellRetVal_NotFound = 2,       ///< the process has no command of that name
    EAaShellRetVal_InvalidValue = 3,   ///< null argument; name empty, with blanks, or longer than 63 characters
    EAaShellRetVal_OutOfResources = 4, ///< no memory, or no way to be reached
    EAaShellRetVal_NotStarted = 5      ///< the execution environment is not running
} EAaShellRetVal;

/// Runs a command, on a thread of the platform that runs all commands of the process in turn.
/// @param argc        words, 1 or more
/// @param argv        words, the command's name first; valid during the call
/// @param[out] output  terminated answer text; empty before the call
/// @param outputSize  room of output in bytes, 4096 or more
/// @return status told to whoever gave the command, 0 for success
typedef int (*TAaShellCommandCb)(int argc, const char* const* argv, char* output, size_t outputSize);

/// Offers a command.
/// @param name      1 to 63 characters without blanks, copied
/// @param help      one line for listings, copied
/// @param callback  runs it
/// @return EAaShellRetVal_NoError, EAaShellRetVal_AlreadyExists, EAaShellRetVal_InvalidValue,
///         EAaShellRetVal_OutOfResources
/// Any thread, also before AaShellApplicationStartup. Does not block.
int AaShellAddCommand(const char* name, const char* help, TAaShellCommandCb callback);

/// Withdraws a command. One that is being run may still be running afterwards.
/// @return EAaShellRetVal_NoError, EAaShellRetVal_NotFound, EAaShellRetVal_InvalidValue
/// Any thread. Does not block.
int AaShellDeleteCommand(const char* name);

/// Lets the commands of this process be given from outside, until the execution environment is shut down.
/// @return EAaShellRetVal_NoError (also when it was called before), EAaShellRetVal_OutOfResources,
///         EAaShellRetVal_NotStarted
/// Any thread. Does not block.
int AaShellApplicationStartup(void);

#ifdef __cplusplus
}
#endif
