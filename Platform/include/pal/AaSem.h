#pragma once
/// Counting semaphores (private and named) and recursive mutexes.
/// Every operation on a null handle answers EAaSemRetVal_InvalidValue. Any thread may call any of them.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A semaphore; null is never a valid one.
typedef struct SAaSem* TAaSem;
/// A recursive mutex; null is never a valid one.
typedef struct SAaSemReMutex* TAaSemReMutex;

typedef enum EAaSemRetVal {
    EAaSemRetVal_NoError = 0,
    EAaSemRetVal_Error = 1,          ///< the operating system refused; logged once
    EAaSemRetVal_InvalidValue = 2,   ///< null handle or out parameter, initial count above INT32_MAX
    EAaSemRetVal_OutOfResources = 3, ///< no memory, or the count would pass INT32_MAX
    EAaSemRetVal_NotFound = 4,       ///< no named semaphore of this name
    EAaSemRetVal_NotOwner = 5        ///< a mutex is released by a thread that does not hold it
} EAaSemRetVal;

/// Creates a counting semaphore of this process.
/// @param[out] sem      the new semaphore, owned by the caller until AaSemDestroy; null unless the result is 0
/// @param initialCount  0 to INT32_MAX
/// @return 0, 2, 3. Does not block.
EAaSemRetVal AaSemCreateC(TAaSem* sem, uint32_t initialCount);

/// Opens the node's counting semaphore of this name, creating it if nobody has yet. All processes of the node share it.
/// @param[out] sem      the semaphore, owned by the caller until AaSemDestroy; null unless the result is 0
/// @param name          1 to 200 characters without '/'
/// @param initialCount  0 to INT32_MAX; only used when the semaphore is created
/// @return 0, 1, 2, 3. Does not block.
EAaSemRetVal AaSemCreateNamedC(TAaSem* sem, const char* name, uint32_t initialCount);

/// Gives a semaphore back. A named one goes on living for its other users and until AaSemUnlink.
/// Nobody may wait on it then or use the handle afterwards.
/// @return 0, 2. Does not block.
EAaSemRetVal AaSemDestroy(TAaSem sem);

/// Removes the name of a named semaphore; who has it open keeps it.
/// @return 0, 2, 4. Does not block.
EAaSemRetVal AaSemUnlink(const char* name);

/// Takes one count, waiting without limit until there is one. Waits adaptively: awake for a moment, then asleep.
/// @return 0, 2
EAaSemRetVal AaSemWait(TAaSem sem);

/// Reads the count at this moment.
/// @param[out] value  0 or more; unchanged unless the result is 0
/// @return 0, 2. Does not block.
EAaSemRetVal AaSemGetValue(TAaSem sem, int32_t* value);

/// Adds one count and wakes one waiter.
/// @return 0, 2, 3. Does not block; no system call unless somebody sleeps.
EAaSemRetVal AaSemPost(TAaSem sem);

/// Takes a semaphore that is used as a lock, as AaSemWait; the holder's priority is meant to be raised to the highest
/// waiter's where the scheduler can do that (a workstation's cannot for counting semaphores).
/// @return 0, 2
EAaSemRetVal AaSemWaitPri(TAaSem sem);

/// Releases what AaSemWaitPri took.
/// @return 0, 2, 3. Does not block.
EAaSemRetVal AaSemPostPri(TAaSem sem);

/// Creates a recursive mutex of this process.
/// @param[out] mutex  the new mutex, owned by the caller until AaSemReMutexDestroy; null unless the result is 0
/// @return 0, 2, 3. Does not block.
EAaSemRetVal AaSemReMutexCreate(TAaSemReMutex* mutex);

/// Destroys a mutex that nobody holds.
/// @return 0, 2. Does not block.
EAaSemRetVal AaSemReMutexDestroy(TAaSemReMutex mutex);

/// Takes the mutex, waiting without limit; the holder may take it again and must release it as often.
/// @return 0, 2
EAaSemRetVal AaSemReMutexTake(TAaSemReMutex mutex);

/// Releases the mutex once.
/// @return 0, 2, 5. Does not block.
EAaSemRetVal AaSemReMutexRelease(TAaSemReMutex mutex);

#ifdef __cplusplus
}
#endif
