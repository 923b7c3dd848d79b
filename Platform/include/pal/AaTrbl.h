#pragma once
/// Troubleshooting files: what a process adds when somebody collects the state of the system.
///
/// On each collection the platform calls, for one registration after the other in the order of their priority, the
/// prepare and the store call-back, takes the file, and calls the delete call-back.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaTrblRetVal {
    EAaTrblRetVal_NoError = 0,
    EAaTrblRetVal_AlreadyExists = 1,  ///< a file of that name is registered
    EAaTrblRetVal_NotFound = 2,       ///< no file of that name is registered
    EAaTrblRetVal_InvalidValue = 3,   ///< null name, path or store call-back, unknown priority
    EAaTrblRetVal_OutOfResources = 4, ///< no memory
    EAaTrblRetVal_NotStarted = 5      ///< the execution environment is not running
} EAaTrblRetVal;

/// Which files are collected first, while there is time and room.
typedef enum EAaTrblFilePriority {
    EAaTrblFilePriority_High = 0,
    EAaTrblFilePriority_Normal = 1,
    EAaTrblFilePriority_Low = 2
} EAaTrblFilePriority;

/// Answers of the call-backs. Anything but Ok means that there is no file to take; the collection goes on.
typedef enum EAaTrblCbStatus {
    EAaTrblCbStatus_Ok = 0,
    EAaTrblCbStatus_InvalidValue = 1, ///< called with a null pointer that it needs
    EAaTrblCbStatus_Failed = 2        ///< the file could not be made or removed
} EAaTrblCbStatus;

/// The call-backs run on a thread of the platform that serves all registrations of the process in turn.
/// @param fileName  path given at registration
/// @param opaque    word given at registration; may be null
/// @param maxBytes  largest size of the file given at registration; 0: no limit
/// @{
/// Told that a collection begins, before anything is stored.
typedef EAaTrblCbStatus (*TAaTrblPrepareFileCb)(const char* fileName, void* opaque);
/// Writes the file.
typedef EAaTrblCbStatus (*TAaTrblStoreFileCb)(const char* fileName, const uint32_t* opaque, uint32_t maxBytes);
/// Removes the file after it was taken; its answer is only logged.
typedef EAaTrblCbStatus (*TAaTrblDeleteFileCb)(const char* fileName, void* opaque, uint32_t maxBytes);
/// @}

/// Registers a file for collection.
/// @param name      name of the file among the collected ones, copied
/// @param fileName  path that the store call-back writes to and the platform takes the file from, copied
/// @param priority  which files come first
/// @param maxBytes  largest size of the file in bytes, longer ones are left out; 0: no limit
/// @param prepare   may be null
/// @param store     called for each collection
/// @param discard   may be null; the file then stays
/// @param opaque    null, or a word that the call-backs are given; stays the caller's, valid until unregistration
/// @return EAaTrblRetVal_NoError, EAaTrblRetVal_AlreadyExists, EAaTrblRetVal_InvalidValue,
///         EAaTrblRetVal_OutOfResources, EAaTrblRetVal_NotStarted
/// Any thread. Does not block.
int AaTrblFileRegister(const char* name, const char* fileName, EAaTrblFilePriority priority, uint32_t maxBytes,
                       TAaTrblPrepareFileCb prepare, TAaTrblStoreFileCb store, TAaTrblDeleteFileCb discard,
                       uint32_t* opaque);

/// Ends a registration.
/// @param name  as registered
/// @return EAaTrblRetVal_NoError, EAaTrblRetVal_NotFound, EAaTrblRetVal_InvalidValue
/// Any thread but the call-backs' own. Blocks until a call-back of this registration that has begun has returned.
int AaTrblFileUnregister(const char* name);

#ifdef __cplusplus
}
#endif
