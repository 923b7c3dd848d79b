#pragma once
/// The execution environment (EE) of a process: start-up, shut-down, and what is called at shut-down.

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaStartupRetVal {
    EAaStartupRetVal_NoError = 0,
    EAaStartupRetVal_NotStarted = 1,     ///< the environment is not running
    EAaStartupRetVal_AlreadyStarted = 2, ///< the environment is running already
    EAaStartupRetVal_InvalidValue = 3,   ///< null call-back
    EAaStartupRetVal_OutOfResources = 4, ///< no memory, or no connection to the node's other processes
    EAaStartupRetVal_NoConfig = 5        ///< AaConfigEarlyStartup was not called or failed
} EAaStartupRetVal;

/// Called once at shut-down of the environment, on the thread that shuts it down. All families can still be used.
typedef void (*TAaStartupShutdownCb)(void);

/// Starts the environment of this process, under the name in the tag "pal.service.aapro.eename". From here on messages,
/// execution units, timers and mailboxes can be used.
/// @return EAaStartupRetVal_NoError, EAaStartupRetVal_NoConfig, EAaStartupRetVal_AlreadyStarted,
///         EAaStartupRetVal_OutOfResources
/// First thread, after AaConfigEarlyStartup. Blocks for the time that joining the node takes.
int AaStartupEeStartup(void);

/// Shuts the environment down: calls the registered call-backs, newest first, deletes the timers and mailboxes that are
/// left and deregisters the communication points that are left. The process goes on.
/// @return EAaStartupRetVal_NoError, EAaStartupRetVal_NotStarted (also for the second call; nothing happens)
/// First thread. Blocks until the call-backs have returned. It does not wait for execution units.
int AaStartupEeShutdown(void);

/// Registers a call-back for shut-down. The same one again is called once.
/// @return EAaStartupRetVal_NoError, EAaStartupRetVal_InvalidValue, EAaStartupRetVal_OutOfResources
/// Any thread, also before start-up. Does not block.
int AaStartupAtEeShutdown(TAaStartupShutdownCb callback);

#ifdef __cplusplus
}
#endif
